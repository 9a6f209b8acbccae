// SPDX-License-Identifier: Apache-2.0
// What the status page says: words and kinds, from what the router answers. A kind is good, busy, idle or bad; it
// gives the colour, and a sign of its own beside it.

'use strict';
'require baseclass';
'require frruci.topology as topology';

var kStates = {
	Full: [ 'good', _('The databases are the same.') ],
	'2-Way': [ 'idle', _('Each sees the other. Two routers that are neither designated nor backup stay so.') ],
	Loading: [ 'busy', _('The last parts of the database are on their way.') ],
	Exchange: [ 'busy', _('The two tell each other what they have.') ],
	ExStart: [ 'busy', _('The two agree on who begins. When it stays so, the MTUs differ.') ],
	Init: [ 'busy', _('The neighbour is heard, and does not hear this router yet.') ],
	Attempt: [ 'bad', _('The neighbour is called and has not answered.') ],
	Down: [ 'bad', _('Nothing was heard for the dead time.') ]
};

var kRoles = {
	DR: _('designated router'),
	Backup: _('backup designated router'),
	DROther: _('neither designated nor backup')
};

var kDaemonStates = {
	running: [ 'good', _('running') ],
	stopped: [ 'idle', _('stopped') ],
	silent: [ 'bad', _('silent') ]
};

// A protocol, its daemon and its page.
var kProtocols = [
	{ name: 'ospf', title: 'OSPF', daemon: 'ospfd' },
	{ name: 'rip', title: 'RIP', daemon: 'ripd' },
	{ name: 'nhrp', title: 'NHRP', daemon: 'nhrpd' }
];

var kNone = '–';

// The two largest units that are not nothing: "2d 3h", "1m 15s".
function duration(seconds) {
	var units, first = 0;

	if (typeof(seconds) != 'number' || !(seconds >= 0))
		return kNone;
	units = [
		[ Math.floor(seconds / 86400), 'd' ],
		[ Math.floor(seconds / 3600) % 24, 'h' ],
		[ Math.floor(seconds / 60) % 60, 'm' ],
		[ Math.floor(seconds) % 60, 's' ]
	];
	while (first < 3 && units[first][0] == 0)
		first++;
	return units.slice(first, first + 2).filter(function(unit, position) {
		return position == 0 || unit[0] > 0;
	}).map(function(unit) {
		return unit.join('');
	}).join(' ');
}

function listOf(answer, name) {
	return answer && Array.isArray(answer[name]) ? answer[name] : [];
}

function known(value) {
	return value == null || value === '' ? kNone : String(value);
}

function neighborState(name) {
	var state = kStates[name];

	return { kind: state ? state[0] : 'idle', word: known(name), title: state ? state[1] : '' };
}

function byInterface(a, b) {
	var left = known(a['interface']), right = known(b['interface']);

	return left == right ? topology.byAddress(known(a.id), known(b.id)) : left < right ? -1 : 1;
}

function neighborRows(answer) {
	return listOf(answer, 'neighbors').slice().sort(byInterface).map(function(neighbor) {
		return [
			{ text: known(neighbor.id), strong: true },
			{ badge: neighborState(neighbor.state) },
			{ text: duration(neighbor.uptime) },
			{ text: known(neighbor['interface']) },
			{ text: known(neighbor.address) },
			{ text: known(neighbor.role), title: kRoles[neighbor.role] },
			{ text: known(neighbor.priority) },
			{ text: duration(neighbor.dead) }
		];
	});
}

// The state of each neighbour by router id, for the drawing; of two links to one the better one counts.
function neighborStates(answer) {
	var order = [ 'bad', 'idle', 'busy', 'good' ], states = {};

	listOf(answer, 'neighbors').forEach(function(neighbor) {
		var before = states[neighbor.id];

		if (!before || order.indexOf(neighborState(neighbor.state).kind) > order.indexOf(neighborState(before).kind))
			states[neighbor.id] = neighbor.state;
	});
	return states;
}

function neighborCount(entry) {
	if (entry.neighbors == null)
		return kNone;
	return entry.neighbors == entry.adjacent || entry.adjacent == null ? String(entry.neighbors)
		: _('%d, %d of them adjacent').format(entry.neighbors, entry.adjacent);
}

function interfaceRows(answer) {
	return listOf(answer, 'interfaces').map(function(entry) {
		return [
			{ text: known(entry.name), strong: true },
			{ badge: entry.up === false ? { kind: 'bad', word: _('down') } : { kind: 'good', word: _('up') } },
			{ text: known(entry.address) },
			{ text: known(entry.area) },
			{ text: entry.passive ? _('passive') : known(entry.state) },
			{ text: known(entry.type) },
			{ text: known(entry.cost) },
			{ text: '%s / %s'.format(duration(entry.hello), duration(entry.dead)) },
			{ text: neighborCount(entry) }
		];
	});
}

