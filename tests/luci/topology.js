// SPDX-License-Identifier: Apache-2.0
// The graph that is made of an area's database.

var topology = require('frruci.topology');

// The graph in words: each node with its notes and its distance, each link with its metric.
function told(graph) {
	return {
		nodes: graph.nodes.map(function(node) {
			return [ node.kind, node.label, node.hops == null ? 'away' : node.hops ].concat(node.notes || []).join(' | ');
		}),
		links: graph.links.map(function(link) {
			return [ link.from.label, link.to.label, link.text ].concat(link.whole ? [] : 'half').join(' ');
		})
	};
}

function read(area, states, external) {
	return topology.read(area, '10.0.0.1', external, states || {});
}

// Addresses
same(topology.prefix('10.1.2.2', 24), '10.1.2.0/24');
same(topology.prefix('192.168.5.130', '255.255.255.128'), '192.168.5.128/25');
same(topology.prefix('10.1.2.2', '255.255.255.255'), '10.1.2.2/32');
same(topology.prefix('10.1.2.2', '0.0.0.0'), '0.0.0.0/0');
same(topology.prefix('255.255.255.255', 1), '128.0.0.0/1');
same([ '10.0.0.10', '9.0.0.1', '10.0.0.9' ].sort(topology.byAddress), [ '9.0.0.1', '10.0.0.9', '10.0.0.10' ]);

// Two routers on a network
var pair = read(areas.pair, { '10.0.0.2': 'Full' });

same(told(pair), {
	nodes: [ 'network | 10.1.2.0/24 | 1', 'router | 10.0.0.1 | 0 | this router', 'router | 10.0.0.2 | 2 | neighbour, Full',
		'stub | 192.168.1.0/24 | 1', 'stub | 192.168.3.0/24 | 3' ],
	links: [ '10.0.0.1 10.1.2.0/24 10', '10.0.0.2 10.1.2.0/24 10', '10.0.0.1 192.168.1.0/24 10', '10.0.0.2 192.168.3.0/24 10' ]
});
same(pair.index['r:10.0.0.2'].title, '10.0.0.2\nneighbour, Full\n192.168.3.0/24');
same(pair.index['n:10.1.2.1'].title, '10.1.2.0/24\nnetwork with neighbours');
same(pair.index['s:192.168.1.0/24'].title, '192.168.1.0/24\nnetwork');
same(pair.links[0].title, '10.0.0.1 to 10.1.2.0/24: metric 10');
same(topology.caption(pair), '2 routers, 1 network between them.');
same(topology.caption(read(areas.alone)), '1 router.');

// The same database in another order is the same graph.
same(told(read({ id: '0.0.0.0', routers: areas.ring.routers.slice().reverse(), networks: areas.ring.networks.slice().reverse() })),
	told(read(areas.ring)), 'the order of the answer does not matter');

// Links without a network in between
var straight = area(3, function(area, routers) {
	pointToPoint(routers[0], routers[1], 10, 40);
	pointToPoint(routers[1], routers[2], 5, 5);
	routers[0].links.push({ type: 'point-to-point', id: '10.0.0.2', data: '10.9.200.1', metric: 3 });
});

same(told(read(straight)), {
	nodes: [ 'router | 10.0.0.1 | 0 | this router', 'router | 10.0.0.2 | 1', 'router | 10.0.0.3 | 2' ],
	links: [ '10.0.0.1 10.0.0.2 3 / 40', '10.0.0.2 10.0.0.3 5' ]
}, 'one line for two routers, with the best metric of each side; its networks are no leaves');

// A network that two routers announce is one leaf.
same(told(read(area(2, function(area, routers) {
	network(area, 1, routers);
	stub(routers[0], 7);
	stub(routers[1], 7);
	routers[1].links.push({ type: 'stub', id: '10.0.0.2', data: '255.255.255.255', metric: 0 });
}))).nodes.slice(3), [ 'stub | 192.168.7.0/24 | 1' ], 'nor is the own address of a router a network');

// A router that went away leaves its part of the database behind.
var left = area(3, function(area, routers) {
	network(area, 1, routers.slice(0, 2));
	routers[2].links.push({ type: 'transit', id: '10.1.1.1', data: '10.1.1.3', metric: 10 });
	routers[2].links.push({ type: 'transit', id: '10.1.8.1', data: '10.1.8.1', metric: 10 });
	area.networks.push({ id: '10.1.99.1', mask: 24, routers: [ '10.0.0.77' ] });
});

same(told(read(left)), {
	nodes: [ 'network | 10.1.1.0/24 | 1', 'router | 10.0.0.1 | 0 | this router', 'router | 10.0.0.2 | 2', 'router | 10.0.0.3 | away | not reachable' ],
	links: [ '10.0.0.1 10.1.1.0/24 10', '10.0.0.2 10.1.1.0/24 10', '10.0.0.3 10.1.1.0/24 10 half' ]
});
same(read(left).links[2].title, '10.0.0.3 to 10.1.1.0/24: metric 10\nonly one side speaks of this link');

// Two routers that do not agree yet on the network between them
same(told(read(area(2, function(area, routers) {
	network(area, 1, routers.slice(0, 1));
	routers[1].links.push({ type: 'stub', id: '10.1.1.0', data: '255.255.255.0', metric: 10 });
}))), {
	nodes: [ 'network | 10.1.1.0/24 | 1', 'router | 10.0.0.1 | 0 | this router', 'router | 10.0.0.2 | away | not reachable' ],
	links: [ '10.0.0.1 10.1.1.0/24 10', '10.0.0.2 10.1.1.0/24 10 half' ]
}, 'the network is drawn once');

// What comes from outside
same(read(areas.pair, {}, [
	{ network: '0.0.0.0/0', router: '10.0.0.2' }, { network: '10.7.0.0/16', router: '10.0.0.2' }, { network: '10.8.0.0/16', router: '10.0.0.2' },
	{ network: '10.6.0.0/16', router: '10.0.0.1' }
]).nodes.slice(1, 3).map(function(node) {
	return node.notes;
}), [ [ 'this router', '1 outside route' ], [ 'default route', '2 outside routes' ] ]);

// Many networks are counted.
var lan = read(areas.lan);

same(lan.nodes.length, 13);
same(lan.index['r:10.0.0.1'].notes, [ 'this router', '2 networks' ]);
holds(lan.index['r:10.0.0.1'].title.indexOf('192.168.50.0/24') > 0, 'they are named in the title');

// Too much to draw
var large = read(areas.large);

same(large.nodes.length, 61, 'what is nearest, whole distances at a time');
same(topology.caption(large), '90 routers, 89 networks between them. Drawn are the 31 routers and 30 networks nearest to this one.');
same(large.links.length, 60);
same(topology.caption(read(areas.wide)), '100 routers, 1 network between them. Drawn are the 1 routers and 1 networks nearest to this one.');
same(topology.caption(topology.read(areas.large, '10.9.9.9', [], {})), '90 routers, 89 networks between them. This is too much to draw.',
	'this router is not in the area');

// A database without anything
same(told(read({ id: '0.0.0.0' })), { nodes: [], links: [] });
