/* SPDX-License-Identifier: Apache-2.0 */
/* OSPF front-end handlers, interface-command builders, status display and report.
 *
 * Every handler that replies answers "ok", also when the daemon refused. Failures are lines of the
 * log, under the source name frr_ospf; the number in such a line is that of the call or table row
 * in the source that failed. */
#ifndef FRRUCI_OSPF_FRR_OSPF_H
#define FRRUCI_OSPF_FRR_OSPF_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* ---- interface-command builders ----
 *
 * Each sends one command to ospfd in the context "interface IFNAME" (doVtyOspfConfigInterface);
 * nothing is stored, logged or replied. Shared arguments:
 *   vrf     routing instance, 0 by convention; not part of the command
 *   ifname  interface as the daemon knows it, e.g. eth1.2; null counts as empty
 *   wan     1 for a WAN interface, 0 for LAN; the interface is addressed by its name alone
 *   enable  non-zero: the setting; 0: its "no" form, which ignores the value
 * Numbers are sent as they are; the daemon refuses those out of range. A command is cut at 255
 * characters.
 * Result, unless the function says otherwise: 0 accepted; 1 no connection, or the context or the
 * command was refused. */

/* "ip ospf cost COST" / "no ip ospf cost". */
uint32_t ip_ospf_cost(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable, int32_t cost);

/* "ip ospf retransmit-interval SECONDS" / "no ip ospf retransmit-interval". */
uint32_t ip_ospf_retransmit(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                            int32_t seconds);

/* "ip ospf transmit-delay SECONDS" / "no ip ospf transmit-delay". */
uint32_t ip_ospf_transmit(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                          int32_t seconds);

/* "ip ospf priority PRIORITY" / "no ip ospf priority". */
uint32_t ip_ospf_priority(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                          int32_t priority);

/* "ip ospf hello-interval SECONDS" / "no ip ospf hello-interval". */
uint32_t ip_ospf_hello(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                       int32_t seconds);

/* "ip ospf dead-interval SECONDS" / "no ip ospf dead-interval". */
uint32_t ip_ospf_dead(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                      int32_t seconds);

/* "ip ospf network WORD" / "no ip ospf network"; code 0 broadcast, 1 point-to-point,
 * 2 point-to-multipoint.
 * Result: as above; 0xFFFFFFFF for a code above 2, set or not: nothing is sent. */
uint32_t ip_ospf_network_type(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                              uint32_t code);

/* "ip ospf mtu-ignore" / "no ip ospf mtu-ignore". */
uint32_t ip_ospf_mtu_ignore(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable);

/* "ip ospf passive" / "no ip ospf passive". */
uint32_t ip_ospf_passive(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable);

/* "[no ]ip ospf authentication[ null| message-digest]"; type 0 null, 1 simple password (no further
 * word), 2 message digest. Any other type sends an empty line in the interface context, and the
 * daemon's answer to it is the result. */
uint32_t ip_ospf_auth(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable, int32_t type);

/* "ip ospf authentication-key PASSWORD" / "no ip ospf authentication-key"; a null password counts
 * as empty. */
uint32_t ip_ospf_auth_key(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                          const char *password);

/* "ip ospf message-digest-key KEY_ID md5 KEY" / "no ip ospf message-digest-key KEY_ID"; a null key
 * counts as empty. */
uint32_t ip_ospf_auth_md5key(uint16_t vrf, const char *ifname, int32_t wan, int32_t enable,
                             int32_t key_id, const char *key);

/* ---- set handlers ----
 *
 * argc words in argv, as main gets them. With fewer words than a handler needs it returns at once:
 * no reply, no log line. Numbers are decimal texts; a text that is no number counts as 0. Words are
 * compared exactly. Replies go to /tmp/tmp/ospf_pipe_c2lua. */

/* Words: "on" or anything else (off); router id, dotted.
 * On: ospf_enable with the router id. Off: kills every ospfd, and every zebra when no ripd runs;
 * argc is 2 or more and the second word is not looked at. Replies ok. */
void process_ospf_global(int32_t argc, char **argv);

/* Words: "add" or anything else (delete); address; mask, dotted; area id.
 * Logs its words, then adds or deletes the network in the LAN instance and in the WAN instance
 * (swOspfNetwork with selector 0, then 1), the second whatever became of the first; logs each
 * failure. Replies ok. */
void process_ospf_network(int32_t argc, char **argv);

