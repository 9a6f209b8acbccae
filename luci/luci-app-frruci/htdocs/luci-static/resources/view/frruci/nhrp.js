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

var callCache = rpc.declare({ object: 'frruci', method: 'nhrp_cache' });
var callHandler = rpc.declare({ object: 'frruci', method: 'call', params: [ 'handler', 'words' ] });
var callApply = rpc.declare({ object: 'frruci', method: 'apply', params: [ 'protocols' ] });

var kPollSeconds = 5;
var kSection = 'sdwan';

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
	return allFields().reduce(function(values, field) {
		var value = section ? section[field.option] : null;

		if (phrases.isSet(value))
			values[field.option] = value;
		return values;
	}, {});
}

// The kernel's names of the tunnels that the network settings make.
function tunnels() {
	return uci.sections('network', 'interface').filter(function(one) {
		return /^gre(tap)?$/.test(one.proto);
	}).map(function(one) { return one.proto + '4-' + one['.name']; });
}

// What no phrase takes away cannot be switched off; the tunnel's name is stored once, for good.
function holdFixed(map, stored) {
	fields.nhrp.sections.forEach(function(table, position) {
		table.fields.forEach(function(field) {
			var option = map.children[position].getOption(field.option);
			var isName = field.option == 'interface';

			if (isName)
				tunnels().forEach(function(name) { option.value(name); });
			if (isName && phrases.isSet(stored.interface)) {
				option.readonly = true;
				option.description += ' ' + _('Stored for good; only the router\'s file /etc/config/nhrp can change it.');
			}
			if (phrases.isFixed(field, stored[field.option])) {
				option.readonly = field.kind == 'switch' || map.readonly;
				option.rmempty = false;
				option.description += ' ' + (field.kind == 'switch' ? _('Cannot be switched off from here.')
				                                                    : _('Can be replaced, but not removed.'));
			}
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

// One after the other: a new address comes when the old one is gone. Resolves to what was refused.
function send(calls) {
	return calls.reduce(function(before, call) {
		return before.then(function(refused) {
			return callHandler(call.handler, call.words).then(function(result) {
				return refused.concat(result.refused || []);
			});
		});
	}, Promise.resolve([]));
}

return view.extend({
	load: function() {
		return Promise.all([ L.resolveDefault(callCache(), {}), uci.load('nhrp'), L.resolveDefault(uci.load('network')) ]);
	},

	render: function(loaded) {
		var table = fields.nhrp;
		var cache = E('div', {}, [ cacheTable(loaded[0]) ]);
		var router = this.router = new page.Router(table, []);
		var map = this.map = new form.JSONMap({ sdwan: settings(uci.get('nhrp', kSection)) }, table.title, table.help);

		map.readonly = !L.hasViewPermission();
		table.sections.forEach(function(section) { page.addSection(map, section, router); });
		holdFixed(map, settings(uci.get('nhrp', kSection)));
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
			])
		]);
	},

	handleSave: function() {
		var map = this.map;
		var before = settings(uci.get('nhrp', kSection));

		return map.save(null, true).then(L.bind(function() {
			var after = settings(map.data.get('json', kSection));

			var calls = phrases.between(allFields(), before, after);

			if (calls.length > 0 && !after.interface)
				throw new Error(_('Enter the tunnel interface.'));
			return send(calls);
		}, this)).then(L.bind(this.sent, this), function(error) {
			ui.addNotification(null, E('p', {}, [ error.message ]), 'warning');
		});
	},

	// A daemon that did not run is started by applying what was stored.
	sent: function(refused) {
		var isRunning = this.router.status.protocols && this.router.status.protocols.nhrp.running;
		var started = isRunning ? Promise.resolve() : L.resolveDefault(callApply([ 'nhrp' ]));

		this.router.answered = isRunning ? refused : [];
		uci.unload('nhrp');
		return started.then(function() {
			return uci.load('nhrp');
		}).then(L.bind(function() {
			if (!uci.get('nhrp', kSection))
				ui.addNotification(null, E('p', {}, [
					_('Sent, but not stored: /etc/config/nhrp has no section "%s".').format(kSection) ]), 'warning');
			holdFixed(this.map, settings(uci.get('nhrp', kSection)));
			return this.router.refresh();
		}, this));
	},

	restart: function() {
		return callHandler('process_nhrp_global', [ 'restart' ]).then(L.bind(this.router.refresh, this.router));
	},

	handleSaveApply: null
});
