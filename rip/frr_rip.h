/* SPDX-License-Identifier: Apache-2.0 */
/* RIP handlers: what the web front-end calls, in the words of its pages.
 *
 * All of them mean the instance "default". None stores settings: the front-end does that itself.
 * To reply means: "ok" into /tmp/tmp/ospf_pipe_c2lua, which RIP shares with OSPF, whatever came of
 * the call; a failure shows in the log only. */
#ifndef FRRUCI_RIP_FRR_RIP_H
#define FRRUCI_RIP_FRR_RIP_H

#include <stdint.h>

#include "../common/c_interface.h"
#include "uc_rip.h"

FRRUCI_C_BEGIN

/* ---- switches ---- */

/* {"on"} switches RIP on (rip_enable); any other word switches it off: kills every ripd, removes
 * the firewall rule for UDP port 520 where there is one, and kills zebra unless an ospfd runs. Then
 * replies. Without a word it does nothing and does not reply. */
void process_rip_global(int32_t argc, char **argv);

/* Opens UDP port 520 in the firewall unless a rule names it already, starts zebra (zebra_enable)
 * and, unless a ripd runs, starts ripd with a second's pause before and after and makes the
 * instance "default" (swRipRouterRipSet). */
void rip_enable(void);

/* ---- dispatchers: {keyword, words...} calls the handler of the keyword with the words and
 *      replies, also for an unknown keyword ---- */

/* Keywords: rip_version, rip_distance, auto_summary, default_metric, redistribute_static,
 * redistribute_ospf, update_timer, timeout_timer, garbage_timer. Does nothing without a word. */
void process_rip_config(int32_t argc, char **argv);

/* Keywords: split_horizon_mode, send_version, receive_version, authen_mode, show. Does nothing with
 * fewer than two words, so "show" needs a second one, which it does not read and which may be null.
 * Logs the call. */
void process_rip_interface(int32_t argc, char **argv);

/* {"add", ip, mask} announces a network; any other first word withdraws it. Sent twice, once for
 * each of the router's networks; each failure is logged. Waits a second and replies. Does nothing
 * with fewer than three words. */
void process_rip_network(int32_t argc, char **argv);

/* ---- keyword handlers: the words after the keyword
 *
 *      A number that does not begin with digits reads as 0.
 *
 *      Result of each: that of the command (sw_rip.h), of the last one where there are two; 1 also
 *      when there are too few words or a word that means nothing here (nothing is sent). ---- */

/* {"ripv1" | "ripv2" | "default"}: swRipVersionSet; default is "no version". */
int32_t process_rip_config_version(int32_t argc, char **argv);
/* {distance}: swRipDistanceSet. */
int32_t process_rip_config_distance(int32_t argc, char **argv);
/* {"enable" | other}: swRipAutoSummSet. */
int32_t process_rip_config_auto_summary(int32_t argc, char **argv);
/* {metric}: swRipDefaultMetricSet. */
int32_t process_rip_config_default_metric(int32_t argc, char **argv);
/* {"enable" | other, metric}: swRipRedistributeSet of static routes, twice. */
int32_t process_rip_config_redistribute_static(int32_t argc, char **argv);
/* {"enable" | other, metric}: swRipRedistributeSet of OSPF routes, twice. */
int32_t process_rip_config_redistribute_ospf(int32_t argc, char **argv);
/* {seconds}: swRipTimerSet, each for its timer. */
int32_t process_rip_config_update_timer(int32_t argc, char **argv);
int32_t process_rip_config_timeout_timer(int32_t argc, char **argv);
int32_t process_rip_config_garbage_timer(int32_t argc, char **argv);

/* {name, "none" | "split_horizon" | "poison_reverse"}: swRipIfSplitHorizonSet; others are
 * "none". */
int32_t process_rip_interface_split_horizon_mode(int32_t argc, char **argv);
/* {name, "ripv1" | "ripv2"}: swRipIfSendVersionSet. Logs each step. */
int32_t process_rip_interface_send_version(int32_t argc, char **argv);
/* {name, "ripv1" | "ripv2" | "both"}: swRipIfReceiveVersionSet. */
int32_t process_rip_interface_recv_version(int32_t argc, char **argv);
/* {name, "none"} or {name, "simple", any, key} or {name, "md5", key id, key}, of exactly so many
 * words: swRipIfAuthenticationSet; "simple" takes key id 1 and ignores its third word, which may
 * be null. */
int32_t process_rip_interface_authen(int32_t argc, char **argv);
/* No words: swRipShowIpRipStatus, then a pause of 100 milliseconds. */
int32_t process_rip_interface_show(int32_t argc, char **argv);

/* ---- support ---- */

/* Makes the model's key of an interface name: type 1 and the number after the first dot (0 when
 * there is none).
 * Result: 0 done; -1 an argument is null or the name has no dot (key untouched). The handlers then
 * go on with a key of zeroes. */
int32_t get_vlan_id_from_interface_name(const char *name, RipNetIf *key);

/* Takes one line of "show ip rip status". When its first two space-separated words are an interface
 * name and send version 1 or 2, sets option "status" to "up" in the section of store "rip" that has
 * the name with "_" for every dot; a failure is logged. Other lines change nothing. The first three
 * words are cut off the line, a caller's text, by a NUL after each; the dots are replaced in it. */
void handle_rip_show_interface(char *line);

FRRUCI_C_END

#endif
