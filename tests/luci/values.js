// SPDX-License-Identifier: Apache-2.0
// Values: reading, checking, and what is stored for what is missing.

var values = require('frruci.values');
var fields = require('frruci.fields');

function sectionOf(page, type) {
	return page.sections.filter(function(section) { return section.type == type; })[0];
}

function field(page, type, option) {
	return page.sections.filter(function(section) { return section.type == type; }).reduce(function(all, section) {
		return all.concat(section.fields);
	}, []).filter(function(one) { return one.option == option; })[0];
}

function ospf(type, option) {
	return field(fields.ospf, type, option);
}

function rip(type, option) {
	return field(fields.rip, type, option);
}

// Networks: host bits go, a mask may be dotted, nothing else is one.
same(values.readNetwork('10.1.2.1/24'), { address: '10.1.2.0', length: 24, mask: '255.255.255.0' });
same(values.readNetwork('10.1.2.1/255.255.255.252'), { address: '10.1.2.0', length: 30, mask: '255.255.255.252' });
same(values.readNetwork('192.168.255.255/32'), { address: '192.168.255.255', length: 32, mask: '255.255.255.255' });
same(values.readNetwork('10.1.2.1/0'), { address: '0.0.0.0', length: 0, mask: '0.0.0.0' });
same(values.readNetwork('200.1.2.1/1'), { address: '128.0.0.0', length: 1, mask: '128.0.0.0' });
[ '', '10.1.2.0', '10.1.2.0/', '10.1.2.0/33', '10.1.2/24', '10.1.2.256/24', '010.1.2.0/24', '10.1.2.0/255.0.255.0',
  '10.1.2.0/24/8', '10.1.2.0/-1', 'a.b.c.d/8', '10.1.2.0/0.0.0.255', '10.1.2.0/ 24', '10.1.2.0/024' ].forEach(function(text) {
	same(values.readNetwork(text), null, text);
});

// Stored with a mask or with a wildcard mask, which only OSPF has; 0.0.0.0 is the wildcard mask of one address.
same(values.showNetwork('10.1.2.0', '255.255.255.0', true), '10.1.2.0/24');
same(values.showNetwork('10.1.2.0', '0.0.0.255', true), '10.1.2.0/24');
same(values.showNetwork('10.1.2.7', '0.0.0.0', true), '10.1.2.7/32');
same(values.showNetwork('10.1.2.7', '128.0.0.0', true), '0.0.0.0/1');
same(values.showNetwork('10.1.2.0', '0.0.0.255', false), '10.1.2.0/0.0.0.255');
same(values.showNetwork('0.0.0.0', '0.0.0.0', false), '0.0.0.0/0');
same(values.showNetwork('10.1.2.0', undefined, true), '10.1.2.0/');
same(values.showNetwork('10.1', '255.0.0.0', true), '10.1/255.0.0.0');
same(values.showNetwork(undefined, undefined, true), null);

same(values.sectionName('eth1.2'), 'eth1_2');
same(values.sectionName('eth1.2.3'), 'eth1_2_3');
same(values.stored('20\r\n'), '20');
same(values.stored([ '20' ]), null);
same(values.stored(undefined), null);

// An empty section gets every default; of an interface without authentication no key.
same(values.missing(sectionOf(fields.ospf, 'advertise_cfg').fields, {}),
     { originate: 'disable', always: 'disable', metric: '1', metric_type: '2' });
same(values.missing(sectionOf(fields.ospf, 'interface').fields, { interface: 'eth1.2', cost: '20\r\n', dead: '', hello: [ '7' ] }),
     { ns: 'wan', priority: '1', network_type: '0', passive: '0', mtu_ignore: '0', hello: '10', dead: '40', retransmit: '5',
       transmit: '1', auto_type: '0' });
same(values.missing(sectionOf(fields.ospf, 'interface').fields, { ns: 'lan', cost: '1', priority: '0', network_type: '1',
     passive: '1', mtu_ignore: '1', hello: '1', dead: '2', retransmit: '1', transmit: '1', auto_type: '2' }), { md5_key_id: '1' });
same(values.missing(sectionOf(fields.rip, 'interface').fields, {}),
     { split_horizon_mode: 'split_horizon', send_version: 'ripv2', receive_version: 'both', authen_mode: 'none' });
