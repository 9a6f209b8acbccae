// SPDX-License-Identifier: Apache-2.0
// What the status page says.

var status = require('frruci.status');

function texts(rows) {
	return rows.map(function(row) {
		return row.map(function(cell) {
			return cell.badge ? cell.badge.kind + ' ' + cell.badge.word : cell.text;
		});
	});
}

// Durations
same(status.duration(0), '0s');
same(status.duration(59.9), '59s');
same(status.duration(60), '1m');
same(status.duration(75), '1m 15s');
same(status.duration(3600), '1h');
same(status.duration(3661), '1h 1m');
same(status.duration(2 * 86400 + 3 * 3600 + 59), '2d 3h');
same(status.duration(86400 + 59), '1d');
same(status.duration(undefined), '–', 'a duration that is not known');
same(status.duration(-1), '–', 'a duration before it began');

// States of neighbours
[ [ 'Full', 'good' ], [ '2-Way', 'idle' ], [ 'Loading', 'busy' ], [ 'Exchange', 'busy' ], [ 'ExStart', 'busy' ],
	[ 'Init', 'busy' ], [ 'Attempt', 'bad' ], [ 'Down', 'bad' ] ].forEach(function(row) {
	var state = status.neighborState(row[0]);

	same([ state.word, state.kind ], row);
	holds(state.title.length > 20, row[0] + ' is explained');
});
same(status.neighborState('Odd'), { kind: 'idle', word: 'Odd', title: '' }, 'a state that nobody knows');
same(status.neighborState(undefined).word, '–');

// Neighbours
var neighbors = {
	running: true, router_id: '1.1.1.1', neighbors: [
		{ id: '4.4.4.4', address: '10.1.3.2', 'interface': 'eth1.3', state: 'ExStart', role: 'Backup', priority: 0, uptime: 3, dead: 38 },
		{ id: '10.0.0.10', address: '10.1.2.3', 'interface': 'eth1.2', state: '2-Way', role: 'DROther', priority: 1, uptime: 75 },
		{ id: '10.0.0.9', address: '10.1.2.2', 'interface': 'eth1.2', state: 'Full', role: 'DR', priority: 1, uptime: 183600, dead: 37 }
	]
};

same(texts(status.neighborRows(neighbors)), [
	[ '10.0.0.9', 'good Full', '2d 3h', 'eth1.2', '10.1.2.2', 'DR', '1', '37s' ],
	[ '10.0.0.10', 'idle 2-Way', '1m 15s', 'eth1.2', '10.1.2.3', 'DROther', '1', '–' ],
	[ '4.4.4.4', 'busy ExStart', '3s', 'eth1.3', '10.1.3.2', 'Backup', '0', '38s' ]
], 'neighbours by interface, then by id');
same(neighbors.neighbors[0].id, '4.4.4.4', 'the answer stays as it was');
same(status.neighborRows(neighbors)[0][5].title, 'designated router');
same(status.neighborRows(null), []);
same(status.neighborStates({ neighbors: [
	{ id: '2.2.2.2', state: 'Full' }, { id: '2.2.2.2', state: 'Init' }, { id: '3.3.3.3', state: 'Down' }, { id: '3.3.3.3', state: '2-Way' }
] }), { '2.2.2.2': 'Full', '3.3.3.3': '2-Way' }, 'the better one of two links counts');

// Interfaces
same(texts(status.interfaceRows({ interfaces: [
	{ name: 'eth1.2', up: true, address: '10.1.2.1/24', area: '0.0.0.0', type: 'broadcast', state: 'DR', cost: 10, hello: 10, dead: 40,
		passive: false, neighbors: 2, adjacent: 1 },
	{ name: 'eth1.3', up: false, state: 'Down', hello: 10, dead: 40, neighbors: 0, adjacent: 0 },
	{ name: 'eth1.4', up: true, passive: true, state: 'DR' }
] })), [
	[ 'eth1.2', 'good up', '10.1.2.1/24', '0.0.0.0', 'DR', 'broadcast', '10', '10s / 40s', '2, 1 of them adjacent' ],
	[ 'eth1.3', 'bad down', '–', '–', 'Down', '–', '–', '10s / 40s', '0' ],
	[ 'eth1.4', 'good up', '–', '–', 'passive', '–', '–', '– / –', '–' ]
]);

