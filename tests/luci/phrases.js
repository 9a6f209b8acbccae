// SPDX-License-Identifier: Apache-2.0
// The phrases between what is stored and what was entered.

var phrases = require('frruci.phrases');
var fields = require('frruci.fields');

var all = fields.nhrp.sections.reduce(function(list, section) { return list.concat(section.fields); }, []);

// The calls, each as one line.
function between(before, after) {
	return phrases.between(all, before, after).map(function(call) {
		return [ call.handler ].concat(call.words).join(' ');
	});
}

same(between({}, { interface: 'gre1' }), []);
same(between({}, { interface: 'gre1', network_id: '5', shortcut: '1', redirect: '0', nhs_nbma: 'hub' }), [
	'process_nhrp_interface x gre1 ip nhrp network-id 5',
	'process_nhrp_interface x gre1 ip nhrp nhs dynamic nbma hub',
	'process_nhrp_interface x gre1 ip nhrp shortcut'
]);

// The old address goes before the new one comes; a number is replaced.
same(between({ interface: 'gre1', nhs_nbma: 'a', network_id: '5' }, { interface: 'gre1', nhs_nbma: 'b', network_id: '6' }), [
	'process_nhrp_interface x gre1 ip nhrp network-id 6',
	'process_nhrp_interface x gre1 no ip nhrp nhs dynamic nbma a',
	'process_nhrp_interface x gre1 ip nhrp nhs dynamic nbma b'
]);
same(between({ interface: 'gre1', zebra_address: '10.0.0.1/32', map_multicast: '192.0.2.1', shortcut: '1' }, { interface: 'gre1', shortcut: '0' }), [
	'process_nhrp_interface x gre1 no ip address 10.0.0.1/32',
	'process_nhrp_interface x gre1 no ip nhrp map multicast 192.0.2.1',
	'process_nhrp_interface x gre1 no ip nhrp shortcut'
]);
same(between({ interface: 'gre1', nhs_nbma: 'a', shortcut: '0' }, { interface: 'gre1', nhs_nbma: 'a' }), []);

// Groups are no tunnel's.
same(between({}, { interface: 'gre1', nflog_group: '3', multicast_nflog_group: '4' }), [
	'process_nhrp_global x nflog-group 3',
	'process_nhrp_global x multicast-nflog-group 4'
]);

// What no phrase takes away stays.
same(between({ interface: 'gre1', redirect: '1', network_id: '5' }, { interface: 'gre1' }), []);
same(all.filter(function(field) { return phrases.isFixed(field, '1'); }).map(function(field) { return field.option; }), [
	'network_id', 'redirect', 'registration_nounique', 'ipsec_profile', 'ipsec_source', 'no_link_detect', 'nflog_group',
	'multicast_nflog_group'
]);
same(all.some(function(field) { return phrases.isFixed(field, '0') || phrases.isFixed(field, null); }), false);

same(phrases.linkCall('gre1', 'tunnel add', 'a', 'b'), { handler: 'process_nhrp_interface', words: [ 'x', 'gre1', 'tunnel', 'add', 'a', 'b' ] });
