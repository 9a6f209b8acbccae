// SPDX-License-Identifier: Apache-2.0
// The status page: asks the router every few seconds and shows what is new in place.

'use strict';
'require view';
'require rpc';
'require poll';
'require ui';
'require dom';
'require frruci.status as words';
'require frruci.status_banners as banners';
'require frruci.status_parts as parts';
'require frruci.topology as topology';
'require frruci.topology_layout as layout';
'require frruci.topology_svg as drawing';

var kSeconds = 3;       // between two looks
var kDiffEvery = 10;    // looks; the difference takes the router longer than the rest

// What is asked at each look; a failure leaves the last answer standing.
var kMethods = [ 'status', 'neighbors', 'database', 'interfaces', 'rip', 'nhrp_cache' ];

var kButtons = {
	diff: { text: _('Show the difference'), handler: 'handleDiff', style: '' },
	apply: { text: _('Apply now'), handler: 'handleApply', style: 'cbi-button-apply', changes: true },
	doctor: { text: _('Find the reason'), handler: 'handleDoctor', style: '' }
};

function declare(method) {
	return rpc.declare({ object: 'frruci', method: method, reject: true });
}

var calls = {};

kMethods.concat('diff', 'apply', 'doctor').forEach(function(method) {
	calls[method] = declare(method);
});

function now() {
	return Date.now() / 1000;
}

function dialog(title, content) {
	ui.showModal(title, content.concat(E('div', { 'class': 'right' }, [
		E('button', { 'class': 'btn cbi-button', click: ui.hideModal }, [ _('Close') ])
	])));
}

function tell(error) {
	ui.addNotification(null, E('p', [ banners.reason(error.message) ]), 'error');
}

// The style sheet is there before anything is shown.
function loadStyle() {
	return new Promise(function(resolve) {
		document.head.appendChild(E('link', {
			rel: 'stylesheet', href: L.resource('frruci/status.css'), load: resolve, error: resolve
		}));
	});
}