function ripFacts(answer) {
	var facts = [], redistribute = listOf(answer, 'redistribute');

	function fact(title, value) {
		facts.push({ title: title, text: value });
	}

	if (!answer || !answer.running)
		return facts;
	if (answer.version)
		fact(_('Version'), String(answer.version));
	if (answer.update != null)
		fact(_('Update every'), duration(answer.update));
	if (answer.timeout != null)
		fact(_('Timeout after'), duration(answer.timeout));
	if (answer.garbage != null)
		fact(_('Garbage for'), duration(answer.garbage));
	if (redistribute.length > 0)
		fact(_('Redistributes'), redistribute.join(', '));
	return facts;
}

function ripInterfaceRows(answer) {
	return listOf(answer, 'interfaces').map(function(entry) {
		return [
			{ text: known(entry.name), strong: true },
			{ text: known(entry.send) },
			{ text: known(entry.receive) },
			{ text: entry.key_chain ? _('key chain %s').format(entry.key_chain) : kNone }
		];
	});
}

function ripSourceRows(answer) {
	return listOf(answer, 'sources').map(function(source) {
		return [
			{ text: known(source.gateway), strong: true },
			{ text: source.last_update == null ? kNone : _('%s ago').format(duration(source.last_update)) },
			{ text: known(source.bad_packets) },
			{ text: known(source.bad_routes) },
			{ text: known(source.distance) }
		];
	});
}

function isOwn(route) {
	return route.from == 'self';
}

function ripRouteRows(answer) {
	return listOf(answer, 'routes').map(function(route) {
		return [
			{ text: known(route.network), strong: true },
			{ text: route.next_hop == '0.0.0.0' ? _('direct') : known(route.next_hop) },
			{ text: known(route.metric) },
			{ text: isOwn(route) ? _('this router') : known(route.from) }
		];
	});
}

function nhrpRows(answer) {
	return listOf(answer, 'entries').map(function(entry) {
		return [
			{ text: known(entry.protocol), strong: true },
			{ text: known(entry.nbma) },
			{ text: known(entry['interface']) },
			{ text: known(entry.type) },
			{ text: known(entry.flags) },
			{ text: known(entry.identity) }
		];
	});
}

function named(list, name) {
	return list.filter(function(entry) {
		return entry.name == name;
	})[0];
}

function stored(status, protocol) {
	var entry = status && status.protocols && status.protocols[protocol];

	return entry ? entry.stored : undefined;
}

// Why nothing at all is to be seen of a protocol; null when it runs.
function absence(status, protocol, answer) {
	var about = named(kProtocols, protocol), daemon = named(listOf(status, 'daemons'), about.daemon);

	if (!answer)
		return { text: _('Not known: the router gave no answer.') };
	if (answer.running)
		return null;
	if (stored(status, protocol) == 'off')
		return { text: _('%s is switched off.').format(about.title), page: protocol, link: _('Switch it on') };
	if (stored(status, protocol) == 'unset')
		return { text: _('%s is not set up.').format(about.title), page: protocol, link: _('Set it up') };
	if (daemon && daemon.state == 'silent')
		return { text: _('%s does not answer.').format(about.daemon) };
	if (daemon && daemon.state == 'running')
		return { text: _('%s runs without %s: what is stored was not applied yet.').format(about.daemon, about.title) };
	return { text: _('%s does not run.').format(about.daemon) };
}

// Why no neighbour is seen although OSPF runs.
function noNeighbor(interfaces) {
	var all = listOf(interfaces, 'interfaces'), open = all.filter(function(entry) {
		return entry.up !== false && !entry.passive;
	});

	if (!interfaces)
		return { text: _('No neighbour seen yet.') };
	if (all.length == 0)
		return { text: _('No neighbour seen: OSPF runs on no interface yet.'), page: 'ospf', link: _('Choose its networks') };
	if (open.length == 0)
		return { text: _('No neighbour seen: all of its interfaces are down or passive.') };
	return {
		text: _('No neighbour seen yet: OSPF sends hellos on %s and hears none.').format(open.map(function(entry) {
			return entry.name;
		}).join(', '))
	};
}

function neighborSummary(neighbors) {
	var full = neighbors.filter(function(neighbor) {
		return neighbor.state == 'Full';
	}).length;

	if (neighbors.length == 0)
		return [ _('no neighbours') ];
	if (full == neighbors.length)
		return [ N_(full, '%d full neighbour', '%d full neighbours').format(full) ];
	return [ N_(neighbors.length, '%d neighbour', '%d neighbours').format(neighbors.length), _('%d of them full').format(full) ];
}