// RIP
same(status.ripFacts({ running: true, version: '2', update: 30, timeout: 180, garbage: 120, redistribute: [ 'static', 'ospf' ] }), [
	{ title: 'Version', text: '2' }, { title: 'Update every', text: '30s' }, { title: 'Timeout after', text: '3m' },
	{ title: 'Garbage for', text: '2m' }, { title: 'Redistributes', text: 'static, ospf' }
]);
same(status.ripFacts({ running: true, redistribute: [] }), []);
same(status.ripFacts({ running: false, update: 30 }), []);
same(texts(status.ripInterfaceRows({ interfaces: [
	{ name: 'eth1.2', send: '2', receive: '1 2', key_chain: 'app_rip_1' }, { name: 'eth1.3', send: '2', receive: '2' }
] })), [ [ 'eth1.2', '2', '1 2', 'key chain app_rip_1' ], [ 'eth1.3', '2', '2', '–' ] ]);
same(texts(status.ripSourceRows({ sources: [ { gateway: '10.1.2.2', bad_packets: 0, bad_routes: 3, distance: 120, last_update: 12 } ] })),
	[ [ '10.1.2.2', '12s ago', '0', '3', '120' ] ]);
same(texts(status.ripRouteRows({ routes: [
	{ network: '10.1.2.0/24', next_hop: '0.0.0.0', metric: 1, from: 'self' },
	{ network: '10.9.0.0/24', next_hop: '10.1.2.2', metric: 2, from: '10.1.2.3' }
] })), [ [ '10.1.2.0/24', 'direct', '1', 'this router' ], [ '10.9.0.0/24', '10.1.2.2', '2', '10.1.2.3' ] ]);

// NHRP
same(texts(status.nhrpRows({ entries: [ { 'interface': 'tun0', type: 'dynamic', protocol: '10.0.0.2', nbma: '192.0.2.2', flags: 'UT' } ] })),
	[ [ '10.0.0.2', '192.0.2.2', 'tun0', 'dynamic', 'UT', '–' ] ]);

// Why there is nothing to see
function router(stored, state, running) {
	return {
		daemons: [ { name: 'zebra', state: 'running' }, { name: 'ospfd', state: state } ],
		protocols: { ospf: { stored: stored, running: !!running } }
	};
}

same(status.absence(router('on', 'running', true), 'ospf', { running: true }), null);
same(status.absence(router('off', 'running', true), 'ospf', { running: true }), null, 'what runs is shown');
same(status.absence(router('off', 'stopped'), 'ospf', { running: false }),
	{ text: 'OSPF is switched off.', page: 'ospf', link: 'Switch it on' });
same(status.absence(router('unset', 'stopped'), 'ospf', { running: false }), { text: 'OSPF is not set up.', page: 'ospf', link: 'Set it up' });
same(status.absence(router('on', 'stopped'), 'ospf', { running: false }), { text: 'ospfd does not run.' });
same(status.absence(router('on', 'silent'), 'ospf', { running: false }), { text: 'ospfd does not answer.' });
same(status.absence(router('on', 'running'), 'ospf', { running: false }),
	{ text: 'ospfd runs without OSPF: what is stored was not applied yet.' });
same(status.absence(null, 'rip', { running: false }), { text: 'ripd does not run.' }, 'the state of the daemons is not known');
same(status.absence(router('on', 'running', true), 'nhrp', undefined), { text: 'Not known: the router gave no answer.' });

same(status.noNeighbor(undefined), { text: 'No neighbour seen yet.' });
same(status.noNeighbor({ interfaces: [] }),
	{ text: 'No neighbour seen: OSPF runs on no interface yet.', page: 'ospf', link: 'Choose its networks' });
same(status.noNeighbor({ interfaces: [ { name: 'a', up: false }, { name: 'b', up: true, passive: true } ] }),
	{ text: 'No neighbour seen: all of its interfaces are down or passive.' });
same(status.noNeighbor({ interfaces: [ { name: 'a', up: false }, { name: 'b', up: true }, { name: 'c', up: true } ] }),
	{ text: 'No neighbour seen yet: OSPF sends hellos on b, c and hears none.' });

