/* SPDX-License-Identifier: Apache-2.0 */
/* Delivery of one OSPF command to ospfd, one routine for each context.
 *
 * Every routine opens a session of its own on /var/ospfd.vty, sends its steps one after the other,
 * each only when the one before it was accepted, and closes the session on every path. No step is
 * repeated and no command leaves the context: closing the session does. command is the
 * NUL-terminated text of one command; without one (null) the session stops in the context that it
 * has reached, which is a success.
 *
 * The router has two OSPF instances, WAN (selector 1) and LAN (selector 0), and one ospfd socket.
 * The selector of the router and exec contexts is ignored: a command that is delivered once for
 * each instance reaches the same socket twice.
 *
 * Results, unless a routine says otherwise: 0 every step accepted; 1 the connection failed or a
 * step was refused. */
#ifndef FRRUCI_OSPF_VTY_OSPF_H
#define FRRUCI_OSPF_VTY_OSPF_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* Sends "en", "configure", "router ospf", command.
 * unused and selector: not looked at.
 * Result: 0 or 1. */
uint32_t vtyOspfConfigOspf(uint32_t unused, const char *command, uint32_t selector);

/* Sends "en", "configure", "interface eth0.<vlanId>" for a LAN VLAN or "interface eth1.<vlanId>"
 * for a WAN VLAN, command. Asks the front-end (sw_is_lan_vid, sw_is_wan_vid) before it connects,
 * and again for the interface line; an id that is both is a LAN VLAN.
 * Result: 0; 1 as above, and without any traffic when vlanId is neither a LAN nor a WAN VLAN. */
uint32_t vtyOspfConfigInterface(uint32_t unused, uint32_t vlanId, const char *command);

/* Sends "en", "configure", "interface eth1.<vlanId>" for a non-zero selector or
 * "interface eth0.<vlanId>" for 0, command. Asks the front-end nothing.
 * Result: 0 or 1. */
uint32_t vtyOspfConfigNetwork(uint32_t unused, uint32_t vlanId, const char *command,
                              uint32_t selector);

/* Sends "en", "configure", "interface <interfaceName>", command. The interface line is cut at 255
 * characters; a null name is an empty one.
 * Result: 0 or 1. */
uint32_t doVtyOspfConfigInterface(uint32_t unused, const char *interfaceName, uint32_t unused2,
                                  const char *command);

/* Sends "en", command (exec context, for operational commands).
 * reply: the caller's 512 bytes, zeroed, which receive the daemon's answer to command as it came
 * (output, end marker and completion code); untouched without a command.
 * Result: 0 or 1; 1 also when reply is null and there is a command. */
uint32_t vtyOspfShowOspf(uint32_t unused, const char *command, char *reply, uint32_t selector);

/* Sends command alone on the socket at socketPath and streams the answer's lines with frrVtyPrint,
 * which gets kind, selector and extra (its mode: 0 RIP, 1 OSPF line handler) as they are.
 * Result: 0 the daemon answered 0; 1 frrVtyPrint's result was another; 0xFFFFFFFF no connection. */
uint32_t vtyPrint(const char *command, const char *socketPath, uint32_t kind, uint32_t selector,
                  int32_t extra);

FRRUCI_C_END

#endif