/* Words: interface name; "wan" or anything else (LAN); keyword; value; for auto_type the password,
 * or key id and key. The keywords, each with the builder it calls:
 *   cost, retransmit, transmit, priority, hello, dead, network_type   enabled, with the value
 *   mtu_ignore, passive                              the value is the enable flag
 *   auto_type    ip_ospf_auth with the value as its type; type 1 then sends the password with
 *                ip_ospf_auth_key, type 2 key id and key with ip_ospf_auth_md5key
 * Logs the count and four words (also when there are fewer), and a status other than 0 of the
 * builder, always under the name ip_ospf_cost. Replies ok, also for an unknown keyword; no reply
 * with 2 or 3 words, for type 1 without password and for type 2 without key id and key (the
 * authentication type has been sent by then; one log line).
 * With the single word "show": swOspfShowOspf("interface"), which brings the daemon's state into
 * the store's interface sections; replies ok, then logs a failure. Any other single word does
 * nothing. */
void process_ospf_interface(int32_t argc, char **argv);

/* Words: "enable" or anything else (do not originate a default route); "enable" for always;
 * metric; metric type.
 * swOspfOrignate with both metric and type given; logs a failure. Never replies: do not wait. */
void process_ospf_advertise_cfg(int32_t argc, char **argv);

/* Words: administrative distance; "enable" for RFC 1583 compatibility; SPF delay, initial hold and
 * maximum hold in milliseconds; number of equal-cost paths; "enable" for passive by default.
 * Sends the five settings in that order, each whatever became of those before; logs each failure.
 * Replies ok. */
void process_ospf_ospf_cfg(int32_t argc, char **argv);

/* ---- show triggers ----
 *
 * swOspfShowOspf, a pause of 10 milliseconds, and "ok" as the end mark after the rows in the same
 * display pipe; then a failure is logged. Each row is one write. */

/* Neighbour rows, to /tmp/tmp/ospf_pipe_c2lua_neighbor. */
void process_ospf_neighbor(void);

/* Database rows, to /tmp/tmp/ospf_pipe_c2lua_database. */
void process_ospf_lsdb(void);

/* ---- show commands ---- */

/* What swOspfShowOspfDatabase asks for. The texts need not be terminated. */
typedef struct OspfDatabaseRequest {
    const char *lsa_type; /* "router", "network", ...; may be null */
    char link_state_id[64];
    char adv_router[64];
    uint32_t has_link_state_id;
    uint32_t has_adv_router;
    uint32_t self_originate; /* goes before adv_router */
} OspfDatabaseRequest;

/* Sends "show ip ospf WHAT" to ospfd below a WAN banner on standard output; every line of the
 * answer is printed and goes to the line handler of mode: 1 handle_ospf_show with the kind of what
 * ("interface" 1, "neighbor" 2, "database" 3, else 0) and the WAN argument; 0
 * handle_rip_show_interface. vrf is not used; a null what counts as empty.
 * Result: 0 shown; 1 no connection, or the daemon did not end with success. */
int32_t swOspfShowOspf(uint16_t vrf, const char *what, int32_t mode);

/* Sends "show ip ospf database TYPE ID SELECTION" twice, below a WAN and a LAN banner; parts that
 * are not given stay empty between their spaces, texts are cut at 64 characters. The lines go to
 * handle_rip_show_interface and to standard output, not to a display pipe. vrf is not used.
 * Result: 0 shown; 1 request is null, or one of the two failed (the second is not tried then). */
int32_t swOspfShowOspfDatabase(uint16_t vrf, const OspfDatabaseRequest *request);

/* ---- line handlers ----
 *
 * line: one line of daemon output, ending in CR LF, in writable memory of at least 257 bytes of
 * which the bytes after the text are zero. It is not kept. A null line is ignored. */

/* Hands line on by kind: 1 interface, 2 neighbor, 3 database; others are ignored. arg: 1 for the
 * WAN instance, 0 for LAN. */
void handle_ospf_show(char *line, uint32_t kind, uint32_t arg);

/* Mirrors "show ip ospf interface" into the store's package ospf. "NAME is up" makes the section
 * NAME, with "_" for ".", current and sets working = on in it; NAME has at most 15 characters.
 * A line of at least 8 words with Network Type as the fourth and fifth sets network_type of the
 * current section (1 for POINTOPOINT, 0 for BROADCAST), and, where the seventh word begins with
 * Cost, cost to the eighth, its line end included where it is the last. Changes line. Logs each
 * store write that fails. */
void handle_ospf_show_interface(char *line);

/* Writes line, at most 257 bytes, to /tmp/tmp/ospf_pipe_c2lua_neighbor when its first word is an
 * address in any form that inet_aton takes. */
void handle_ospf_show_neighbor(char *line);

/* The same to /tmp/tmp/ospf_pipe_c2lua_database; nothing when arg is 0. */
void handle_ospf_show_database(char *line, uint32_t arg);

/* ---- report ---- */

/* Prints the whole OSPF model on standard output, process slots in use first, then interface
 * entries in use. Takes no lock: a change at the same time may tear what is printed. Without a
 * model only the headings appear. */
void ucOspfShowConfig(void);

/* The same. */
void swShowOspfConfig(void);

FRRUCI_C_END

#endif