return view.extend({
	handleSave: null,
	handleSaveApply: null,
	handleReset: null,

	load: function() {
		this.answers = {};      // the last of each method
		this.failures = {};     // the words of each method that failed at the last look
		this.drawn = {};        // the graph of each area with its places
		this.looks = 0;
		return Promise.all([ this.look(), loadStyle() ]);
	},

	ask: function(method) {
		return calls[method]().then(function(answer) {
			if (!L.isObject(answer))
				throw new Error(_('an answer without content'));
			this.answers[method] = answer;
			delete this.failures[method];
		}.bind(this)).catch(function(error) {
			this.failures[method] = error.message || String(error);
		}.bind(this));
	},

	look: function() {
		var isDue = this.looks++ % kDiffEvery == 0 || this.failures.diff != null;

		return Promise.all((isDue ? kMethods.concat('diff') : kMethods).map(this.ask, this)).then(this.note.bind(this));
	},

	// What must be remembered from one look to the next.
	note: function() {
		if (Object.keys(this.failures).length == 0)
			this.clock = banners.clock(now());
		if (this.answers.status && !this.failures.status) {
			this.followed = banners.follow(this.followed, this.answers.status.daemons, now());
			this.lookAgainAtDiff(JSON.stringify([ this.answers.status.applied, this.answers.status.daemons ]));
		}
	},

	// Something was applied or a daemon came or went: what is stored and what runs may differ anew.
	lookAgainAtDiff: function(state) {
		if (this.state != null && this.state != state)
			this.looks = 0;
		this.state = state;
	},

	show: function() {
		this.showBanners();
		this.part('cards', [ 'status' ], this.answers.status ? words.cards(this.answers.status, this.answers, now()).map(parts.card) : []);
		this.part('ospf', [ 'neighbors', 'database', 'interfaces' ], this.ospf());
		this.part('rip', [ 'rip' ], this.rip());
		this.part('nhrp', [ 'nhrp_cache' ], this.nhrp());
	},

	// What could not be read anew is shown pale.
	part: function(name, methods, content) {
		var old = methods.some(function(method) {
			return this.failures[method] != null && this.answers[method];
		}, this);

		this.parts[name].classList.toggle('frruci-old', old);
		parts.mendChildren(this.parts[name], content);
	},

	// Banners have buttons: they are made anew, and only when they say something new.
	showBanners: function() {
		var all = banners.banners({
			status: this.answers.status, diff: this.answers.diff, failures: this.failures, followed: this.followed,
			now: now(), clock: this.clock
		});
		var said = JSON.stringify(all);

		if (this.said != said)
			dom.content(this.parts.banners, all.map(this.banner, this));
		this.said = said;
	},

	banner: function(banner) {
		return E('div', { 'class': 'frruci-banner frruci-' + banner.kind, role: banner.kind == 'bad' ? 'alert' : 'status' }, [
			parts.badge(banner.kind, banner.title),
			E('div', [ banner.text ]),
			banner.refused ? E('ul', { 'class': 'frruci-refused' }, banner.refused.map(function(entry) {
				return E('li', [ entry.where, E('code', [ entry.command ]), E('code', [ entry.answer ]) ]);
			})) : '',
			E('div', banner.buttons.map(this.button, this))
		]);
	},

	// Reading alone offers no button that changes anything.
	button: function(name) {
		var about = kButtons[name];

		if (about.changes && L.hasViewPermission() === false)
			return '';
		return E('button', {
			'class': 'btn cbi-button ' + about.style, click: ui.createHandlerFn(this, about.handler)
		}, [ about.text ]);
	},

	handleDiff: function() {
		return calls.diff().then(function(diff) {
			var groups = banners.differenceGroups(diff);

			this.answers.diff = diff;
			dialog(_('Stored and running'), [
				E('p', [ groups.length == 0 ? _('Nothing differs any more.')
					: _('A line with + is stored and does not run, one with − runs and is not stored.') ]),
				E('div', { 'class': 'frruci frruci-diff' }, groups.map(function(group) {
					return E('div', [ E('strong', [ group.daemon ]) ].concat(group.lines.map(function(line) {
						return E('div', { 'class': line.kind }, [ E('code', [ line.text ]) ]);
					})));
				}))
			]);
		}.bind(this)).catch(tell);
	},

	handleDoctor: function() {
		return calls.doctor().then(function(answer) {
			dialog(_('What the doctor finds'), [ E('div', { 'class': 'frruci frruci-findings' }, [
				parts.table([ _('Finding'), _('Subject'), _('What it is') ], banners.findings(answer).map(function(finding) {
					return [ { badge: finding }, { text: finding.subject, strong: true }, { text: finding.text } ];
				}), { text: _('Nothing was found.') })
			]) ]);
		}).catch(tell);
	},

	handleApply: function() {
		return calls.apply().then(function(answer) {
			var done = banners.applied(answer);

			ui.addNotification(null, done.lines.map(function(line) {
				return E('p', [ line ]);
			}), done.kind == 'good' ? 'success' : 'error');
			this.looks = 0;
			return this.look().then(this.show.bind(this));
		}.bind(this)).catch(tell);
	},

	// The whole of a protocol, or why there is nothing of it.
	protocol: function(name, answer, facts, content) {
		var why = words.absence(this.answers.status, name, answer);
		var title = words.protocols.filter(function(about) {
			return about.name == name;
		})[0].title;

		return why ? parts.heading(title, []).concat(parts.empty(why)) : parts.heading(title, facts).concat(content());
	},

	ospf: function() {
		var neighbors = this.answers.neighbors, interfaces = this.answers.interfaces;
		var facts = neighbors && neighbors.router_id ? [ { title: _('Router id'), text: neighbors.router_id } ] : [];

		return this.protocol('ospf', neighbors, facts, function() {
			return this.areas().concat([
				E('h4', [ _('Neighbours') ]),
				parts.table([ _('Router id'), _('State'), _('Uptime'), _('Interface'), _('Address'), _('Role'), _('Priority'), _('Dead in') ],
					words.neighborRows(neighbors), words.noNeighbor(interfaces)),
				E('h4', [ _('Interfaces') ]),
				parts.table([ _('Interface'), _('Link'), _('Address'), _('Area'), _('State'), _('Type'), _('Cost'), _('Hello / dead'), _('Neighbours') ],
					words.interfaceRows(interfaces), { text: _('OSPF runs on no interface yet.'), page: 'ospf', link: _('Choose its networks') })
			]);
		}.bind(this));
	},

	areas: function() {
		var database = this.answers.database;

		if (!database || !database.running)
			return [];
		if (!(database.areas || []).length)
			return [ parts.empty({ text: _('The database is empty: OSPF is in no area yet.') }) ];
		return [].concat.apply([], database.areas.map(this.area, this));
	},

	area: function(area) {
		var placed = this.placed(area), caption = topology.caption(placed.graph);

		return [
			E('h4', [ _('Area %s').format(area.id) ]),
			E('div', { 'class': 'frruci-quiet' }, [ caption ])
		].concat(placed.graph.nodes.length == 0 ? [] : drawing.draw(placed.graph, placed.size, caption, function(state) {
			return words.neighborState(state).kind;
		}));
	},

	// To find the places takes the browser a while: once is enough for the same area in the same width.
	placed: function(area) {
		var database = this.answers.database, states = words.neighborStates(this.answers.neighbors);
		var width = this.parts.ospf.clientWidth || 800, before = this.drawn[area.id] || {}, graph;
		var key = JSON.stringify([ area, database.router_id, database.external, states, width ]);

		if (before.key != key) {
			graph = topology.read(area, database.router_id, database.external, states);
			before = this.drawn[area.id] = { key: key, graph: graph, size: layout.place(graph, width) };
		}
		return before;
	},

	rip: function() {
		var rip = this.answers.rip;

		return this.protocol('rip', rip, words.ripFacts(rip), function() {
			return [
				E('h4', [ _('Interfaces') ]),
				parts.table([ _('Interface'), _('Sends version'), _('Receives version'), _('Authentication') ],
					words.ripInterfaceRows(rip), { text: _('RIP runs on no interface yet.'), page: 'rip', link: _('Choose its networks') }),
				E('h4', [ _('Learnt from') ]),
				parts.table([ _('Router'), _('Last heard'), _('Bad packets'), _('Bad routes'), _('Distance') ],
					words.ripSourceRows(rip), { text: _('No other router was heard yet.') }),
				E('h4', [ _('Routes') ]),
				parts.table([ _('Network'), _('Next hop'), _('Metric'), _('From') ],
					words.ripRouteRows(rip), { text: _('No route is known yet.') })
			];
		});
	},

	nhrp: function() {
		var cache = this.answers.nhrp_cache;

		return this.protocol('nhrp', cache, [], function() {
			return [ E('h4', [ _('Cache') ]),
				parts.table([ _('Tunnel address'), _('Outer address'), _('Interface'), _('Type'), _('Flags'), _('Identity') ],
					words.nhrpRows(cache), { text: _('The cache is empty: no peer is known yet.') }) ];
		});
	},

	render: function() {
		var shown = this.parts = {}, resized, page;

		function part(name, style, attributes) {
			return shown[name] = E('div', Object.assign({ 'class': style, id: 'frruci-' + name }, attributes));
		}

		page = E('div', { 'class': 'frruci' }, [
			E('h2', [ _('Routing status') ]),
			part('banners', '', { 'aria-live': 'polite' }),
			part('cards', 'frruci-cards'),
			part('ospf', 'frruci-section'),
			part('rip', 'frruci-section'),
			part('nhrp', 'frruci-section')
		]);
		window.addEventListener('resize', function() {
			window.clearTimeout(resized);
			resized = window.setTimeout(this.show.bind(this), 150);
		}.bind(this));
		// The drawing needs the width that it has on the page.
		window.requestAnimationFrame(this.show.bind(this));
		poll.add(function() {
			return this.look().then(this.show.bind(this));
		}.bind(this), kSeconds);
		return page;
	}
});
