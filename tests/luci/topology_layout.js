// SPDX-License-Identifier: Apache-2.0
// Where the drawing puts things: in the frame, apart from each other, and always at the same place.

var topology = require('frruci.topology');
var layout = require('frruci.topology_layout');

function drawn(area, width) {
	var graph = topology.read(area, '10.0.0.1', [ { network: '0.0.0.0/0', router: '10.0.0.2' } ], { '10.0.0.2': 'Full' });

	graph.size = layout.place(graph, width);
	return graph;
}

function places(graph) {
	return graph.nodes.map(function(node) {
		return [ node.key, node.x, node.y ];
	});
}

function frame(node) {
	return { left: node.x - node.box.left, right: node.x + node.box.right, top: node.y - node.box.up, bottom: node.y + node.box.down };
}

function meet(a, b) {
	return a.left < b.right && a.right > b.left && a.top < b.bottom && a.bottom > b.top;
}

function overlaps(frames) {
	var found = [];

	frames.forEach(function(a, i) {
		frames.slice(i + 1).forEach(function(b, j) {
			if (meet(a, b))
				found.push([ i, i + 1 + j ]);
		});
	});
	return found;
}

function spots(graph) {
	return graph.links.filter(function(link) {
		return link.spot;
	}).map(function(link) {
		return { left: link.spot.x - 7, right: link.spot.x + 7, top: link.spot.y - 6, bottom: link.spot.y + 6 };
	});
}

Object.keys(areas).forEach(function(name) {
	[ 940, 360 ].forEach(function(width) {
		var what = name + ' at ' + width, graph = drawn(areas[name], width), frames = graph.nodes.map(frame);

		holds(graph.nodes.length > 0, what + ' is drawn');
		same(overlaps(frames), [], what + ': nothing lies on anything');
		same(overlaps(frames.concat(spots(graph))), [], what + ': nor do the metrics');
		same(frames.filter(function(one) {
			return one.left < 0 || one.top < 0 || one.right > graph.size.width || one.bottom > graph.size.height;
		}), [], what + ': nothing is cut');
		holds(graph.size.width >= width, what + ' fills its width');
		if (graph.nodes.length < 40) // the others take their time
			same(places(drawn(areas[name], width)), places(graph), what + ' is the same again');
	});
});

// What is small fits without being made much smaller, and most links say their metric: area, width, how wide it may
// become and how many metrics may be missing.
[ [ 'alone', 360, 360, 0 ], [ 'pair', 360, 360, 0 ], [ 'pair', 940, 940, 0 ], [ 'ring', 940, 940, 0 ], [ 'ring', 360, 430, 7 ],
	[ 'star', 940, 950, 1 ], [ 'chain', 360, 360, 0 ] ].forEach(function(row) {
	var graph = drawn(areas[row[0]], row[1]), what = row[0] + ' at ' + row[1];

	holds(graph.size.width <= row[2], what + ' fits');
	holds(graph.links.length - spots(graph).length <= row[3], what + ' has its metrics');
});

// The longer side lies where there is room.
function lies(graph) {
	return graph.size.width > graph.size.height;
}

holds(lies(drawn(areas.chain, 940)), 'a chain lies on a screen');
holds(!lies(drawn(areas.chain, 360)), 'a chain stands on a phone');

// No two links cross where they need not.
function crosses(a, b) {
	function side(from, to, point) {
		return (to.x - from.x) * (point.y - from.y) - (to.y - from.y) * (point.x - from.x);
	}

	if ([ b.from, b.to ].indexOf(a.from) >= 0 || [ b.from, b.to ].indexOf(a.to) >= 0)
		return false;
	return side(a.from, a.to, b.from) * side(a.from, a.to, b.to) < 0 && side(b.from, b.to, a.from) * side(b.from, b.to, a.to) < 0;
}

[ 'star', 'ring', 'lan', 'chain' ].forEach(function(name) {
	[ 940, 360 ].forEach(function(width) {
		var links = drawn(areas[name], width).links;

		same(links.reduce(function(count, link, i) {
			return count + links.slice(i + 1).filter(crosses.bind(null, link)).length;
		}, 0), 0, name + ' at ' + width + ': links that cross');
	});
});

// Nothing to draw
same(layout.place({ nodes: [], links: [] }, 500), { width: 500, height: 0 });
