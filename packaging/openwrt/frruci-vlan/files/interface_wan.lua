-- SPDX-License-Identifier: Apache-2.0
-- Answers the library's questions about the WAN side.

local vlan = require "frruci.vlan"

return {
    is_wan_vlan_id = function(id)
        vlan.answerVlan(id, true)
    end,
    is_wan_ip_addr = vlan.answerWanAddress,
}
