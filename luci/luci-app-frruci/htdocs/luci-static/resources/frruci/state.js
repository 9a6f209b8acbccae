// SPDX-License-Identifier: Apache-2.0
// The router as a page knows it, and the parts of the page that show it: its state, what it refused, what is not applied.

'use strict';
'require baseclass';
'require dom';
'require rpc';
'require uci';
'require ui';
'require frruci.answers as answers';

var callStatus = rpc.declare({ object: 'frruci', method: 'status' });
var callDiff = rpc.declare({ object: 'frruci', method: 'diff', params: [ 'protocols' ] });
var callApply = rpc.declare({ object: 'frruci', method: 'apply', params: [ 'protocols' ] });

var kRoundsOfDiff = 4;
var kLabels = { on: 'label success', off: 'label' };

function diffLine(line) {
	var colors = { '+': 'color:#2e9e4f', '-': 'color:#e0483e' };

	return E('span', { 'style': colors[line.sign] || null }, [ '%s%s\n'.format(line.sign, line.text) ]);
}

function showDiff(page) {
	return callDiff([ page.config ]).then(function(diff) {
		ui.showModal(_('Stored, but not running'), [
			E('p', {}, [ _('A line with + is still to be sent to %s, a line with - is to go.').format(page.daemon) ]),
			E('pre', { 'style': 'overflow:auto; max-height:60vh' },
				diff.lines.length ? diff.lines.map(diffLine) : [ _('The router runs what is stored.') ]),
			E('div', { 'class': 'button-row' }, [
				E('button', { 'class': 'btn cbi-button', 'click': ui.hideModal }, [ _('Close') ])
			])
		]);
	});
}

function warning(text) {
	return E('div', { 'class': 'alert-message warning' }, [ text ]);
}

// A refusal below a setting, and below an entry of a list.
function below(text) {
	return E('div', { 'class': 'frruci-refused', 'style': 'margin-top:.5em' }, [ warning(text) ]);
}

function rowBelow(row, text) {
	return E('tr', { 'class': 'tr frruci-refused' }, [
		E('td', { 'class': 'td', 'colspan': row.children.length }, [ warning(text) ])
	]);
}

var Router = baseclass.extend({
	__init__: function(page, addressable) {
		this.page = page;
		this.addressable = addressable;
		this.status = {};
		this.differences = 0;
		this.rounds = 0;
		this.answered = []; // refusals of what this page itself sent
		this.form = null; // as it was drawn last; it may not be in the document yet
		this.shown = null;
		this.panel = E('div', { 'class': 'frruci-state' });
	},

	// A difference costs the router a rehearsal of the whole replay: it is asked for less often, unless one is shown.
	refresh: function() {
		var isDue = this.differences > 0 || this.rounds++ % kRoundsOfDiff == 0;

		return Promise.all([
			L.resolveDefault(callStatus(), {}),
			isDue ? L.resolveDefault(callDiff([ this.page.config ]), {}) : { differences: 0 }
		]).then(L.bind(function(told) {
			this.status = told[0];
			this.differences = told[1].differences || 0;
			this.update();
		}, this));
	},

	refused: function() {
		var sections = uci.sections(this.page.config);
		var page = this.page;

		return answers.ofProtocol(this.status, page.config).concat(this.answered).map(function(refusal) {
			return { text: answers.tell(refusal), place: answers.locate(page, refusal, sections) };
		});
	},

	draw: function(form) {
		this.form = form;
		this.shown = null;
		this.update();
	},

	// Leaves alone what has not changed: somebody may be about to press a button.
	update: function() {
		var news = JSON.stringify([ answers.stateOf(this.status, this.page), this.status.watch, this.differences, this.refused() ]);

		if (news == this.shown)
			return;
		this.shown = news;
		this.markRefused();
		dom.content(this.panel, this.notes());
	},

	notes: function() {
		var state = answers.stateOf(this.status, this.page);
		var refused = this.refused();
		var homeless = refused.filter(function(one) { return !one.place; });
		var isSilent = this.status.watch && !this.status.watch.running && state.state != 'off';

		return [
			state.state == 'fault' ? warning(state.text)
			                       : E('p', {}, [ E('span', { 'class': kLabels[state.state], 'style': 'text-transform:none' }, [ state.text ]) ]),
			isSilent ? warning(_('Saved changes are not sent by themselves: the service "frruci" does not run.')) : '',
			this.differences > 0 ? this.differenceNote() : '',
			refused.length > homeless.length
				? warning(_('Refused settings, marked below: %d.').format(refused.length - homeless.length)) : ''
		].concat(homeless.map(function(one) { return warning(one.text); }));
	},

	differenceNote: function() {
		return E('div', { 'class': 'alert-message notice' }, [
			E('p', {}, [ _('The router does not run what is stored. Differences: %d.').format(this.differences) ]),
			E('button', { 'class': 'btn cbi-button', 'click': ui.createHandlerFn(this, function() {
				return showDiff(this.page);
			}) }, [ _('Show') ]), ' ',
			E('button', { 'class': 'btn cbi-button cbi-button-apply', 'disabled': !L.hasViewPermission() || null,
				'click': ui.createHandlerFn(this, 'applyNow') }, [ _('Apply now') ])
		]);
	},

	applyNow: function() {
		return callApply([ this.page.config ]).then(L.bind(function(result) {
			(result.messages || []).forEach(function(message) {
				ui.addNotification(null, E('p', {}, [ message ]), 'warning');
			});
			this.answered = [];
			this.rounds = 0;
			return this.refresh();
		}, this));
	},

	// Puts the daemon's words beside the settings that it refused, in the form and in an open window.
	markRefused: function() {
		var refused = this.refused().filter(function(one) { return one.place; });

		[ this.form, document.getElementById('modal_overlay') ].filter(Boolean).forEach(function(root) {
			root.querySelectorAll('.frruci-refused').forEach(function(note) { note.remove(); });
			refused.forEach(function(one) {
				root.querySelectorAll('[data-field$=".%s.%s"] > .cbi-value-field'.format(one.place.section, one.place.option))
					.forEach(function(field) { field.appendChild(below(one.text)); });
				root.querySelectorAll('tr[data-sid="%s"]'.format(one.place.section)).forEach(function(row) {
					row.parentNode.insertBefore(rowBelow(row, one.text), row.nextSibling);
				});
			});
		});
	}
});

return baseclass.extend({
	Router: Router
});
