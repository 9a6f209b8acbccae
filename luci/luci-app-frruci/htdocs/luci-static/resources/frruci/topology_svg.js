// SPDX-License-Identifier: Apache-2.0
// Draws a graph whose nodes have their places.

'use strict';
'require baseclass';
'require frruci.topology_layout as layout';

// Two arrows that pass each other, around the middle of a router's circle.
var kArrows = 'M-9,-4.5H7 M3,-8.5l4.5,4l-4.5,4 M9,4.5H-7 M-3,0.5l-4.5,4l4.5,4';

function svg(name, attributes, children) {
	var element = document.createElementNS('http://www.w3.org/2000/svg', name);

	Object.keys(attributes).forEach(function(key) {
		element.setAttribute(key, attributes[key]);
	});
	(children || []).forEach(function(child) {
		element.appendChild(typeof(child) == 'string' ? document.createTextNode(child) : child);
	});
	return element;
}

function text(x, y, style, words, anchor) {
	return svg('text', { x: x, y: y, 'class': style, 'text-anchor': anchor || 'middle' }, [ words ]);
}

function title(words) {
	return svg('title', {}, [ words ]);
}

function line(link) {
	var style = 'link ' + link.kind + (link.whole ? '' : ' half');

	return svg('line', {
		x1: link.from.x, y1: link.from.y, x2: link.to.x, y2: link.to.y, 'class': style
	}, [ title(link.title) ]);
}

function metric(link) {
	return text(link.spot.x, link.spot.y + 4, 'metric', link.text);
}

// The words of a router, on the side of it that the layout chose.
function label(node) {
	var side = node.side, height = layout.line * (1 + node.notes.length);
	var x = side.x * (layout.radius + layout.apart), anchor = side.x > 0 ? 'start' : side.x < 0 ? 'end' : 'middle';
	var top = side.x != 0 ? -height / 2 : side.y > 0 ? layout.radius + layout.apart : -layout.radius - layout.apart - height;

	return [ node.label ].concat(node.notes).map(function(words, i) {
		return text(x, top + 11 + i * layout.line, i == 0 ? 'name' : 'note', words, anchor);
	});
}

function router(node, kindOf) {
	var style = [ 'node router' ].concat(node.own ? 'own' : node.state ? kindOf(node.state) : [], node.hops == null ? 'away' : []);

	return svg('g', { 'class': style.join(' '), transform: 'translate(%d,%d)'.format(node.x, node.y), role: 'img' }, [
		title(node.title),
		svg('circle', { r: layout.radius }),
		svg('path', { d: kArrows })
	].concat(label(node)));
}

function network(node) {
	var half = node.box.left;

	return svg('g', { 'class': 'node ' + node.kind, transform: 'translate(%d,%d)'.format(node.x, node.y), role: 'img' }, [
		title(node.title),
		svg('rect', { x: -half, y: -node.box.up, width: 2 * half, height: 2 * node.box.up, rx: node.box.up }),
		text(0, 4, 'name', node.label)
	]);
}

// The drawing of GRAPH, whose nodes have their places, as large as SIZE or, where that is too wide, made smaller; LABEL
// tells what it is. KINDOF names the kind of a neighbour's state.
function draw(graph, size, label, kindOf) {
	return svg('svg', {
		viewBox: '0 0 %d %d'.format(size.width, size.height), role: 'group', 'aria-label': label, 'class': 'frruci-area',
		style: 'max-width:%dpx'.format(size.width)
	}, [].concat(
		graph.links.map(line),
		graph.nodes.map(function(node) {
			return node.kind == 'router' ? router(node, kindOf) : network(node);
		}),
		graph.links.filter(function(link) {
			return link.spot;
		}).map(metric)
	));
}

return baseclass.extend({
	draw: draw
});
