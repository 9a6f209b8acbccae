-- SPDX-License-Identifier: Apache-2.0
-- Which VLANs and addresses are on a LAN side and which on a WAN side, told from the UCI network
-- configuration. Plain Lua, without libuci's module.
--
-- A side is WAN when the interface is in the firewall zone "wan", or, without such a zone, when its
-- name begins with "wan"; every other interface but the loopback is LAN. A VLAN is the number at
-- the end of a device's name (eth0.5), also of a bridge's ports.

local vlan = {}

local CONFIG = os.getenv("FRRUCI_CONFIG") or "/etc/config"

-- One word of a line, quotes taken off, and the rest of the line.
local function word(line)
    line = line:gsub("^%s+", "")
    local quote = line:match("^[\"']")
    if quote then
        local text, rest = line:match("^" .. quote .. "([^" .. quote .. "]*)" .. quote .. "(.*)$")
        return text, rest or ""
    end
    local text, rest = line:match("^([^%s#]+)(.*)$")
    return text, rest or ""
end

-- The sections of a package in order: type, name, options (text) and lists (tables).
local function sections(package)
    local all, current = {}, nil
    local file = io.open(CONFIG .. "/" .. package, "r")
    if not file then
        return all
    end
    for line in file:lines() do
        local kind, rest = word(line)
        local first, second
        if kind then
            first, rest = word(rest)
            second = first and word(rest)
        end
        if kind == "config" and first then
            current = { type = first, name = second, options = {}, lists = {} }
            all[#all + 1] = current
        elseif kind == "option" and current and second then
            current.options[first] = second
        elseif kind == "list" and current and second then
            local list = current.lists[first] or {}
            list[#list + 1] = second
            current.lists[first] = list
        end
    end
    file:close()
    return all
end

-- Every word of an option or list, as a set.
local function words(section, name)
    local set = {}
    for _, entry in ipairs(section.lists[name] or {}) do
        set[entry] = true
    end
    for entry in (section.options[name] or ""):gmatch("%S+") do
        set[entry] = true
    end
    return set
end

local function wanNetworks()
    for _, section in ipairs(sections("firewall")) do
        if section.type == "zone" and section.options.name == "wan" then
            return words(section, "network")
        end
    end
end

local function isWan(interface, networks)
    if networks then
        return networks[interface.name] or false
    end
    return (interface.name or ""):match("^wan") ~= nil
end

-- The interfaces of one side.
local function interfaces(wan)
    local found, networks = {}, wanNetworks()
    for _, section in ipairs(sections("network")) do
        if section.type == "interface" and section.name and section.name ~= "loopback"
            and isWan(section, networks) == wan then
            found[#found + 1] = section
        end
    end
    return found
end

-- The devices of an interface, the ports of its bridge included.
local function devices(interface)
    local set = words(interface, "device")
    for device in pairs(words(interface, "ifname")) do
        set[device] = true
    end
    for _, section in ipairs(sections("network")) do
        if section.type == "device" and set[section.options.name] then
            for port in pairs(words(section, "ports")) do
                set[port] = true
            end
        end
    end
    return set
end

-- The lowest VLAN of an interface; nil when it has none.
local function vlanOf(interface)
    local lowest
    for device in pairs(devices(interface)) do
        local id = tonumber(device:match("%.(%d+)$"))
        if id and (not lowest or id < lowest) then
            lowest = id
        end
    end
    return lowest
end

-- An address as a number; nil for anything else.
local function number(address)
    local a, b, c, d = (address or ""):match("^(%d+)%.(%d+)%.(%d+)%.(%d+)$")
    a, b, c, d = tonumber(a), tonumber(b), tonumber(c), tonumber(d)
    if a and a < 256 and b < 256 and c < 256 and d < 256 then
        return ((a * 256 + b) * 256 + c) * 256 + d
    end
end

local function holds(address, own, mask)
    local wanted, base, bits = number(address), number(own), number(mask or "255.255.255.255")
    if not (wanted and base and bits) then
        return false
    end
    local size = 4294967296 - bits
    return wanted - wanted % size == base - base % size
end

-- Whether an address lies in a network of the interface: "ADDRESS" with a netmask, or
-- "ADDRESS/LENGTH", as an option or a list.
local function hasAddress(interface, address)
    for own in pairs(words(interface, "ipaddr")) do
        local plain, length = own:match("^(.-)/(%d+)$")
        local mask = interface.options.netmask
        if plain then
            local size = 2 ^ (32 - tonumber(length))
            if number(address) and number(plain)
                and math.floor(number(address) / size) == math.floor(number(plain) / size) then
                return true
            end
        elseif holds(address, own, mask) then
            return true
        end
    end
    return false
end

-- Leaves an answer in a file of a folder that everybody may write: whatever is there goes first.
local function answer(name, text)
    local path = "/tmp/" .. name
    os.remove(path)
    local file = io.open(path, "w")
    if file then
        file:write(text, "\n")
        file:close()
    end
end

local function hasVlan(id, wan)
    for _, interface in ipairs(interfaces(wan)) do
        for device in pairs(devices(interface)) do
            if device:match("%.(%d+)$") == tostring(id) then
                return true
            end
        end
    end
    return false
end

-- /tmp/cli_vid: 1 or 0.
function vlan.answerVlan(id, wan)
    answer("cli_vid", hasVlan(id, wan) and "1" or "0")
end

-- /tmp/cli_vid: the VLAN of the LAN interface in whose network the address lies, 1 for an interface
-- without a VLAN; 0 for an address of no LAN.
function vlan.answerLanAddress(address)
    for _, interface in ipairs(interfaces(false)) do
        if hasAddress(interface, address) then
            return answer("cli_vid", tostring(vlanOf(interface) or 1))
        end
    end
    answer("cli_vid", "0")
end

-- /tmp/cli_ipaddr: the WAN interface in whose network the address lies, or "none".
function vlan.answerWanAddress(address)
    for _, interface in ipairs(interfaces(true)) do
        if hasAddress(interface, address) then
            return answer("cli_ipaddr", interface.name)
        end
    end
    answer("cli_ipaddr", "none")
end

return vlan
