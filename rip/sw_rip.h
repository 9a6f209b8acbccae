/* SPDX-License-Identifier: Apache-2.0 */
/* RIP commands: each builds ripd's command for one setting, sends it and, once ripd has accepted
 * it, stores the value in the model.
 *
 * vrf is the name of the instance, 1 to 31 characters, "default" from all handlers; ifname is the
 * interface's name and key its key in the model. enable is 1 for the command and 0 for its "no"
 * form; anything larger is refused. add is the same, but anything except 0 adds. selector is 1 or 0
 * for the side that is meant; one ripd serves both, so it changes nothing and a command that is
 * meant for both sides is sent twice.
 *
 * On failure the model keeps its value. Where a command is sent twice and only the second is
 * refused, ripd has the new value and the model the old one.
 *
 * Result, unless a description says otherwise:
 *   0           done
 *   1           bad argument (nothing is sent), no connection, a warning of ripd, or not stored
 *   0xFFFFFFFF  ripd refused
 *   others      another completion code of ripd, as it is */
#ifndef FRRUCI_RIP_SW_RIP_H
#define FRRUCI_RIP_SW_RIP_H

#include <stdint.h>

#include "../common/c_interface.h"
#include "uc_rip.h"

FRRUCI_C_BEGIN

/* ---- start ---- */

/* Makes the model (ucRipInit) and registers the view "view_rip", which enters "enable",
 * "configure", "router rip vrf <vrf>"; once, after frrVtyInit and before anything else of RIP.
 * Result: 0 done; 1 the model could not be made or the view is already there. */
uint32_t swRipInit(void);

/* Sets up RIP on the router's two internal links: the instance "default", the networks
 * 169.254.11.21/30 and 169.254.11.22/30, and send version 2 and receive version 1 2 on "br-lan" and
 * "veth1". Stops at the first failure with a line on standard output.
 * Result: 0 done; the failing step's. */
uint32_t init_rip_interface(void);

/* ---- instance-level commands, inside "router rip vrf <vrf>" unless said otherwise ---- */

/* Stores in running 1 when the model holds the instance, else 0. ripd is not asked.
 * Result: 0 done; 1 an argument is null. */
uint32_t swRipIsRunning(const char *vrf, uint32_t *running);

/* Sends "[no] router rip vrf <vrf>" from the configure context and makes or removes the instance.
 * Sends nothing when the model says that this is already so. Logs its way. */
uint32_t swRipRouterRipSet(const char *vrf, uint32_t enable);

/* Sends "[no] network <ip>/<prefix length>" and stores or removes the network.
 * ip: an address that ipStrCheck accepts; mask: a dotted mask. */
uint32_t swRipNetworkSet(const char *vrf, const char *ip, const char *mask, uint32_t add,
                         uint32_t selector);

/* Sends "[no] neighbor <addr>" and stores or removes the neighbour.
 * addr: an address that ipStrCheck accepts. */
uint32_t swRipNeighborSet(const char *vrf, const char *addr, uint32_t add, uint32_t selector);

/* Sends "version <version>" or "no version" twice and stores the version, 0 for none.
 * version: 1..2, ignored when disabling. */
uint32_t swRipVersionSet(const char *vrf, uint32_t version, uint32_t enable);

/* Sends "distance <distance>" or "no distance" twice and stores the distance, 120 for none.
 * distance: 1..255, ignored when disabling. */
uint32_t swRipDistanceSet(const char *vrf, uint32_t distance, uint32_t enable);

/* Sends "default-metric <metric>" or "no default-metric" twice and stores the metric, 1 for none.
 * metric: 0..16, ignored when disabling. */
uint32_t swRipDefaultMetricSet(const char *vrf, uint32_t metric, uint32_t enable);

/* Sends "[no] autosummary" twice and stores the flag. No connection and a warning (both 1) count as
 * success here; anything larger ends it. */
uint32_t swRipAutoSummSet(const char *vrf, uint32_t enable);

/* Sends "[no] default-information originate" twice; stores nothing.
 * Result: the second sending's, whatever the first gave. */
uint32_t swRipDefaultInformationSet(const char *vrf, uint32_t enable);

/* Sends "[no] route <ip>/<prefix length>" twice, the route's text cut to 17 characters: for
 * 100.100.100.100 and 255.255.255.0 ripd gets, accepts and holds another route. Stores nothing.
 * ip: an address that ipStrCheck accepts; mask: a dotted mask.
 * Result: 1 for a bad argument, else the second sending's, whatever the first gave. */
uint32_t swRipRouteStaticSet(const char *vrf, const char *ip, const char *mask, uint32_t add);

/* Sends "[no] redistribute static" (kind 1) or "[no] redistribute ospf" (kind 2), when enabling
 * with " metric <metric>" unless metric is 0; stores nothing. Other kinds are refused.
 * metric: 0..16, ignored when disabling. */
uint32_t swRipRedistributeSet(const char *vrf, uint32_t kind, uint32_t metric, uint32_t enable,
                              uint32_t selector);

