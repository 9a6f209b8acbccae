// SPDX-License-Identifier: Apache-2.0
// Where a refusal is shown, and who loses zebra.

var answers = require('frruci.answers');
var fields = require('frruci.fields');

var ospf = [
	{ '.name': 'global', '.type': 'global' },
	{ '.name': 'advertise_cfg', '.type': 'advertise_cfg' },
	{ '.name': 'ospf_cfg', '.type': 'ospf_cfg' },
	{ '.name': 'cfg01', '.type': 'network', ip: '10.1.2.0', wildcard_mask: '0.0.0.255', area_id: '0' },
	{ '.name': 'cfg02', '.type': 'network', ip: '10.1.3.0', wildcard_mask: '255.255.255.0', area_id: '0' },
	{ '.name': 'eth1_2', '.type': 'interface', interface: 'eth1.2' },
	{ '.name': 'eth1_3', '.type': 'interface', interface: 'eth1.3' }
];
var rip = [
	{ '.name': 'config', '.type': 'config' },
	{ '.name': 'cfg01', '.type': 'network', ipaddress: '10.1.2.0', mask: '255.255.255.0' },
	{ '.name': 'eth1_2', '.type': 'interface', interface: 'eth1.2', authen_mode: 'md5', key_id: '1' },
	{ '.name': 'eth1_3', '.type': 'interface', interface: 'eth1.3', authen_mode: 'md5', key_id: '12' },
	{ '.name': 'eth1_4', '.type': 'interface', interface: 'eth1.4', authen_mode: 'none', key_id: '3' }
];
var nhrp = [ { '.name': 'sdwan', '.type': 'nhrp', interface: 'gre1' } ];

function place(page, stored, context, command, section, option) {
	same(answers.locate(page, { context: context, command: command }, stored),
	     section ? { section: section, option: option } : null, context + ': ' + command);
}

place(fields.ospf, ospf, 'interface eth1.2', 'ip ospf cost 70000', 'eth1_2', 'cost');
place(fields.ospf, ospf, 'interface eth1.3', 'no ip ospf cost', 'eth1_3', 'cost');
place(fields.ospf, ospf, 'interface eth1.4', 'ip ospf cost 70000');
place(fields.ospf, ospf, 'interface eth1.20', 'ip ospf cost 70000');
place(fields.ospf, ospf, 'interface eth1.2', 'ip ospf authentication message-digest', 'eth1_2', 'auto_type');
place(fields.ospf, ospf, 'interface eth1.2', 'ip ospf authentication-key ***', 'eth1_2', 'simple_key');
place(fields.ospf, ospf, 'interface eth1.2', 'ip ospf message-digest-key 1 md5 ***', 'eth1_2', 'md5_key');
place(fields.ospf, ospf, 'interface eth1.2', 'ip ospf passive', 'eth1_2', 'passive');
place(fields.ospf, ospf, 'interface eth1.2', 'bandwidth 10');
place(fields.ospf, ospf, 'router ospf', 'ospf router-id 1.1.1.1', 'global', 'router_id');
place(fields.ospf, ospf, 'router ospf', 'network 10.1.2.0/24 area 0', 'cfg01', 'ip');
place(fields.ospf, ospf, 'router ospf', 'network 10.1.3.0/24 area 0', 'cfg02', 'ip');
place(fields.ospf, ospf, 'router ospf', 'no network 10.1.4.0/24 area 0');
place(fields.ospf, ospf, 'router ospf', 'default-information originate metric 1', 'advertise_cfg', 'originate');
place(fields.ospf, ospf, 'router ospf', 'timers throttle spf 0 50 5000', 'ospf_cfg', 'spf_delay');
place(fields.ospf, ospf, 'router ospf', 'passive-interface default', 'ospf_cfg', 'passive_def');
place(fields.ospf, ospf, 'router ospf', 'no maximum-paths', 'ospf_cfg', 'max_path');
place(fields.ospf, ospf, 'router ospf', 'area 0 stub');
place(fields.ospf, [], 'router ospf', 'maximum-paths 8');
place(fields.ospf, ospf, undefined, 'router ospf');