same(values.missing(sectionOf(fields.rip, 'interface').fields, { split_horizon_mode: 'none', send_version: 'ripv1',
     receive_version: 'ripv1', authen_mode: 'md5' }), { key_id: '1' });
same(values.missing(fields.rip.sections.filter(function(one) { return one.title == 'Advanced'; })[0].fields, {}),
     { rip_version: 'default', rip_distance: '120', default_metric: '1', auto_summary: 'disable' });

function good(one, value, section, others) {
	same(values.check(one, value, section || {}, others || [], 'Other'), true, one.option + ' ' + value);
}

function bad(one, value, message, section, others) {
	same(values.check(one, value, section || {}, others || [], 'Other'), message, one.option + ' ' + value);
}

// Numbers: the ends of the range and what is beside them.
good(ospf('interface', 'cost'), '1');
good(ospf('interface', 'cost'), '65535');
[ '0', '65536', '-1', '1.5', '1e2', 'ten', ' 1', '0x10', '99999999999' ].forEach(function(value) {
	bad(ospf('interface', 'cost'), value, 'A whole number from 1 to 65535.');
});
good(ospf('interface', 'priority'), '0');
bad(ospf('interface', 'priority'), '256', 'A whole number from 0 to 255.');
good(ospf('network', 'area_id'), '4294967295');
bad(ospf('network', 'area_id'), '4294967296', 'A whole number from 0 to 4294967295.');

// One has to be greater than another.
good(ospf('interface', 'dead'), '11', { hello: '10' });
bad(ospf('interface', 'dead'), '10', 'Must be greater than "Other".', { hello: '10' });
bad(ospf('interface', 'dead'), '9', 'Must be greater than "Other".', { hello: '10' });
good(rip('config', 'timeout_timer'), '31', { update_timer: '30' });
bad(rip('config', 'timeout_timer'), '30', 'Must be greater than "Other".', { update_timer: '30' });
bad(rip('config', 'timeout_timer'), '301', 'A whole number from 5 to 300.', { update_timer: '30' });

// The router id may be nothing only while OSPF is off.
good(ospf('global', 'router_id'), '1.1.1.1', { status: 'on' });
good(ospf('global', 'router_id'), '0.0.0.0', { status: 'off' });
bad(ospf('global', 'router_id'), '0.0.0.0', '0.0.0.0 is no router ID: choose one of this router\'s addresses.', { status: 'on' });
bad(ospf('global', 'router_id'), '1.1.1', 'Four numbers from 0 to 255, like 10.0.0.1.', { status: 'off' });
bad(ospf('global', 'router_id'), '1.1.1.01', 'Four numbers from 0 to 255, like 10.0.0.1.', { status: 'off' });

// A network is in the list once, however it is written.
good(ospf('network', 'ip'), '10.1.2.0/24', {}, [ { ip: '10.1.3.0', wildcard_mask: '255.255.255.0' } ]);
bad(ospf('network', 'ip'), '10.1.2.9/24', 'This network is in the list already.', {},
    [ { ip: '10.1.2.0', wildcard_mask: '0.0.0.255' } ]);
bad(ospf('network', 'ip'), '10.1.2.0', 'An address and a length from 1 to 32, like 192.168.1.0/24.');
bad(ospf('network', 'ip'), '0.0.0.0/0', 'The length must be at least 1.');
good(rip('network', 'ipaddress'), '0.0.0.0/0');
bad(rip('network', 'ipaddress'), '10.1.2.0/24', 'This network is in the list already.', {},
    [ { ipaddress: '10.1.2.7', mask: '255.255.255.0' } ]);

// Keys as long as the daemon keeps them, in bytes, without blanks.
good(ospf('interface', 'simple_key'), '12345678');
bad(ospf('interface', 'simple_key'), '123456789', 'At most 8 characters.');
good(ospf('interface', 'md5_key'), '1234567890123456');
bad(ospf('interface', 'md5_key'), '12345678901234567', 'At most 16 characters.');
bad(ospf('interface', 'simple_key'), '\u00e4\u00e4\u00e4\u00e4\u00e4', 'At most 8 characters.');
bad(ospf('interface', 'md5_key'), 'a b', 'Spaces are not possible here.');
bad(ospf('interface', 'md5_key'), 'a\tb', 'Spaces are not possible here.');