/* Sends "timers basic <update> <timeout> <garbage>" with the one timer that which names changed and
 * the others as the model has them, twice, and stores it.
 * which: 1 update (5..100 seconds), 2 timeout (5..300), 3 garbage (5..500), 0 all; value in
 * seconds. enable 0 puts the timer back to 30, 180 or 120 seconds. With which 0 the value is
 * ignored: enable 1 sends the three as they are, enable 0 sends "no timers basic", and both store
 * all three initial values.
 * Result: 0 done, also when ripd refused or could not be reached; 1 bad argument or no such
 * instance in the model (nothing is sent). */
uint32_t swRipTimerSet(const char *vrf, uint32_t which, uint32_t value, uint32_t enable);

/* ---- interface-level commands, inside "interface <ifname>"; the interface's record is made if
 *      there is none. Each asks the front-end whether key.vid is a LAN VLAN, which changes nothing.
 *      A refusal of ripd gives 1 here. ---- */

/* Sends "ip rip split-horizon poisoned-reverse" (poisoned and enable 1), "ip rip split-horizon"
 * (enable 1) or "no ip rip split-horizon", and stores enable as split horizon; the model keeps no
 * trace of poisoned reverse. poisoned: 0 or 1, anything larger is refused. */
uint32_t swRipIfSplitHorizonSet(const char *ifname, RipNetIf key, uint32_t poisoned,
                                uint32_t enable);

/* Sends "ip rip send version <version>" or "no ip rip send version" and stores the version, 0 for
 * none. version: 1..2, ignored when disabling. */
uint32_t swRipIfSendVersionSet(const char *ifname, RipNetIf key, uint32_t version, uint32_t enable);

/* Sends "ip rip receive version <version>", "1 2" for 3, or "no ip rip receive version" and stores
 * the version, 0 for none. version: 1..3, ignored when disabling. */
uint32_t swRipIfReceiveVersionSet(const char *ifname, RipNetIf key, uint32_t version,
                                  uint32_t enable);

/* Sends "[no] ip rip v2-broadcast" and stores the flag. */
uint32_t swRipIfV2BroadcastSet(const char *ifname, RipNetIf key, uint32_t enable);

/* Sets the interface's authentication. Enabling takes up to five sessions: for MD5 the chain
 * app_rip_<keyid> is removed and "no ip rip authentication string" sent, the chain made anew with
 * the key and "ip rip authentication key-chain app_rip_<keyid>" sent, then "ip rip authentication
 * mode md5"; for simple text "no ip rip authentication key-chain", "ip rip authentication string
 * <keystring>" and "ip rip authentication mode text". Disabling sends "no ip rip authentication
 * mode" only. Then stores key id, key and mode (0 for none).
 * mode: 1 simple text, 2 MD5 (0 is of no use: two empty commands and the text mode). keyid: 1..255.
 * keystring: the model takes at most 16 characters. A longer one is sent all the same; where ripd
 * accepts it, as a key chain does, the key id is stored and then 1 returned. The three are
 * ignored when disabling.
 * Whether the chain could be removed and made is ignored.
 * Result: 0 done; 1 bad argument, no connection, refused, or not stored. */
uint32_t swRipIfAuthenticationSet(const char *ifname, RipNetIf key, uint32_t mode, uint32_t keyid,
                                  const char *keystring, uint32_t enable);

/* Sends "[no] passive-interface eth1.<vid>" inside the instance "default" and stores the flag, when
 * the front-end says that the VLAN is a LAN or a WAN VLAN. The interface's record is made first and
 * stays whatever happens then.
 * Result: that of an instance-level command, a refusal included; 1 also when the VLAN is neither.
 * Not being able to store is no failure. */
uint32_t swRipIfPassiveInterfaceVlanSet(RipNetIf key, uint32_t enable);

/* Sends "no key chain <chain>" from the configure context, after asking the front-end about
 * key.vid.
 * Result: that of an instance-level command, a refusal included; 0 also for a null chain
 * (nothing is sent). */
uint32_t swRipKeychainClean(RipNetIf key, const char *chain);

/* Sends "key chain <chain>", "key <keyid>" and "key-string <keystring>" from the configure context,
 * after asking the front-end about key.vid.
 * chain: 1 to 31 characters; keyid: 1..255; keystring: cut to fit a command of 255 characters.
 * Result: 0 done; 1 bad argument, no connection, or refused. */
uint32_t swRipKeychainAdd(RipNetIf key, const char *chain, uint32_t keyid, const char *keystring);

/* ---- display ---- */

/* Prints the output of "show ip rip" twice, under a WAN and a LAN line.
 * Result: 0 done; 1 no connection or refused (the rest is not printed). */
uint32_t swRipShowIpRip(void);

/* Prints the output of "show ip rip status" under a WAN line; each interface that is listed as
 * sending is marked up in the store (handle_rip_show_interface).
 * Result: 0 done; 1 no connection or refused. */
uint32_t swRipShowIpRipStatus(void);

/* Prints the instances of the model (ucRip_setGlobal).
 * Result: 0. */
uint32_t swRip_setGlobal(void);

/* Prints an interface of the model (ucRip_setIfVlan).
 * Result: 0 printed; 1 no such interface. */
uint32_t swRip_setIfVlan(void);

/* Sends "en", "config", "interface <ifname>" (cut to 63 characters) and command on any vty socket.
 * Result: 0 done; 1 a null argument, no connection, or a step refused. */
uint32_t sw_rip_if_cmd(const char *ifname, const char *command, const char *socketPath);

FRRUCI_C_END

#endif