function routeSummary(routes) {
	var learnt = routes.filter(function(route) {
		return !isOwn(route);
	}).length;

	return N_(learnt, '%d route learnt', '%d routes learnt').format(learnt);
}

function cacheSummary(entries) {
	return N_(entries.length, '%d cache entry', '%d cache entries').format(entries.length);
}

// What a protocol has done, where that was read.
function summary(protocol, answers) {
	if (protocol == 'ospf')
		return answers.neighbors ? neighborSummary(listOf(answers.neighbors, 'neighbors')) : [];
	if (protocol == 'rip')
		return answers.rip ? [ routeSummary(listOf(answers.rip, 'routes')) ] : [];
	return answers.nhrp_cache ? [ cacheSummary(listOf(answers.nhrp_cache, 'entries')) ] : [];
}

// On, off, or on its way from one to the other.
function protocolWord(entry) {
	if (!entry || entry.stored == 'unset')
		return entry && entry.running ? _('runs, nothing is stored') : _('not set up');
	if (entry.stored == 'on')
		return entry.running ? _('switched on') : _('switched on, does not run');
	return entry.running ? _('switched off, still runs') : _('switched off');
}

function protocolCard(status, answers, about) {
	var daemon = named(listOf(status, 'daemons'), about.daemon) || {}, state = kDaemonStates[daemon.state];
	var entry = status.protocols && status.protocols[about.name], kind = state ? state[0] : 'idle';
	var lines = [ protocolWord(entry) ];

	if (entry && entry.stored == 'on' && !(entry.running && daemon.state == 'running'))
		kind = 'bad';
	if (entry && entry.running && daemon.state == 'running')
		lines = lines.concat(summary(about.name, answers));
	else if (kind == 'good')
		kind = 'idle';
	return {
		title: about.title, page: about.name, kind: kind, word: state ? state[1] : kNone,
		detail: [ about.daemon, daemon.version ].filter(Boolean).join(' '), lines: lines
	};
}

// The daemons that matter. Before FRRouting 10 nothing needs mgmtd, and few run it.
function daemons(status) {
	var zebra = named(listOf(status, 'daemons'), 'zebra') || {};

	return listOf(status, 'daemons').filter(function(daemon) {
		return daemon.name != 'mgmtd' || daemon.state != 'stopped' || !(parseInt(zebra.version, 10) < 10);
	});
}

function anythingOn(status) {
	return kProtocols.some(function(about) {
		return stored(status, about.name) == 'on';
	});
}

function daemonCard(status, name, lines) {
	var daemon = named(daemons(status), name), state;

	if (!daemon)
		return null;
	state = kDaemonStates[daemon.state] || [ 'idle', kNone ];
	return {
		title: name, kind: daemon.state == 'stopped' && anythingOn(status) ? 'bad' : state[0], word: state[1],
		detail: daemon.version ? 'FRRouting ' + daemon.version : '', lines: lines
	};
}

function lastApply(applied, now) {
	var age = applied ? now - applied.time : -1;

	if (!(age >= 0 && age < 10 * 365 * 86400)) // the clocks of router and browser may differ
		return [];
	return [ _('last %s ago').format(duration(age)) ];
}

function watchCard(status, now) {
	var runs = status.watch && status.watch.running;

	return {
		title: 'frruci', kind: runs ? 'good' : 'idle', word: runs ? _('watching') : _('not watching'),
		detail: status.version || '',
		lines: [ runs ? _('applies changes') : _('changes wait') ].concat(lastApply(status.applied, now))
	};
}

function cards(status, answers, now) {
	var others = listOf(status, 'others');

	return kProtocols.map(protocolCard.bind(null, status, answers)).concat([
		daemonCard(status, 'zebra', [ others.length > 0 ? _('also serves %s').format(others.join(', '))
			: _('puts the routes into the kernel') ]),
		daemonCard(status, 'mgmtd', [ _('passes on settings') ]),
		watchCard(status, now)
	]).filter(Boolean);
}

return baseclass.extend({
	protocols: kProtocols,
	duration: duration,
	neighborState: neighborState,
	neighborStates: neighborStates,
	neighborRows: neighborRows,
	interfaceRows: interfaceRows,
	ripFacts: ripFacts,
	ripInterfaceRows: ripInterfaceRows,
	ripSourceRows: ripSourceRows,
	ripRouteRows: ripRouteRows,
	nhrpRows: nhrpRows,
	stored: stored,
	daemons: daemons,
	absence: absence,
	noNeighbor: noNeighbor,
	cards: cards
});
