// SPDX-License-Identifier: Apache-2.0
// Places for the nodes of a graph: the same graph in the same room always looks the same, and no two labels touch.

'use strict';
'require baseclass';
'require frruci.topology_arrange as arrange';

var kRadius = 19;       // of a router's circle
var kLine = 15;         // from one line of a label to the next
var kGap = 12;          // between two boxes
var kEdge = 96;         // from a router to a network, before boxes are pushed apart
var kMargin = 16;
var kApart = 7;         // between a router's circle and its words
// Below this width the drawing grows downwards.
var kWide = 560;

// Where a router's words may stand; below is dearest to the eye.
var kSides = [ { x: 0, y: 1, price: 0 }, { x: 0, y: -1, price: 0.15 }, { x: 1, y: 0, price: 0.3 }, { x: -1, y: 0, price: 0.35 } ];
// Words beside a router make a narrow drawing wider.
var kNarrowPrice = 0.4;

// Widths are guessed a little too large: there is no font to measure here.
function textWidth(text, size) {
	return text.length * size * 0.6;
}

// How far a network reaches from its middle.
function networkBox(node) {
	var half = textWidth(node.label, 12) / 2 + 9;

	return { left: half, right: half, up: 12, down: 12 };
}

// How far a router reaches from its middle, with its words.
function routerBox(node) {
	var width = node.notes.reduce(function(most, note) {
		return Math.max(most, textWidth(note, 11));
	}, textWidth(node.label, 13));
	var height = kLine * (1 + node.notes.length), beside = kRadius + kApart + width, half = Math.max(kRadius, width / 2);

	if (node.side.x != 0)
		return {
			left: node.side.x < 0 ? beside : kRadius, right: node.side.x > 0 ? beside : kRadius,
			up: Math.max(kRadius, height / 2), down: Math.max(kRadius, height / 2)
		};
	return {
		left: half, right: half,
		up: node.side.y < 0 ? kRadius + kApart + height : kRadius, down: node.side.y > 0 ? kRadius + kApart + height : kRadius
	};
}

// How much the links of a node run through what stands on one side of it.
function clash(node, side, wide) {
	return node.links.reduce(function(sum, link) {
		var other = link.from == node ? link.to : link.from, x = other.x - node.x, y = other.y - node.y;
		var towards = Math.max(0, (x * side.x + y * side.y) / (Math.sqrt(x * x + y * y) || 1));

		return sum + Math.pow(towards, side.x != 0 ? 4 : 2);
	}, side.price + (side.x != 0 && !wide ? kNarrowPrice : 0));
}

// A router's words stand where its links leave most room.
function chooseSides(nodes, wide) {
	nodes.forEach(function(node) {
		if (node.kind == 'router')
			node.side = kSides.reduce(function(best, side) {
				return clash(node, side, wide) < clash(node, best, wide) ? side : best;
			});
		node.box = node.kind == 'router' ? routerBox(node) : networkBox(node);
	});
}

function mean(places) {
	var sum = places.reduce(function(sum, place) {
		return { x: sum.x + place.x, y: sum.y + place.y };
	}, { x: 0, y: 0 });

	return { x: sum.x / places.length, y: sum.y / places.length };
}

// Turns the longer side to where there is room, with this router at its beginning.
function turn(places, center, wide) {
	var middle = mean(places), xx = 0, xy = 0, yy = 0, angle, sign;

	places.forEach(function(place) {
		var x = place.x - middle.x, y = place.y - middle.y;

		xx += x * x;
		xy += x * y;
		yy += y * y;
	});
	angle = -0.5 * Math.atan2(2 * xy, xx - yy);
	places.forEach(function(place) {
		var x = place.x - middle.x, y = place.y - middle.y;

		place.x = x * Math.cos(angle) - y * Math.sin(angle);
		place.y = x * Math.sin(angle) + y * Math.cos(angle);
	});
	sign = places[center].x > 0.01 ? -1 : 1;
	places.forEach(function(place) {
		var along = sign * place.x, across = place.y;

		place.x = wide ? along : across;
		place.y = wide ? across : along;
	});
}

function extent(nodes) {
	return nodes.reduce(function(all, node) {
		return {
			left: Math.min(all.left, node.x - node.box.left), right: Math.max(all.right, node.x + node.box.right),
			top: Math.min(all.top, node.y - node.box.up), bottom: Math.max(all.bottom, node.y + node.box.down)
		};
	}, { left: Infinity, right: -Infinity, top: Infinity, bottom: -Infinity });
}

function stretch(nodes, x, y) {
	nodes.forEach(function(node) {
		node.x *= x;
		node.y *= y;
	});
}

function factor(span, room, least, most) {
	return span > 1 ? Math.max(least, Math.min(most, room / span)) : 1;
}

// Uses the width that there is, up to half as wide again or narrower by half, and grows no higher than one looks at.
function fit(nodes, width, wide) {
	var all = extent(nodes), boxes = 130;

	stretch(nodes, factor(all.right - all.left - boxes, width - 2 * kMargin - boxes, 0.5, 1.5),
		factor(all.bottom - all.top, width * (wide ? 0.55 : 2.2), 0.5, 1));
}

