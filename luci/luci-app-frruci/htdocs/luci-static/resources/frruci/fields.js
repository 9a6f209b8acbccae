// SPDX-License-Identifier: Apache-2.0
// What can be set: one table for each protocol. The pages, the checks of a value, what is stored for an option that is
// missing, and the place where a refusal is shown all come from here.
//
// A section: name (none: any number of sections of this type), type, title, help, context (the daemon's, in which the
// words of its fields stand), fields.
// A field:
//   option, title, help    its name in the store, and how a person calls it
//   kind                   number (min, max, unit), choice (choices), switch (on, off), key (max bytes), network (mask is
//                          the option of its mask, least the shortest length), router, prefix, address, host, name, text
//   preset                 the daemon's default, stored where the option is missing
//   when                   shown and stored only while an option of the section has one of the values
//   above                  the option that it has to be greater than
//   words                  how the daemon's command begins that sets it
//   column, tab            a column of the list; the tab in the window of the list's entry
//   fixed, hidden          shown in the list alone; stored, but nothing to choose
//   optional               may be left empty
//   set, unset             NHRP: the phrase that sets it and the one that takes it away, the value comes after it

'use strict';
'require baseclass';

var kSeconds = { name: _('seconds'), sign: 's' };
var kMilliseconds = { name: _('milliseconds'), sign: 'ms' };

