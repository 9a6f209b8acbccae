/* SPDX-License-Identifier: Apache-2.0 */
/* Switching OSPF on, and the network statement of the router's inner link. */
#ifndef FRRUCI_OSPF_FRR_OSPF_ENABLE_H
#define FRRUCI_OSPF_FRR_OSPF_ENABLE_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* Switches OSPF on: starts zebra (zebra_enable); where process_exist finds an ospfd, only sets the
 * router id. Otherwise clears OSPF's tracked connections ("conntrack -D -p ospf"), starts ospfd and
 * gives process id 1 a slot of the model (swOspfEnableProcess), waits 1 second, sets the router id
 * and waits 1 second more. A daemon that does not start shows in the result. router_id_text: a
 * dotted quad, sent as it is; null is an empty one. Logs which of the two it was.
 * Result: that of swOspfRouterId: 0 set; 1 no connection, or ospfd refused it. */
int32_t ospf_enable(const char *router_id_text);

/* Moves the network statement of the router's inner link (169.254.11.21/30 on the WAN side, br-lan,
 * or 169.254.11.22/30 on the LAN side, veth1) to area area_id in the OSPF instance of
 * instance_selector, 0 LAN, anything else WAN: withdraws it from the area in which this function
 * announced it last, area 0 at first, and announces it in the new one. A failing step ends it with
 * a line on standard output; the area to withdraw from next time stays as it was. process_id is not
 * looked at further.
 * Result: 0 moved; that of swOspfNetwork for the step that failed. */
int32_t sysn_network(uint16_t process_id, uint32_t area_id, int32_t instance_selector);

FRRUCI_C_END

#endif