// How far two boxes reach into each other, in both directions; null when they do not.
function overlap(a, b) {
	var x = Math.min(a.x + a.box.right - b.x + b.box.left, b.x + b.box.right - a.x + a.box.left) + kGap;
	var y = Math.min(a.y + a.box.down - b.y + b.box.up, b.y + b.box.down - a.y + a.box.up) + kGap;

	return x > 0 && y > 0 ? { x: x, y: y } : null;
}

function pushApart(a, b) {
	var by = overlap(a, b), step;

	if (!by)
		return false;
	if (by.x < by.y) {
		step = (by.x / 2 + 0.1) * (a.x <= b.x ? 1 : -1);
		a.x -= step;
		b.x += step;
	}
	else {
		step = (by.y / 2 + 0.1) * (a.y <= b.y ? 1 : -1);
		a.y -= step;
		b.y += step;
	}
	return true;
}

// Pushes a node off a link that passes over it.
function pushOff(node, link) {
	var a = link.from, b = link.to, dx = b.x - a.x, dy = b.y - a.y, square = dx * dx + dy * dy, t, x, y, length, need;

	if (node == a || node == b || square < 1)
		return false;
	t = ((node.x - a.x) * dx + (node.y - a.y) * dy) / square;
	if (t <= 0.05 || t >= 0.95)
		return false;
	x = node.x - a.x - t * dx;
	y = node.y - a.y - t * dy;
	length = Math.sqrt(x * x + y * y);
	need = kRadius + 8 - length;
	if (need <= 0)
		return false;
	if (length < 0.01) {
		x = -dy;
		y = dx;
		length = Math.sqrt(square);
	}
	node.x += x / length * (need + 0.1);
	node.y += y / length * (need + 0.1);
	return true;
}

function settle(nodes, links) {
	var moved = true, round;

	function boxes() {
		var moved = false, i, j;

		for (i = 0; i < nodes.length; i++)
			for (j = i + 1; j < nodes.length; j++)
				moved = pushApart(nodes[i], nodes[j]) || moved;
		return moved;
	}

	function lines() {
		return links.reduce(function(moved, link) {
			return nodes.reduce(function(moved, node) {
				return pushOff(node, link) || moved;
			}, moved);
		}, false);
	}

	for (round = 0; moved && round < 50; round++) {
		moved = lines();
		moved = boxes() || moved;
	}
	// Lines may cross where they must; labels may not.
	for (round = 1; boxes(); round++)
		if (round % 15 == 0)
			stretch(nodes, 1.1, 1.1);
}

function covers(nodes, box) {
	return nodes.some(function(node) {
		return box.left < node.x + node.box.right && box.right > node.x - node.box.left &&
			box.top < node.y + node.box.down && box.bottom > node.y - node.box.up;
	});
}

function meets(a, b) {
	return a.left < b.right && a.right > b.left && a.top < b.bottom && a.bottom > b.top;
}

// The metric stands on its link where it is free, nearest to the middle; where there is no room, nowhere.
function placeMetrics(nodes, links) {
	var taken = [];

	links.forEach(function(link) {
		var half = textWidth(link.text, 11) / 2 + 2;

		[ 0.5, 0.44, 0.56, 0.38, 0.62, 0.32, 0.68, 0.26, 0.74 ].some(function(t) {
			var x = link.from.x + t * (link.to.x - link.from.x), y = link.from.y + t * (link.to.y - link.from.y);
			var box = { left: x - half, right: x + half, top: y - 7, bottom: y + 7 };

			if (covers(nodes, box) || taken.some(meets.bind(null, box)))
				return false;
			taken.push(box);
			link.spot = { x: x, y: y };
			return true;
		});
	});
}

// Gives each node of the graph x, y and box, and each link the spot of its metric; answers the size of the drawing,
// which is as wide as WIDTH where that is enough.
function place(graph, width) {
	var nodes = graph.nodes, center = 0, places, all, wide = width >= kWide;

	if (nodes.length == 0)
		return { width: width, height: 0 };
	nodes.forEach(function(node, i) {
		if (node.own)
			center = i;
	});
	places = arrange.places(nodes, graph.links, center);
	turn(places, center, wide);
	nodes.forEach(function(node, i) {
		node.x = places[i].x * kEdge * (wide ? 1.3 : 1);
		node.y = places[i].y * kEdge * (wide ? 1 : 1.15);
	});
	chooseSides(nodes, wide);
	fit(nodes, width, wide);
	settle(nodes, graph.links);
	// What was moved may leave more room on another side.
	chooseSides(nodes, wide);
	settle(nodes, graph.links);
	all = extent(nodes);
	width = Math.max(width, Math.ceil(all.right - all.left + 2 * kMargin));
	nodes.forEach(function(node) {
		node.x = Math.round(node.x + (width - all.left - all.right) / 2);
		node.y = Math.round(node.y - all.top + kMargin);
	});
	placeMetrics(nodes, graph.links);
	return { width: width, height: Math.ceil(all.bottom - all.top + 2 * kMargin) };
}

return baseclass.extend({
	radius: kRadius,
	line: kLine,
	apart: kApart,
	place: place
});