place(fields.rip, rip, 'router rip', 'timers basic 30 180 120', 'config', 'update_timer');
place(fields.rip, rip, 'router rip vrf default', 'redistribute static metric 3', 'config', 'redistribute_static');
place(fields.rip, rip, 'router rip', 'network 10.1.2.0/24', 'cfg01', 'ipaddress');
place(fields.rip, rip, 'router rip', 'version 2', 'config', 'rip_version');
place(fields.rip, rip, 'interface eth1.2', 'ip rip authentication mode md5', 'eth1_2', 'authen_mode');
place(fields.rip, rip, 'interface eth1.2', 'ip rip authentication string ***', 'eth1_2', 'key');
place(fields.rip, rip, 'interface eth1.2', 'ip rip authentication key-chain app_rip_1', 'eth1_2', 'key_id');
place(fields.rip, rip, 'key chain app_rip_12', 'key 12', 'eth1_3', 'key');
place(fields.rip, rip, undefined, 'key chain app_rip_1', 'eth1_2', 'key');
place(fields.rip, rip, 'key chain app_rip_3', 'key 3');
place(fields.ospf, rip, 'key chain app_rip_1', 'key 1');

place(fields.nhrp, nhrp, 'interface gre1', 'ip nhrp nhs dynamic nbma x', 'sdwan', 'nhs_nbma');
place(fields.nhrp, nhrp, 'interface gre1', 'no ip address 10.0.0.1/32', 'sdwan', 'zebra_address');
place(fields.nhrp, nhrp, 'interface gre1', 'no link-detect', 'sdwan', 'no_link_detect');
place(fields.nhrp, nhrp, undefined, 'nhrp nflog-group 1', 'sdwan', 'nflog_group');

// The daemon's own words.
same(answers.tell({ daemon: 'ospfd', command: 'ip ospf cost 70000', answer: '% Unknown command\n' }),
     'ospfd refused "ip ospf cost 70000": % Unknown command');
same(answers.tell({ daemon: 'ospfd', command: 'ip ospf cost 70000' }), 'ospfd refused "ip ospf cost 70000".');

var status = {
	daemons: [ { name: 'zebra', state: 'running' }, { name: 'ospfd', state: 'running' }, { name: 'ripd', state: 'stopped' },
	           { name: 'nhrpd', state: 'silent' } ],
	protocols: { ospf: { stored: 'on', running: true }, rip: { stored: 'on', running: false }, nhrp: { stored: 'unset' } },
	others: [ 'bgpd' ],
	applied: { refused: [ { protocol: 'ospf', command: 'a' }, { protocol: 'rip', command: 'b' } ] }
};
same(answers.ofProtocol(status, 'rip'), [ { protocol: 'rip', command: 'b' } ]);
same(answers.ofProtocol({}, 'rip'), []);

// zebra ends with ospfd unless ripd runs, and the other way round.
same(answers.losers(status, 'ospf'), [ 'bgpd', 'nhrpd' ]);
same(answers.losers(status, 'rip'), []);
same(answers.losers({ daemons: [], others: [ 'bgpd' ], protocols: { rip: { stored: 'on', running: false } } }, 'rip'), [ 'bgpd' ]);
same(answers.losers({ daemons: [], others: [ 'bgpd' ], protocols: { rip: { stored: 'off', running: true } } }, 'rip'), [ 'bgpd' ]);
same(answers.losers({ daemons: [], others: [ 'bgpd' ], protocols: { rip: { stored: 'off', running: false } } }, 'rip'), []);
same(answers.losers({}, 'ospf'), []);

same(answers.stateOf(status, fields.ospf), { state: 'on', text: 'OSPF is running' });
same(answers.stateOf(status, fields.rip), { state: 'fault', text: 'RIP is switched on, but ripd does not run.' });
same(answers.stateOf(status, fields.nhrp), { state: 'off', text: 'NHRP is not set up' });
same(answers.stateOf({ protocols: { rip: { stored: 'off', running: false } } }, fields.rip), { state: 'off', text: 'RIP is switched off' });
same(answers.stateOf({}, fields.nhrp), { state: 'fault', text: 'The state is not known: frruci does not answer.' });