var ospf = {
	config: 'ospf',
	daemon: 'ospfd',
	title: _('OSPF'),
	help: _('Routers that run OSPF find each other and share the networks that they know. To begin, switch it on and add the networks of this router.'),
	sections: [
		{
			name: 'global', type: 'global', title: _('This router'), context: 'router ospf',
			fields: [
				{ option: 'status', title: _('Run OSPF'), kind: 'switch', on: 'on', off: 'off', preset: 'off',
				  help: _('Starts OSPF now and whenever the router starts.') },
				{ option: 'router_id', title: _('Router ID'), kind: 'router', preset: '0.0.0.0', words: 'ospf router-id',
				  help: _('The name of this router, written like an address. No other router may have the same; one of the router\'s own addresses is a good choice.') }
			]
		},
		{
			type: 'network', title: _('Networks'), context: 'router ospf', add: _('Add network'),
			empty: _('No networks yet: OSPF runs on no interface.'),
			help: _('OSPF runs on each interface whose address lies in one of these networks, and tells its neighbours about them.'),
			fields: [
				{ option: 'ip', title: _('Network'), kind: 'network', mask: 'wildcard_mask', wildcard: true, least: 1,
				  words: 'network', column: true, help: _('Address and length, for example 192.168.1.0/24.') },
				{ option: 'area_id', title: _('Area'), kind: 'number', min: 0, max: 4294967295, preset: '0', column: true,
				  help: _('Routers on the same network need the same area.') }
			]
		},
		{
			type: 'interface', title: _('Interfaces'), context: 'interface', add: _('Add interface'),
			empty: _('No interface has settings of its own.'),
			help: _('Only for interfaces that need other settings than the usual ones.'),
			tabs: [ [ 'general', _('General') ], [ 'timers', _('Timers') ], [ 'authentication', _('Authentication') ] ],
			fields: [
				{ option: 'interface', title: _('Interface'), kind: 'name', column: true, fixed: true, tab: 'general' },
				{ option: 'ns', title: _('Side'), kind: 'choice', preset: 'wan', tab: 'general',
				  choices: [ [ 'wan', _('WAN') ], [ 'lan', _('LAN') ] ], help: _('The side of the router that the interface is on.') },
				{ option: 'cost', title: _('Cost'), kind: 'number', min: 1, max: 65535, preset: '10', words: 'ip ospf cost',
				  column: true, tab: 'general', help: _('Traffic takes the way with the lowest sum of costs.') },
				{ option: 'priority', title: _('Priority'), kind: 'number', min: 0, max: 255, preset: '1',
				  words: 'ip ospf priority', column: true, tab: 'general',
				  help: _('The router with the highest becomes the designated router of a network; with 0 it never does.') },
				{ option: 'network_type', title: _('Network type'), kind: 'choice', preset: '0', words: 'ip ospf network',
				  tab: 'general', help: _('Has to be the same on every router of the network.'),
				  choices: [ [ '0', _('Broadcast (Ethernet)') ], [ '1', _('Point-to-point') ], [ '2', _('Point-to-multipoint') ] ] },
				{ option: 'passive', title: _('Passive'), kind: 'switch', on: '1', off: '0', preset: '0',
				  words: 'ip ospf passive', column: true, tab: 'general',
				  help: _('Announces the network of this interface, but finds no neighbours on it.') },
				{ option: 'mtu_ignore', title: _('Ignore MTU'), kind: 'switch', on: '1', off: '0', preset: '0',
				  words: 'ip ospf mtu-ignore', tab: 'general',
				  help: _('Accepts neighbours whose largest packet size is another one.') },
				{ option: 'hello', title: _('Hello interval'), kind: 'number', min: 1, max: 65535, unit: kSeconds, preset: '10',
				  words: 'ip ospf hello-interval', column: true, tab: 'timers',
				  help: _('Time between two greetings. Has to be the same on every router of the network.') },
				{ option: 'dead', title: _('Dead interval'), kind: 'number', min: 1, max: 65535, unit: kSeconds, preset: '40',
				  above: 'hello', words: 'ip ospf dead-interval', column: true, tab: 'timers',
				  help: _('A neighbour that is silent for so long is gone. Has to be the same on every router of the network.') },
				{ option: 'retransmit', title: _('Retransmit interval'), kind: 'number', min: 1, max: 65535, unit: kSeconds,
				  preset: '5', words: 'ip ospf retransmit-interval', tab: 'timers',
				  help: _('Time until something that a neighbour did not confirm is sent again.') },
				{ option: 'transmit', title: _('Transmit delay'), kind: 'number', min: 1, max: 65535, unit: kSeconds,
				  preset: '1', words: 'ip ospf transmit-delay', tab: 'timers',
				  help: _('Time that sending an update takes on this link.') },
				{ option: 'auto_type', title: _('Authentication'), kind: 'choice', preset: '0', words: 'ip ospf authentication',
				  column: true, tab: 'authentication', help: _('Has to be the same on every router of the network.'),
				  choices: [ [ '0', _('None') ], [ '1', _('Password') ], [ '2', _('MD5') ] ] },
				{ option: 'simple_key', title: _('Password'), kind: 'key', max: 8, when: { auto_type: [ '1' ] },
				  words: 'ip ospf authentication-key', tab: 'authentication',
				  help: _('Sent unencrypted: it keeps out mistakes, not attackers.') },
				{ option: 'md5_key_id', title: _('Key number'), kind: 'number', min: 1, max: 255, preset: '1',
				  when: { auto_type: [ '2' ] }, tab: 'authentication',
				  help: _('Has to be the same as on the neighbours, like the key.') },
				{ option: 'md5_key', title: _('Key'), kind: 'key', max: 16, when: { auto_type: [ '2' ] },
				  words: 'ip ospf message-digest-key', tab: 'authentication',
				  help: _('Proves that a packet comes from a router that knows the key.') }
			]
		},
		{
			name: 'advertise_cfg', type: 'advertise_cfg', title: _('Default route'), context: 'router ospf',
			help: _('For the router that is the way to the Internet: the others send it everything that they know no other way for.'),
			fields: [
				{ option: 'originate', title: _('Announce a default route'), kind: 'switch', on: 'enable', off: 'disable',
				  preset: 'disable', words: 'default-information originate',
				  help: _('Tells the other routers that this one has a default route.') },
				{ option: 'always', title: _('Always'), kind: 'switch', on: 'enable', off: 'disable', preset: 'disable',
				  help: _('Also while this router has no default route itself.') },
				{ option: 'metric', title: _('Metric'), kind: 'number', min: 0, max: 16777214, preset: '1',
				  help: _('Of several default routes the one with the lowest metric is taken.') },
				{ option: 'metric_type', title: _('Metric type'), kind: 'choice', preset: '2',
				  help: _('Type 1 routes are preferred to type 2 routes.'),
				  choices: [ [ '1', _('1: the way to this router counts as well') ], [ '2', _('2: the metric alone counts') ] ] }
			]
		},
		{
			name: 'ospf_cfg', type: 'ospf_cfg', title: _('Advanced'), context: 'router ospf',
			help: _('The usual values are right for most networks.'),
			fields: [
				{ option: 'distance', title: _('Distance'), kind: 'number', min: 1, max: 255, preset: '110', words: 'distance',
				  help: _('Of routes from several protocols the one with the lowest distance is taken.') },
				{ option: 'max_path', title: _('Paths'), kind: 'number', min: 1, max: 256, preset: '8', words: 'maximum-paths',
				  help: _('So many equally good ways to a network are used at the same time.') },
				{ option: 'spf_delay', title: _('Calculation delay'), kind: 'number', min: 0, max: 600000, unit: kMilliseconds,
				  preset: '0', words: 'timers throttle spf', help: _('Time from a change in the network to the calculation of new routes.') },
				{ option: 'spf_hold_init', title: _('Initial hold time'), kind: 'number', min: 0, max: 600000,
				  unit: kMilliseconds, preset: '50', help: _('Least time between two calculations.') },
				{ option: 'spf_hold_max', title: _('Maximum hold time'), kind: 'number', min: 0, max: 600000,
				  unit: kMilliseconds, preset: '5000', help: _('The hold time grows up to this while changes go on.') },
				{ option: 'rfc_compatible', title: _('RFC 1583 rules'), kind: 'switch', on: 'enable', off: 'disable',
				  preset: 'disable', words: 'compatible rfc1583',
				  help: _('Chooses routes as old routers do. Has to be the same on all routers.') },
				{ option: 'passive_def', title: _('All interfaces passive'), kind: 'switch', on: 'enable', off: 'disable',
				  preset: 'disable', words: 'passive-interface default',
				  help: _('Networks are announced, but no neighbour is found on any interface.') }
			]
		}
	]
};