// One key chain for each number: interfaces with the same number cannot have different keys.
good(rip('interface', 'key'), 'one', { authen_mode: 'md5', key_id: '1' }, [ { authen_mode: 'md5', key_id: '1', key: 'one' } ]);
good(rip('interface', 'key'), 'two', { authen_mode: 'md5', key_id: '1' }, [ { authen_mode: 'md5', key_id: '2', key: 'one' } ]);
good(rip('interface', 'key'), 'two', { authen_mode: 'simple', key_id: '1' }, [ { authen_mode: 'md5', key_id: '1', key: 'one' } ]);
bad(rip('interface', 'key'), 'two', 'Another interface has another key with this number.', { authen_mode: 'md5', key_id: '1' },
    [ { authen_mode: 'md5', key_id: '1', key: 'one' } ]);

good(ospf('interface', 'network_type'), '2');
bad(ospf('interface', 'network_type'), '3', 'None of the choices.');
good(field(fields.nhrp, 'nhrp', 'zebra_address'), '10.0.0.1/32');
bad(field(fields.nhrp, 'nhrp', 'zebra_address'), '10.0.0.1', 'An address and its length, like 10.0.0.1/24.');
bad(field(fields.nhrp, 'nhrp', 'zebra_address'), '10.0.0.1/255.255.255.0', 'An address and its length, like 10.0.0.1/24.');
good(field(fields.nhrp, 'nhrp', 'map_multicast'), '192.0.2.1');
bad(field(fields.nhrp, 'nhrp', 'map_multicast'), 'hub', 'Four numbers from 0 to 255, like 10.0.0.1.');
good(field(fields.nhrp, 'nhrp', 'nhs_nbma'), 'hub.example');
bad(field(fields.nhrp, 'nhrp', 'nhs_nbma'), 'a hub', 'Spaces are not possible here.');
good(field(fields.nhrp, 'nhrp', 'interface'), 'gre4-hub');
[ 'sixteen-letters-', 'gre 1', 'gre/1', 'gre;1', 'gre$1', 'gre`1', 'gre\\1', 'gre[1' ].forEach(function(name) {
	bad(field(fields.nhrp, 'nhrp', 'interface'), name, 'The name of an interface: at most 15 characters.');
});
good(field(fields.ospf, 'global', 'status'), 'on');

same(values.describe(ospf('interface', 'transmit')), 'Time that sending an update takes on this link. 1 to 65535 seconds. Usually 1.');
same(values.describe(field(fields.nhrp, 'nhrp', 'network_id')), 'Switches NHRP on for the tunnel. 1 to 4294967295.');
same(values.describe(ospf('interface', 'simple_key')),
     'Sent unencrypted: it keeps out mistakes, not attackers. At most 8 characters, no spaces.');

same(values.show(ospf('interface', 'hello'), '10'), '10 s');
same(values.show(ospf('interface', 'cost'), '10'), '10');
same(values.show(ospf('interface', 'passive'), '1'), 'Yes');
same(values.show(ospf('interface', 'passive'), '0'), 'No');
same(values.show(ospf('interface', 'auto_type'), '2'), 'MD5');
same(values.show(ospf('interface', 'auto_type'), '7'), '7');
same(values.show(ospf('interface', 'hello'), null), null);

// What the router offers.
var addressable = [
	{ name: 'eth0.2', section: 'eth0_2', ns: 'lan', up: true, address: '10.1.9.1/24' },
	{ name: 'eth1.2', section: 'eth1_2', ns: 'wan', up: true, address: '10.1.2.1/24' },
	{ name: 'eth1.3', section: 'eth1_3', ns: 'wan', up: false, address: '10.1.12.1/24' },
	{ name: 'eth1.4', section: 'eth1_4', up: true },
	{ name: 'eth1.5', section: 'eth1_5', up: true, address: '10.1.2.2/24' }
];
same(values.ownNetworks(addressable), [ [ '10.1.9.0/24', 'eth0.2' ], [ '10.1.2.0/24', 'eth1.2' ], [ '10.1.12.0/24', 'eth1.3' ] ]);
same(values.ownNetworks(undefined), []);
same(values.suggestRouterId(addressable), '10.1.9.1');
same(values.suggestRouterId([ { name: 'eth1.4', up: true } ]), null);
