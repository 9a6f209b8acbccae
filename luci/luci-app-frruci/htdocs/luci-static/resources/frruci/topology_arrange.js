// SPDX-License-Identifier: Apache-2.0
// Where the nodes of a graph belong: as far from each other as their links are long. There is no chance in it.

'use strict';
'require baseclass';

var kRounds = 100;      // at most, until no place moves further than this
var kStill = 0.01;

var kLengths = { transit: 1, stub: 0.85, 'point-to-point': 1.5, virtual: 1.7 };

// Distances between all pairs along the links. What hangs together with nothing stands a little apart.
function distances(nodes, links) {
	var table = nodes.map(function(from) {
		return nodes.map(function(to) {
			return from == to ? 0 : Infinity;
		});
	});
	var longest = 1;

	links.forEach(function(link) {
		var a = nodes.indexOf(link.from), b = nodes.indexOf(link.to);

		table[a][b] = table[b][a] = Math.min(table[a][b], kLengths[link.kind]);
	});
	nodes.forEach(function(via, k) {
		nodes.forEach(function(from, i) {
			nodes.forEach(function(to, j) {
				table[i][j] = Math.min(table[i][j], table[i][k] + table[k][j]);
			});
		});
	});
	table.forEach(function(row) {
		row.forEach(function(value) {
			if (value < Infinity)
				longest = Math.max(longest, value);
		});
	});
	return table.map(function(row) {
		return row.map(function(value) {
			return value < Infinity ? value : longest / 2 + 1.2;
		});
	});
}

// The tree of shortest ways from the middle: for each node those that are reached over it.
function branches(nodes, center) {
	var below = nodes.map(function() {
		return [];
	});
	var seen = nodes.map(function(node, i) {
		return i == center;
	});
	var order = [ center ], i;

	function reach(from, to) {
		if (seen[to])
			return;
		seen[to] = true;
		below[from].push(to);
		order.push(to);
	}

	for (i = 0; i < order.length; i++)
		nodes[order[i]].links.forEach(function(link) {
			reach(order[i], nodes.indexOf(link.from == nodes[order[i]] ? link.to : link.from));
		});
	// What hangs together with nothing hangs on the middle, once.
	for (i = 0; i < nodes.length; i++)
		reach(center, i);
	return below;
}

// One start: on circles around the middle, each branch in a slice of its own as wide as it has ends.
function circles(nodes, far, center) {
	var below = branches(nodes, center), places = [];

	function ends(i) {
		return below[i].length == 0 ? 1 : below[i].reduce(function(sum, child) {
			return sum + ends(child);
		}, 0);
	}

	function lay(i, from, to) {
		var angle = (from + to) / 2, each = (to - from) / ends(i);

		places[i] = { x: far[center][i] * Math.cos(angle), y: far[center][i] * Math.sin(angle) };
		below[i].reduce(function(start, child) {
			lay(child, start, start + each * ends(child));
			return start + each * ends(child);
		}, from);
	}

	lay(center, 0, 2 * Math.PI);
	return places;
}

// Another: outwards as the seeds of a sunflower, no two in one direction. It unfolds rings.
function sunflower(nodes, far, center) {
	var places = [];

	nodes.map(function(node, i) {
		return i;
	}).sort(function(a, b) {
		return far[center][a] - far[center][b] || a - b;
	}).forEach(function(i, position) {
		places[i] = { x: far[center][i] * Math.cos(2.399963 * position), y: far[center][i] * Math.sin(2.399963 * position) };
	});
	return places;
}

// How much the distances of the places differ from those along the links.
function strain(places, far) {
	return places.reduce(function(sum, a, i) {
		return places.reduce(function(sum, b, j) {
			var off = i == j ? 0 : Math.sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y)) / far[i][j] - 1;

			return sum + off * off;
		}, sum);
	}, 0);
}

// Moves one place to where its distances to all the others are nearest to those along the links; answers how far.
function move(places, far, i) {
	var place = places[i], x = 0, y = 0, weights = 0, j, weight, dx, dy, length;

	for (j = 0; j < places.length; j++) {
		if (j == i)
			continue;
		weight = 1 / (far[i][j] * far[i][j]);
		dx = place.x - places[j].x;
		dy = place.y - places[j].y;
		length = far[i][j] / (Math.sqrt(dx * dx + dy * dy) || 0.001);
		x += weight * (places[j].x + length * dx);
		y += weight * (places[j].y + length * dy);
		weights += weight;
	}
	dx = x / weights - place.x;
	dy = y / weights - place.y;
	place.x += dx;
	place.y += dy;
	return Math.abs(dx) + Math.abs(dy);
}

function relax(places, far) {
	var moved = places.length > 1, round, i;

	for (round = 0; moved && round < kRounds; round++) {
		moved = false;
		for (i = 0; i < places.length; i++)
			moved = move(places, far, i) > kStill || moved;
	}
}

// The better of the two starts, with a preference for the first: it is what one expects to see.
function places(nodes, links, center) {
	var far = distances(nodes, links), both = [ circles, sunflower ].map(function(start) {
		var places = start(nodes, far, center);

		relax(places, far);
		return places;
	});

	return strain(both[1], far) < 0.9 * strain(both[0], far) ? both[1] : both[0];
}

return baseclass.extend({
	places: places
});