var rip = {
	config: 'rip',
	daemon: 'ripd',
	title: _('RIP'),
	help: _('Routers that run RIP tell their neighbours the networks that they know. To begin, switch it on and add the networks of this router.'),
	sections: [
		{
			name: 'global', type: 'global', title: _('This router'), context: 'router rip',
			fields: [
				{ option: 'status', title: _('Run RIP'), kind: 'switch', on: 'on', off: 'off', preset: 'off',
				  help: _('Starts RIP now and whenever the router starts, and opens its UDP port 520 in the firewall.') }
			]
		},
		{
			type: 'network', title: _('Networks'), context: 'router rip', add: _('Add network'),
			empty: _('No networks yet: RIP runs on no interface.'),
			help: _('RIP runs on each interface whose address lies in one of these networks, and tells its neighbours about them.'),
			fields: [
				{ option: 'ipaddress', title: _('Network'), kind: 'network', mask: 'mask', least: 0, words: 'network', column: true,
				  help: _('Address and length, for example 192.168.1.0/24.') }
			]
		},
		{
			type: 'interface', title: _('Interfaces'), context: 'interface', add: _('Add interface'),
			empty: _('No interface has settings of its own.'),
			help: _('Only for interfaces that need other settings than the usual ones.'),
			tabs: [ [ 'general', _('General') ], [ 'authentication', _('Authentication') ] ],
			fields: [
				{ option: 'interface', title: _('Interface'), kind: 'name', column: true, fixed: true, tab: 'general' },
				{ option: 'split_horizon_mode', title: _('Split horizon'), kind: 'choice', preset: 'split_horizon',
				  words: 'ip rip split-horizon', column: true, tab: 'general',
				  help: _('Keeps routes from going back where they came from; with poisoned reverse they go back as unreachable.'),
				  choices: [ [ 'none', _('Off') ], [ 'split_horizon', _('On') ], [ 'poison_reverse', _('Poisoned reverse') ] ] },
				{ option: 'send_version', title: _('Send'), kind: 'choice', preset: 'ripv2', words: 'ip rip send version',
				  column: true, tab: 'general', help: _('The version in which this interface speaks.'),
				  choices: [ [ 'ripv1', _('Version 1') ], [ 'ripv2', _('Version 2') ] ] },
				{ option: 'receive_version', title: _('Receive'), kind: 'choice', preset: 'both',
				  words: 'ip rip receive version', column: true, tab: 'general',
				  help: _('The versions that this interface listens to.'),
				  choices: [ [ 'ripv1', _('Version 1') ], [ 'ripv2', _('Version 2') ], [ 'both', _('Both versions') ] ] },
				{ option: 'authen_mode', title: _('Authentication'), kind: 'choice', preset: 'none',
				  words: 'ip rip authentication mode', column: true, tab: 'authentication',
				  help: _('Has to be the same on every router of the network. Needs version 2.'),
				  choices: [ [ 'none', _('None') ], [ 'simple', _('Password') ], [ 'md5', _('MD5') ] ] },
				{ option: 'key_id', title: _('Key number'), kind: 'number', min: 1, max: 255, preset: '1',
				  when: { authen_mode: [ 'md5' ] }, words: 'ip rip authentication key-chain', tab: 'authentication',
				  help: _('Has to be the same as on the neighbours, like the key. Interfaces with the same number share one key.') },
				{ option: 'key', title: _('Key'), kind: 'key', max: 16, when: { authen_mode: [ 'simple', 'md5' ] },
				  words: 'ip rip authentication string', tab: 'authentication',
				  help: _('A password is sent unencrypted; of an MD5 key only a proof is sent.') }
			]
		},
		{
			name: 'config', type: 'config', title: _('Routes of other protocols'), context: 'router rip',
			help: _('What RIP tells its neighbours besides its own networks.'),
			fields: [
				{ option: 'redistribute_static', title: _('Static routes'), kind: 'switch', on: 'enable', off: 'disable',
				  preset: 'disable', words: 'redistribute static', help: _('Announces the static routes of this router.') },
				{ option: 'redistribute_static_metric', title: _('Metric of static routes'), kind: 'number', min: 0, max: 16,
				  preset: '1', help: _('Steps that such a route counts; 0 takes the default metric.') },
				{ option: 'redistribute_ospf', title: _('OSPF routes'), kind: 'switch', on: 'enable', off: 'disable',
				  preset: 'disable', words: 'redistribute ospf', help: _('Announces the routes that OSPF found.') },
				{ option: 'redistribute_ospf_metric', title: _('Metric of OSPF routes'), kind: 'number', min: 0, max: 16,
				  preset: '1', help: _('Steps that such a route counts; 0 takes the default metric.') }
			]
		},
		{
			name: 'config', type: 'config', title: _('Timers'), context: 'router rip',
			help: _('Have to be the same on all routers.'),
			fields: [
				{ option: 'update_timer', title: _('Update'), kind: 'number', min: 5, max: 100, unit: kSeconds, preset: '30',
				  words: 'timers basic', help: _('Time between two announcements of all routes.') },
				{ option: 'timeout_timer', title: _('Timeout'), kind: 'number', min: 5, max: 300, unit: kSeconds, preset: '180',
				  above: 'update_timer', help: _('A route that nobody announced for so long is no longer used.') },
				{ option: 'garbage_timer', title: _('Garbage collection'), kind: 'number', min: 5, max: 500, unit: kSeconds,
				  preset: '120', help: _('So long the neighbours are told that such a route is gone.') }
			]
		},
		{
			name: 'config', type: 'config', title: _('Advanced'), context: 'router rip',
			help: _('The usual values are right for most networks.'),
			fields: [
				{ option: 'rip_version', title: _('Version'), kind: 'choice', preset: 'default', words: 'version',
				  help: _('Automatic sends version 2 and understands both. Version 1 knows neither network lengths nor authentication.'),
				  choices: [ [ 'default', _('Automatic') ], [ 'ripv1', _('Version 1') ], [ 'ripv2', _('Version 2') ] ] },
				{ option: 'rip_distance', title: _('Distance'), kind: 'number', min: 1, max: 255, preset: '120', words: 'distance',
				  help: _('Of routes from several protocols the one with the lowest distance is taken.') },
				{ option: 'default_metric', title: _('Default metric'), kind: 'number', min: 1, max: 16, preset: '1',
				  words: 'default-metric', help: _('Steps that a route of another protocol counts; 16 is unreachable.') },
				// FRRouting's ripd does not know it; a daemon that does may have it stored by others.
				{ option: 'auto_summary', title: _('Automatic summary'), kind: 'switch', on: 'enable', off: 'disable',
				  preset: 'disable', words: 'autosummary', hidden: true }
			]
		}
	]
};

