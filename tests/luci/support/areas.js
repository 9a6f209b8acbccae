// SPDX-License-Identifier: Apache-2.0
// Areas as the router tells them, for the tests of the drawing.

// An area with COUNT routers, 10.0.0.1 and so on; FILL gets it to join them.
function area(count, fill) {
	var made = { id: '0.0.0.0', routers: [], networks: [] }, i;

	for (i = 1; i <= count; i++)
		made.routers.push({ id: '10.0.0.' + i, links: [] });
	fill(made, made.routers);
	return made;
}

function network(area, number, routers, metric) {
	var id = '10.1.' + number + '.1';

	routers.forEach(function(router, i) {
		router.links.push({ type: 'transit', id: id, data: '10.1.' + number + '.' + (i + 1), metric: metric || 10 });
	});
	area.networks.push({ id: id, mask: 24, routers: routers.map(function(router) {
		return router.id;
	}) });
}

function stub(router, number) {
	router.links.push({ type: 'stub', id: '192.168.' + number + '.0', data: '255.255.255.0', metric: 10 });
}

// A link of type POINT-TO-POINT between A and B, with the network that both announce for it.
function pointToPoint(a, b, metric, back) {
	var number = a.links.length + 16 * b.links.length;

	a.links.push({ type: 'point-to-point', id: b.id, data: '10.9.' + number + '.1', metric: metric });
	b.links.push({ type: 'point-to-point', id: a.id, data: '10.9.' + number + '.2', metric: back });
	[ a, b ].forEach(function(router) {
		router.links.push({ type: 'stub', id: '10.9.' + number + '.0', data: '255.255.255.252', metric: metric });
	});
}

var areas = {
	alone: area(1, function(area, routers) {
		stub(routers[0], 1);
		stub(routers[0], 2);
	}),
	pair: area(2, function(area, routers) {
		network(area, 2, routers);
		stub(routers[0], 1);
		stub(routers[1], 3);
	}),
	star: area(9, function(area, routers) {
		routers.slice(1).forEach(function(router, i) {
			network(area, i, [ routers[0], router ]);
			stub(router, i);
		});
	}),
	ring: area(6, function(area, routers) {
		routers.forEach(function(router, i) {
			network(area, i, [ router, routers[(i + 1) % 6] ]);
			stub(router, i);
		});
	}),
	chain: area(7, function(area, routers) {
		routers.slice(1).forEach(function(router, i) {
			network(area, i, [ routers[i], router ]);
		});
	}),
	lan: area(12, function(area, routers) {
		network(area, 1, routers);
		routers.forEach(function(router, i) {
			stub(router, i);
			stub(router, i + 50);
		});
	}),
	mesh: area(6, function(area, routers) {
		routers.forEach(function(router, i) {
			routers.slice(0, i).forEach(function(other) {
				pointToPoint(router, other, 100, 100);
			});
		});
	}),
	thirty: area(30, function(area, routers) {
		routers.slice(1).forEach(function(router, i) {
			network(area, i, [ routers[i >> 1], router ]);
			stub(router, i);
		});
		network(area, 90, [ routers[3], routers[6] ]);
		network(area, 91, [ routers[20], routers[25], routers[29] ]);
	}),
	large: area(90, function(area, routers) {
		routers.slice(1).forEach(function(router, i) {
			network(area, i, [ routers[i >> 1], router ]);
		});
	}),
	wide: area(100, function(area, routers) {
		network(area, 1, routers);
	})
};