// Cards
var whole = {
	version: '0.1.0', others: [ 'bgpd', 'staticd' ], watch: { running: true }, applied: { time: 1000, changes: 3, refused: [] },
	daemons: [
		{ name: 'mgmtd', state: 'running', version: '10.3' }, { name: 'zebra', state: 'running', version: '10.3' },
		{ name: 'ospfd', state: 'running', version: '10.3' }, { name: 'ripd', state: 'stopped' }, { name: 'nhrpd', state: 'silent' }
	],
	protocols: { ospf: { stored: 'on', running: true }, rip: { stored: 'off', running: false }, nhrp: { stored: 'unset', running: false } }
};

same(status.cards(whole, { neighbors: neighbors }, 1075), [
	{ title: 'OSPF', page: 'ospf', kind: 'good', word: 'running', detail: 'ospfd 10.3',
		lines: [ 'switched on', '3 neighbours', '1 of them full' ] },
	{ title: 'RIP', page: 'rip', kind: 'idle', word: 'stopped', detail: 'ripd', lines: [ 'switched off' ] },
	{ title: 'NHRP', page: 'nhrp', kind: 'bad', word: 'silent', detail: 'nhrpd', lines: [ 'not set up' ] },
	{ title: 'zebra', kind: 'good', word: 'running', detail: 'FRRouting 10.3', lines: [ 'also serves bgpd, staticd' ] },
	{ title: 'mgmtd', kind: 'good', word: 'running', detail: 'FRRouting 10.3', lines: [ 'passes on settings' ] },
	{ title: 'frruci', kind: 'good', word: 'watching', detail: '0.1.0', lines: [ 'applies changes', 'last 1m 15s ago' ] }
]);

function ospfCard(stored, state, running, neighbors) {
	var card = status.cards(router(stored, state, running), { neighbors: neighbors }, 0)[0];

	return [ card.kind ].concat(card.lines);
}

same(ospfCard('on', 'stopped', false), [ 'bad', 'switched on, does not run' ]);
same(ospfCard('on', 'running', false), [ 'bad', 'switched on, does not run' ]);
same(ospfCard('off', 'running', true, { neighbors: [] }), [ 'good', 'switched off, still runs', 'no neighbours' ]);
same(ospfCard('off', 'running', false), [ 'idle', 'switched off' ], 'a daemon without its protocol');
same(ospfCard('unset', 'running', true), [ 'good', 'runs, nothing is stored' ], 'the neighbours were not read');
same(ospfCard('on', 'running', true, { neighbors: [ { state: 'Full' } ] }), [ 'good', 'switched on', '1 full neighbour' ]);
same(ospfCard('on', 'running', true, { neighbors: [ { state: 'Full' }, { state: 'Full' } ] }), [ 'good', 'switched on', '2 full neighbours' ]);

var other = {
	daemons: [ { name: 'zebra', state: 'stopped' }, { name: 'ripd', state: 'running' }, { name: 'nhrpd', state: 'running' } ],
	protocols: { rip: { stored: 'on', running: true }, nhrp: { stored: 'on', running: true } }, watch: { running: false }
};

same(status.cards(other, { rip: { routes: [ {}, { from: 'self' } ] }, nhrp_cache: { entries: [ {}, {} ] } }, 0).map(function(card) {
	return [ card.title, card.kind ].concat(card.lines);
}), [
	[ 'OSPF', 'idle', 'not set up' ],
	[ 'RIP', 'good', 'switched on', '1 route learnt' ],
	[ 'NHRP', 'good', 'switched on', '2 cache entries' ],
	[ 'zebra', 'bad', 'puts the routes into the kernel' ],
	[ 'frruci', 'idle', 'changes wait' ]
], 'no mgmtd, and a zebra that is missed');

function withManagement(version, state) {
	return status.cards({ daemons: [ { name: 'mgmtd', state: state }, { name: 'zebra', state: 'running', version: version } ] }, {}, 0)
		.filter(function(card) {
			return card.title == 'mgmtd';
		}).length;
}

same(withManagement('10.3', 'stopped'), 1);
same(withManagement(undefined, 'stopped'), 1);
same(withManagement('8.4.4', 'stopped'), 0, 'nobody needs it');
same(withManagement('9.1', 'running'), 1);

function applyLine(time, now) {
	return status.cards({ applied: { time: time, changes: 1 } }, {}, now).pop().lines.slice(1);
}

same(applyLine(100, 99), [], 'the clock of the router is ahead');
same(applyLine(0, 1700000000), [], 'the router had no clock');