var nhrp = {
	config: 'nhrp',
	daemon: 'nhrpd',
	title: _('NHRP'),
	help: _('Finds the way between the ends of a tunnel network with a hub in the middle (DMVPN).'),
	sections: [
		{
			name: 'sdwan', type: 'nhrp', title: _('Tunnel'), context: 'interface',
			fields: [
				{ option: 'interface', title: _('Tunnel interface'), kind: 'name', optional: true,
				  help: _('The GRE tunnel that NHRP runs on, for example gre1.') },
				{ option: 'zebra_address', title: _('Tunnel address'), kind: 'prefix', words: 'ip address',
				  set: 'ip address', unset: 'no ip address',
				  help: _('The address of this router in the tunnel network, usually with length 32, for example 10.0.0.1/32.') },
				{ option: 'network_id', title: _('Network number'), kind: 'number', min: 1, max: 4294967295,
				  words: 'ip nhrp network-id', set: 'ip nhrp network-id',
				  help: _('Switches NHRP on for the tunnel.') },
				{ option: 'nhs_nbma', title: _('Hub'), kind: 'host', words: 'ip nhrp nhs', set: 'ip nhrp nhs dynamic nbma',
				  unset: 'no ip nhrp nhs dynamic nbma', help: _('Public address or name of the hub. Left empty on the hub itself.') },
				{ option: 'map_multicast', title: _('Multicast to'), kind: 'address', words: 'ip nhrp map multicast',
				  set: 'ip nhrp map multicast', unset: 'no ip nhrp map multicast',
				  help: _('Public address that gets the multicast packets of the tunnel, which OSPF needs; usually the hub\'s.') },
				{ option: 'shortcut', title: _('Shortcuts'), kind: 'switch', on: '1', off: '0', words: 'ip nhrp shortcut',
				  set: 'ip nhrp shortcut', unset: 'no ip nhrp shortcut',
				  help: _('Spokes: takes the direct way to another spoke.') },
				{ option: 'redirect', title: _('Redirect'), kind: 'switch', on: '1', off: '0', words: 'ip nhrp redirect',
				  set: 'ip nhrp redirect', help: _('Hub: tells spokes that there is a direct way.') },
				{ option: 'registration_nounique', title: _('Address may change'), kind: 'switch', on: '1', off: '0',
				  words: 'ip nhrp registration', set: 'ip nhrp registration no-unique',
				  help: _('Spokes without a fixed public address: the hub accepts a new one.') },
				{ option: 'ipsec_profile', title: _('IPsec profile'), kind: 'text', words: 'tunnel protection',
				  set: 'tunnel protection vici profile', help: _('The connection of strongSwan that protects the tunnel.') },
				{ option: 'ipsec_source', title: _('Tunnel source'), kind: 'name', words: 'tunnel source', set: 'tunnel source',
				  help: _('The interface that the tunnel\'s packets leave through.') },
				{ option: 'no_link_detect', title: _('Ignore link state'), kind: 'switch', on: '1', off: '0',
				  words: 'no link-detect', set: 'no link-detect', help: _('The tunnel counts as up whatever its link says.') }
			]
		},
		{
			name: 'sdwan', type: 'nhrp', title: _('Packet groups'), context: 'configure',
			help: _('Where the firewall hands packets to NHRP: the group of its NFLOG rule.'),
			fields: [
				{ option: 'nflog_group', title: _('Redirect group'), kind: 'number', min: 1, max: 65535,
				  words: 'nhrp nflog-group', set: 'nflog-group', handler: 'process_nhrp_global',
				  help: _('Packets that are worth a redirect.') },
				{ option: 'multicast_nflog_group', title: _('Multicast group'), kind: 'number', min: 1, max: 65535,
				  words: 'nhrp multicast-nflog-group', set: 'multicast-nflog-group', handler: 'process_nhrp_global',
				  help: _('Multicast packets of the tunnel.') }
			]
		}
	]
};

return baseclass.extend({
	ospf: ospf,
	rip: rip,
	nhrp: nhrp
});
