// SPDX-License-Identifier: Apache-2.0
// An OSPF area's database as a graph: who is joined to what, how far from this router, and what to write at it.

'use strict';
'require baseclass';

// More routers and networks than these are not drawn: the nearest stand for all.
var kMostDrawn = 64;
// With more than these, the networks that only one router has are counted instead of drawn.
var kMostLeaves = 26;

function addressNumber(address) {
	return String(address).split('.').reduce(function(number, part) {
		return number * 256 + Number(part);
	}, 0);
}

function numberAddress(number) {
	return [ 16777216, 65536, 256, 1 ].map(function(unit) {
		return Math.floor(number / unit) % 256;
	}).join('.');
}

// "255.255.255.0", "24" and 24 are all 24.
function maskLength(mask) {
	var ones;

	if (!/^\d+\.\d+\.\d+\.\d+$/.test(mask))
		return Number(mask);
	ones = addressNumber(mask).toString(2).replace(/0+$/, '');
	return ones.length;
}

function prefix(address, mask) {
	var length = maskLength(mask), size = Math.pow(2, 32 - length);

	return numberAddress(Math.floor(addressNumber(address) / size) * size) + '/' + length;
}

// 1.1.1.9 before 1.1.1.10
function byAddress(a, b) {
	var left = addressNumber(a), right = addressNumber(b);

	return left == right ? (a < b ? -1 : a > b ? 1 : 0) : left - right;
}

function byId(a, b) {
	return byAddress(a.id, b.id);
}

function Graph() {
	this.nodes = [];
	this.links = [];
	this.index = {};
}

Graph.prototype.node = function(key, properties) {
	if (!this.index[key]) {
		properties.key = key;
		properties.links = [];
		this.index[key] = properties;
		this.nodes.push(properties);
	}
	return this.index[key];
};

// Between the same two there is one link, with the lowest metric of each side.
Graph.prototype.link = function(from, to, kind, metric, whole) {
	var link = null;

	from.links.forEach(function(known) {
		if (known.kind == kind && (known.to == to || known.from == to))
			link = known;
	});
	if (!link) {
		link = { from: from, to: to, kind: kind, metric: metric, whole: whole };
		this.links.push(link);
		from.links.push(link);
		to.links.push(link);
	}
	else if (link.from == from)
		link.metric = Math.min(link.metric, metric);
	else {
		link.back = link.back == null ? metric : Math.min(link.back, metric);
		link.whole = true; // both sides speak of it
	}
	return link;
};

function listOf(value) {
	return Array.isArray(value) ? value : [];
}

function addTransit(graph, router, link) {
	var network = graph.index['n:' + link.id];

	if (network)
		graph.link(router, network, 'transit', link.metric, network.routers.indexOf(router.id) >= 0);
}

function addNeighbor(graph, router, link) {
	var other = graph.index['r:' + link.id];

	if (other && other != router)
		graph.link(router, other, link.type, link.metric, false);
}

// The addresses of one end of each numbered link without a network in between.
function linkAddresses(router) {
	return router.lsa.filter(function(link) {
		return link.type == 'point-to-point';
	}).map(function(link) {
		return link.data;
	});
}

// The networks that only routers have: not those of links that are drawn, nor a router's own address.
function stubsOf(router) {
	var addresses = linkAddresses(router);

	return router.lsa.filter(function(link) {
		return link.type == 'stub' && link.id != router.id && !addresses.some(function(address) {
			return prefix(address, link.data) == prefix(link.id, link.data);
		});
	}).map(function(link) {
		return { label: prefix(link.id, link.data), metric: link.metric };
	});
}

// While two routers get to know each other one of them may call a network its own that is another's already.
function joinStubs(graph, router) {
	router.stubs = stubsOf(router).filter(function(stub) {
		var network = graph.nodes.filter(function(node) {
			return isNetwork(node) && node.label == stub.label;
		})[0];

		if (network)
			graph.link(router, network, 'transit', stub.metric, false);
		return !network;
	});
}

function joined(area) {
	var graph = new Graph();

	listOf(area.networks).slice().sort(byId).forEach(function(network) {
		graph.node('n:' + network.id, {
			kind: 'network', id: network.id, label: prefix(network.id, network.mask), routers: listOf(network.routers)
		});
	});
	listOf(area.routers).slice().sort(byId).forEach(function(router) {
		graph.node('r:' + router.id, { kind: 'router', id: router.id, label: router.id, lsa: listOf(router.links) });
	});
	graph.nodes.filter(isRouter).forEach(function(router) {
		router.lsa.forEach(function(link) {
			if (link.type == 'transit')
				addTransit(graph, router, link);
			else if (link.type == 'point-to-point' || link.type == 'virtual')
				addNeighbor(graph, router, link);
		});
		joinStubs(graph, router);
	});
	return graph;
}

function isRouter(node) {
	return node.kind == 'router';
}

function isNetwork(node) {
	return node.kind == 'network';
}

function otherEnd(node, link) {
	return link.from == node ? link.to : link.from;
}

// How many links away each node is; a link that only one side speaks of leads nowhere.
function measure(graph, own) {
	var reached = own ? [ own ] : [], i;

	if (own)
		own.hops = 0;
	for (i = 0; i < reached.length; i++)
		reached[i].links.forEach(function(link) {
			var other = otherEnd(reached[i], link);

			if (link.whole && other.hops == null) {
				other.hops = reached[i].hops + 1;
				reached.push(other);
			}
		});
	return reached;
}

