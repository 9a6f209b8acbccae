-- SPDX-License-Identifier: Apache-2.0
-- Answers the library's questions about the LAN side.

local vlan = require "frruci.vlan"

return {
    is_vlan_id = function(id)
        vlan.answerVlan(id, false)
    end,
    is_vlan_ipaddr = vlan.answerLanAddress,
}
