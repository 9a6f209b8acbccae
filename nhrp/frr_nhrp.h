/* SPDX-License-Identifier: Apache-2.0 */
/* NHRP command builders and front-end handlers.
 *
 * A builder logs its command ("frr_nhrp:LINE: generate cmd:COMMAND"), stores the setting in section
 * "sdwan" of /etc/config/nhrp, and sends the command, cut at 255 characters, in its context. The
 * store is written first and keeps the new value when the daemon refuses; a failed store write does
 * not count. A builder of an interface setting that is switched on also records the interface in
 * option "interface" when there is none yet (nhrp_set_interface). Values are sent and stored as
 * they are: the daemon's refusal is the only check. docs/nhrp.md shows all of them as one table.
 *
 * For every builder: vrf is ignored. ifname is the tunnel interface.
 * Result: 0 the daemon accepted the command; 1 no connection, the context or the command failed, or
 * a text is null (nothing is stored or sent then). */
#ifndef FRRUCI_NHRP_FRR_NHRP_H
#define FRRUCI_NHRP_FRR_NHRP_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* ---- settings of a tunnel interface ---- */

/* Sends "ip nhrp <word>" to nhrpd; stores "1" in the option that word names ("redirect",
 * "shortcut"). */
uint32_t nhrp_ip_nhrp(uint16_t vrf, const char *ifname, const char *word);

/* Sends "no ip nhrp <word>" to nhrpd; stores "0" in the option that word names. */
uint32_t nhrp_no_ip_nhrp(uint16_t vrf, const char *ifname, const char *word);

/* Sends "ip address <address>" to zebra; stores the address in "zebra_address".
 * address: dotted, with its mask length, for example 10.0.0.1/24. */
uint32_t nhrp_ip_address(uint16_t vrf, const char *ifname, const char *address);

/* Sends "no ip address <address>" to zebra; stores "0" in "zebra_address". */
uint32_t no_nhrp_ip_address(uint16_t vrf, const char *ifname, const char *address);

/* Sends "ip nhrp network-id <id>" to nhrpd; stores the id in "network_id".
 * id: a decimal number. */
uint32_t nhrp_ip_nhrp_network(uint16_t vrf, const char *ifname, const char *id);

/* Sends "ip nhrp registration no-unique" to nhrpd; stores "1" in "registration_nounique". */
uint32_t nhrp_ip_nhrp_registration(uint16_t vrf, const char *ifname);

/* Sends "ip nhrp nhs dynamic nbma <nbma>" to nhrpd; stores the address in "nhs_nbma".
 * nbma: the hub's address or name outside the tunnel. */
uint32_t nhrp_ip_nhrp_nhs_nbma(uint16_t vrf, const char *ifname, const char *nbma);

/* Sends "no ip nhrp nhs dynamic nbma <nbma>" to nhrpd; stores "0" in "nhs_nbma". */
uint32_t nhrp_no_ip_nhrp_nhs_nbma(uint16_t vrf, const char *ifname, const char *nbma);

/* Sends "ip nhrp map multicast <address>" to nhrpd; stores the address in "map_multicast".
 * address: dotted, or the daemon's word "dynamic". */
uint32_t nhrp_ip_nhrp_map_multicast(uint16_t vrf, const char *ifname, const char *address);

/* Sends "no ip nhrp map multicast <address>" to nhrpd; stores "0" in "map_multicast". */
uint32_t nhrp_no_ip_nhrp_map_multicast(uint16_t vrf, const char *ifname, const char *address);

/* Sends "tunnel protection vici profile <profile>" to nhrpd; stores the name in
 * "ipsec_profile". */
uint32_t nhrp_tunnel_profile(uint16_t vrf, const char *ifname, const char *profile);

/* Sends "tunnel source <source>" to nhrpd; stores the name in "ipsec_source".
 * source: an interface. */
uint32_t nhrp_tunnel_source(uint16_t vrf, const char *ifname, const char *source);

/* Sends "tunnel add <first> <second>" to nhrpd; stores nothing. Both words are passed on. */
uint32_t nhrp_tunnel_spoke_link(uint16_t vrf, const char *ifname, const char *first,
                                const char *second);

/* Sends "tunnel connect <first> <second>" to nhrpd; stores nothing. */
uint32_t nhrp_tunnel_set_spoke_link(uint16_t vrf, const char *ifname, const char *first,
                                    const char *second);

/* Sends "tunnel del <first> <second>" to nhrpd; stores nothing. */
uint32_t nhrp_no_tunnel_spoke_link(uint16_t vrf, const char *ifname, const char *first,
                                   const char *second);

/* Sends "no link-detect" to zebra; stores "1" in "no_link_detect". */
uint32_t nhrp_no_link_detect(uint16_t vrf, const char *ifname);

/* ---- global settings: sent to nhrpd's configuration context; no interface is recorded ---- */

/* Sends "nhrp nflog-group <group>"; stores the group in "nflog_group".
 * group: an NFLOG group, a decimal number. */
uint32_t nhrp_nflog(uint16_t vrf, const char *group);

/* Sends "nhrp multicast-nflog-group <group>"; stores the group in "multicast_nflog_group". */
uint32_t multicast_nhrp_nflog(uint16_t vrf, const char *group);

/* ---- front-end handlers; replies go to /tmp/tmp/nhrp_pipe_c2lua ---- */

/* One setting of a tunnel interface. argv[0] is ignored, argv[1] is the interface, the words
 * after it are one phrase of docs/nhrp.md; words after the phrase are ignored. The phrase's builder
 * is called.
 * Replies "fail" when the builder failed, else "ok": also, with nothing sent, for a phrase that is
 * unknown or not finished. With argc of 1 or less there is no reply. */
void process_nhrp_interface(int32_t argc, char **argv);

/* One global setting: argv[1] is "nflog-group" or "multicast-nflog-group", argv[2] its value. With
 * argc 1 the shell command "killall nhrpd;nhrpd -d" restarts the daemon first; argv[1], which must
 * be readable then, still counts as a keyword unless it is null. argv[0] is only logged and may be
 * null. With argc below 1 nothing of argv is read.
 * Replies "fail" when the builder failed or the value is missing, else "ok", also for any other
 * keyword. */
void process_nhrp_global(int32_t argc, char **argv);

/* The display: with argv[1..3] "ip", "nhrp", "cache" streams the cache into
 * /tmp/tmp/nhrp_pipe_c2lua_cache (swNhrpShow); anything else does nothing. The words are read
 * up to the first null entry, whatever argc of 1 or more says; argv[0] is ignored. With argc below
 * 1 nothing happens. No reply; a failure is only logged. */
void process_nhrp_show(int32_t argc, char **argv);

FRRUCI_C_END

#endif
