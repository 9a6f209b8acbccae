// SPDX-License-Identifier: Apache-2.0
// NHRP: what is entered is sent at once, phrase by phrase; the library stores what it sends.

'use strict';
'require view';
'require dom';
'require form';
'require poll';
'require rpc';
'require uci';
'require ui';
'require frruci.fields as fields';
'require frruci.page as page';
'require frruci.phrases as phrases';
'require frruci.state as state';
'require frruci.values as values';

var callCache = rpc.declare({ object: 'frruci', method: 'nhrp_cache' });
var callHandler = rpc.declare({ object: 'frruci', method: 'call', params: [ 'handler', 'words' ], reject: true });
var callApply = rpc.declare({ object: 'frruci', method: 'apply', params: [ 'protocols' ] });

var kPollSeconds = 5;
var kSection = 'sdwan';
var kInline = 'width:auto; margin:.2em .2em .2em 0';

var kColumns = [
	[ 'protocol', _('Tunnel address') ],
	[ 'nbma', _('Public address') ],
	[ 'type', _('Kind') ],
	[ 'interface', _('Interface') ]
];

function allFields() {
	return fields.nhrp.sections.reduce(function(all, table) { return all.concat(table.fields); }, []);
}

// What is set, by option; a setting that is off is stored as 0.
function settings(section) {
	return allFields().reduce(function(set, field) {
		var value = section ? section[field.option] : null;

		if (phrases.isSet(value))
			set[field.option] = value;
		return set;
	}, {});
}

// The kernel's names of the tunnels that the network settings make.
function tunnels() {
	return uci.sections('network', 'interface').filter(function(one) {
		return /^gre(tap)?$/.test(one.proto);
	}).map(function(one) { return one.proto + '4-' + one['.name']; });
}

// What no phrase takes away cannot be switched off; the tunnel's name is stored once, for good.
function limitOf(field, value) {
	if (field.option == 'interface')
		return phrases.isSet(value) ? _('Stored for good; only the file /etc/config/nhrp can change it.') : null;
	if (!phrases.isFixed(field, value))
		return null;
	return field.kind == 'switch' ? _('Cannot be switched off from here.') : _('Can be replaced, but not removed.');
}

// Makes the form show what is stored.
function fill(map, stored) {
	fields.nhrp.sections.forEach(function(table, position) {
		table.fields.forEach(function(field) {
			var option = map.children[position].getOption(field.option);
			var limit = limitOf(field, stored[field.option]);

			option.readonly = map.readonly || (!!limit && (!field.set || field.kind == 'switch'));
			option.rmempty = !limit;
			option.description = [ values.describe(field), limit ].filter(Boolean).join(' ');
			map.data.set('json', kSection, field.option, stored[field.option]);
		});
	});
}

function cacheTable(cache) {
	if (!cache.entries || cache.entries.length == 0)
		return E('p', {}, [ E('em', {}, [ cache.running ? _('Nothing is known yet about other ends of the tunnel.')
		                                                : _('NHRP does not run.') ]) ]);
	return E('table', { 'class': 'table' }, [
		E('tr', { 'class': 'tr table-titles' }, kColumns.map(function(column) {
			return E('th', { 'class': 'th' }, [ column[1] ]);
		}))
	].concat(cache.entries.map(function(entry) {
		return E('tr', { 'class': 'tr' }, kColumns.map(function(column) {
			return E('td', { 'class': 'td', 'data-title': column[1] }, [ entry[column[0]] || '–' ]);
		}));
	})));
}

// One after the other: a new address comes when the old one is gone. Resolves to the answers.
function send(calls) {
	return calls.reduce(function(before, call) {
		return before.then(function(answers) {
			return callHandler(call.handler, call.words).catch(function(error) {
				return { messages: [ error.message ] };
			}).then(function(answer) { return answers.concat(answer); });
		});
	}, Promise.resolve([]));
}

function isWord(text) {
	return text != '' && values.check({ kind: 'text' }, text) === true;
}

// Two words and what to do with them, for onSend.
function linkForm(onSend) {
	var phrase = E('select', { 'class': 'cbi-input-select', 'style': kInline, 'aria-label': _('What to do') },
		phrases.links.map(function(link) { return E('option', { 'value': link[0] }, [ link[1] ]); }));
	var ends = [ _('One end'), _('Other end') ].map(function(end) {
		return E('input', { 'type': 'text', 'class': 'cbi-input-text', 'style': kInline, 'placeholder': end, 'aria-label': end });
	});
	var sendBoth = function() {
		var bad = ends.filter(function(end) { return !isWord(end.value.trim()); });

		ends.forEach(function(end) { end.classList.toggle('cbi-input-invalid', bad.indexOf(end) != -1); });
		return bad.length == 0 && onSend(phrase.value, ends[0].value.trim(), ends[1].value.trim());
	};

	return E('p', {}, [ phrase ].concat(ends, E('button', {
		'class': 'btn cbi-button',
		'style': kInline,
		'disabled': !L.hasViewPermission() || null,
		'click': ui.createHandlerFn(null, sendBoth)
	}, [ _('Send') ])));
}