// A network that nobody is joined to is what a router that went away left in the database.
function isLonely(node) {
	return node.links.length == 0 && isNetwork(node);
}

function keep(graph, wanted) {
	graph.nodes = graph.nodes.filter(function(node) {
		return wanted.indexOf(node) >= 0;
	});
	graph.links = graph.links.filter(function(link) {
		return wanted.indexOf(link.from) >= 0 && wanted.indexOf(link.to) >= 0;
	});
	graph.nodes.forEach(function(node) {
		node.links = node.links.filter(function(link) {
			return graph.links.indexOf(link) >= 0;
		});
	});
}

// The nearest that still can be drawn, whole distances at a time; the own router at least.
function nearest(graph, reached) {
	var most = reached.length, last;

	while (most > kMostDrawn) {
		last = reached[most - 1].hops;
		while (most > 0 && reached[most - 1].hops == last)
			most--;
	}
	keep(graph, most > 1 ? reached.slice(0, most) : []);
}

function addLeaves(graph) {
	graph.nodes.filter(isRouter).forEach(function(router) {
		router.stubs.forEach(function(stub) {
			var leaf = graph.node('s:' + stub.label, { kind: 'stub', id: stub.label, label: stub.label });

			graph.link(router, leaf, 'stub', stub.metric, true);
			if (router.hops != null)
				leaf.hops = Math.min(router.hops + 1, leaf.hops == null ? Infinity : leaf.hops);
		});
	});
}

function countLeaves(graph) {
	graph.nodes.filter(isRouter).forEach(function(router) {
		var count = router.stubs.length;

		if (count > 0)
			router.notes.push(N_(count, '%d network', '%d networks').format(count));
	});
}

function externalsOf(router, external) {
	return listOf(external).filter(function(route) {
		return route.router == router.id;
	}).map(function(route) {
		return route.network;
	});
}

function noteExternals(router, external) {
	var networks = externalsOf(router, external), others = networks.filter(function(network) {
		return network != '0.0.0.0/0';
	});

	if (others.length < networks.length)
		router.notes.push(_('default route'));
	if (others.length > 0)
		router.notes.push(N_(others.length, '%d outside route', '%d outside routes').format(others.length));
}

function titleOf(node) {
	var words = [ node.label ];

	if (node.kind == 'router')
		words = words.concat(node.notes);
	else
		words.push(node.kind == 'network' ? _('network with neighbours') : _('network'));
	(node.stubs || []).forEach(function(stub) {
		words.push(stub.label);
	});
	return words.join('\n');
}

function metricsOf(link) {
	return link.back == null || link.back == link.metric ? String(link.metric) : link.metric + ' / ' + link.back;
}

function standing(router) {
	if (router.own)
		return [ _('this router') ];
	if (router.state)
		return [ _('neighbour, %s').format(router.state) ];
	return router.hops == null ? [ _('not reachable') ] : [];
}

function describe(graph, external, states) {
	graph.nodes.filter(isRouter).forEach(function(router) {
		router.state = states[router.id];
		router.notes = standing(router);
		noteExternals(router, external);
	});
}

function finish(graph) {
	graph.nodes.forEach(function(node) {
		node.title = titleOf(node);
	});
	graph.links.forEach(function(link) {
		link.text = metricsOf(link);
		link.title = _('%s to %s: metric %s').format(link.from.label, link.to.label, link.text);
		if (!link.whole)
			link.title += '\n' + _('only one side speaks of this link');
	});
}

// The graph of AREA as router OWN sees it. STATES names the state of each neighbour by its router id.
function read(area, own, external, states) {
	var graph = joined(area), center = graph.index['r:' + own], reached, all;

	if (center)
		center.own = true;
	reached = measure(graph, center);
	keep(graph, graph.nodes.filter(function(node) {
		return !isLonely(node);
	}));
	graph.routers = graph.nodes.filter(isRouter).length;
	graph.networks = graph.nodes.length - graph.routers;
	graph.stubs = 0;
	describe(graph, external, states);
	all = graph.nodes.length;
	if (all > kMostDrawn)
		nearest(graph, reached);
	graph.nodes.filter(isRouter).forEach(function(router) {
		graph.stubs += router.stubs.length;
	});
	graph.whole = graph.nodes.length == all;
	if (graph.nodes.length + graph.stubs <= kMostLeaves)
		addLeaves(graph);
	else
		countLeaves(graph);
	finish(graph);
	return graph;
}

// What the drawing shows, in a sentence.
function caption(graph) {
	var words = [ N_(graph.routers, '%d router', '%d routers').format(graph.routers) ];

	if (graph.networks > 0)
		words.push(N_(graph.networks, '%d network between them', '%d networks between them').format(graph.networks));
	words = words.join(', ') + '.';
	if (graph.whole)
		return words;
	if (graph.nodes.length == 0)
		return words + ' ' + _('This is too much to draw.');
	return words + ' ' + _('Drawn are the %d routers and %d networks nearest to this one.').format(
		graph.nodes.filter(isRouter).length, graph.nodes.filter(isNetwork).length);
}

return baseclass.extend({
	byAddress: byAddress,
	prefix: prefix,
	read: read,
	caption: caption
});