function joined(answers, list) {
	return answers.reduce(function(all, answer) { return all.concat(answer[list] || []); }, []);
}

function warn(text) {
	ui.addNotification(null, E('p', {}, [ text ]), 'warning').scrollIntoView({ block: 'center' });
}

return view.extend({
	load: function() {
		return Promise.all([ L.resolveDefault(callCache(), {}), uci.load('nhrp'), L.resolveDefault(uci.load('network')) ]);
	},

	render: function(loaded) {
		var table = fields.nhrp;
		var cache = E('div', {}, [ cacheTable(loaded[0]) ]);
		var router = this.router = new state.Router(table, []);
		var map = this.map = new form.JSONMap({ sdwan: {} }, table.title, table.help);

		map.readonly = !L.hasViewPermission();
		table.sections.forEach(function(section) { page.addSection(map, section, router); });
		map.children[0].getOption('interface').offers = tunnels().map(function(name) { return [ name, name ]; });
		fill(map, settings(uci.get('nhrp', kSection)));
		poll.add(function() {
			return L.resolveDefault(callCache(), {}).then(function(answer) { dom.content(cache, cacheTable(answer)); });
		}, kPollSeconds);
		return page.follow(map, router).then(L.bind(this.frame, this, cache));
	},

	frame: function(cache, node) {
		return E('div', {}, [
			node,
			E('div', { 'class': 'cbi-section' }, [
				E('h3', {}, [ _('Other ends of the tunnel') ]),
				E('div', { 'class': 'cbi-section-descr' }, [ _('Which public address leads to which address of the tunnel network.') ]),
				cache,
				E('p', {}, [ E('button', {
					'class': 'btn cbi-button',
					'disabled': !L.hasViewPermission() || null,
					'click': ui.createHandlerFn(this, 'restart')
				}, [ _('Restart NHRP') ]) ])
			]),
			E('div', { 'class': 'cbi-section' }, [
				E('h3', {}, [ _('Links between spokes') ]),
				E('div', { 'class': 'cbi-section-descr' }, [ _('Sent as entered, and not stored. FRRouting\'s own nhrpd refuses them; they are for one that knows them.') ]),
				linkForm(L.bind(this.sendLink, this))
			])
		]);
	},

	handleSave: function() {
		var map = this.map;
		var calls = [];

		return map.save(function() {
			var before = settings(uci.get('nhrp', kSection));
			var after = settings(map.data.get('json', kSection));

			calls = phrases.between(allFields(), before, after);
			if (calls.length > 0 && !after.interface)
				throw new Error(_('Enter the tunnel interface.'));
		}).then(function() { return send(calls); }).then(L.bind(this.sent, this));
	},

	// A daemon that did not run could take nothing; applying what was stored starts it.
	sent: function(answers) {
		var router = this.router, map = this.map;
		var isRunning = !!(router.status.protocols && router.status.protocols.nhrp.running);

		router.answered = isRunning ? joined(answers, 'refused') : [];
		if (isRunning)
			joined(answers, 'messages').forEach(warn);
		uci.unload('nhrp');
		return (isRunning || answers.length == 0 ? Promise.resolve() : L.resolveDefault(callApply([ 'nhrp' ]))).then(function() {
			return uci.load('nhrp');
		}).then(function() {
			if (!uci.get('nhrp', kSection))
				warn(_('Sent, but not stored: /etc/config/nhrp has no section "%s".').format(kSection));
			fill(map, settings(uci.get('nhrp', kSection)));
			return map.load();
		}).then(function() {
			return map.reset();
		}).then(function() {
			return router.refresh();
		}).then(function() {
			if (router.answered.length > 0)
				router.panel.scrollIntoView({ block: 'center' });
		});
	},

	sendLink: function(phrase, one, other) {
		var tunnel = uci.get('nhrp', kSection, 'interface');

		if (!phrases.isSet(tunnel))
			return warn(_('Enter the tunnel interface, and save.'));
		return send([ phrases.linkCall(tunnel, phrase, one, other) ]).then(L.bind(this.sent, this));
	},

	restart: function() {
		return callHandler('process_nhrp_global', [ 'restart' ]).then(L.bind(this.router.refresh, this.router));
	},

	handleSaveApply: null
});
