// SPDX-License-Identifier: Apache-2.0
// A form from a table of fields, with what the router says beside it.

'use strict';
'require baseclass';
'require form';
'require poll';
'require rpc';
'require uci';
'require ui';
'require view';
'require frruci.values as values';
'require frruci.answers as answers';
'require frruci.state as state';

var callInterfaces = rpc.declare({ object: 'frruci', method: 'interfaces' });

var kPollSeconds = 5;

var kWidgets = { choice: form.ListValue, 'switch': form.Flag };

// The interfaces that the library can address and that have no section yet.
function freeInterfaces(config, router) {
	var used = uci.sections(config, 'interface').map(function(section) { return section.interface; });

	return router.addressable.filter(function(one) { return used.indexOf(one.name) == -1; });
}

// Own methods of one list; what is theirs is called by its class, since LuCI's super() counts from the object's class.
var kGrid = form.GridSection.prototype;

// The first value of a window that cannot be stored, and why.
function faultIn(section) {
	var id = section.cfgsections()[0];
	var option = section.children.filter(function(one) {
		return one.isActive(id) && (!one.isValid(id) || (!one.rmempty && !one.formvalue(id)));
	})[0];

	return option ? '%s: %s'.format(option.title, option.getValidationError(id) || _('Must not be empty.')) : null;
}

// A list that has changed is drawn anew with the page: what was entered in it has to be known before, but for what is wrong.
function keepEntered(map) {
	return map.parse().catch(function() {});
}

// A list whose entries are edited in a window. What keeps an entry from being saved is said in the window.
function bindGrid(grid, table, router) {
	grid.anonymous = true;
	grid.addremove = true;
	grid.nodescriptions = true;
	grid.addbtntitle = table.add;
	grid.modaltitle = function(section) {
		return [ table.title, uci.get(grid.map.config, section, 'interface') ].filter(Boolean).join(': ');
	};
	grid.renderSectionPlaceholder = function() {
		return E('em', {}, [ table.empty ]);
	};
	grid.renderRowActions = function(section) {
		var cell = kGrid.renderRowActions.call(grid, section);

		if (grid.map.readonly)
			cell.querySelector('.cbi-button-edit').textContent = _('Show');
		return cell;
	};
	grid.renderMoreOptionsModal = function() {
		return kGrid.renderMoreOptionsModal.apply(grid, arguments).then(L.bind(router.markRefused, router));
	};
	grid.handleModalSave = function(map, ev) {
		var fault = faultIn(map.children[0]);

		map.root.querySelectorAll('.frruci-unsaved').forEach(function(note) { note.remove(); });
		if (fault)
			return map.root.appendChild(E('div', { 'class': 'alert-message error frruci-unsaved' }, [ fault ]));
		return keepEntered(grid.map).then(L.bind(kGrid.handleModalSave, grid, map, ev));
	};
	grid.handleRemove = function(section) {
		uci.remove(grid.map.config, section);
		return keepEntered(grid.map).then(L.bind(uci.save, uci)).then(L.bind(grid.map.load, grid.map))
			.then(L.bind(grid.map.reset, grid.map));
	};
}

// Adds the section of an interface, named as the displays look for it.
function addInterface(grid, one, ev) {
	var section = values.sectionName(one.name);
	var shown = grid.handleAdd(ev, section);

	uci.set(grid.map.config, section, 'interface', one.name);
	if (one.ns && grid.getOption('ns'))
		uci.set(grid.map.config, section, 'ns', one.ns);
	return shown;
}

function nameOf(one) {
	return one.address ? '%s (%s)'.format(one.name, one.address) : one.name;
}

function bindInterfaces(grid, table, router) {
	grid.renderSectionAdd = function() {
		var free = freeInterfaces(grid.map.config, router);
		var names = E('select', { 'class': 'cbi-input-select', 'style': 'width:auto; min-width:12em', 'aria-label': _('Interface') },
			free.map(function(one) { return E('option', {}, [ nameOf(one) ]); }));

		if (free.length == 0)
			return E('p', {}, [ E('em', {}, [ router.addressable.length > 0
				? _('Every interface that can have settings of its own is in the list.')
				: _('No interface of this router can have settings of its own: only VLANs of a port can, like eth1.2.') ]) ]);
		return E('div', { 'class': 'cbi-section-create cbi-tblsection-create' }, [
			names, ' ',
			E('button', {
				'class': 'cbi-button cbi-button-add',
				'click': ui.createHandlerFn(grid, function(ev) { return addInterface(grid, free[names.selectedIndex], ev); }),
				'disabled': grid.map.readonly || null
			}, [ table.add ])
		]);
	};
}

function titleOf(table, option) {
	return table.fields.filter(function(field) { return field.option == option; }).map(function(field) {
		return field.title;
	})[0];
}

function validate(field, table, option, section, value) {
	var data = option.map.data, config = option.map.config;
	var others = data.sections(config, table.type).filter(function(one) { return one['.name'] != section; });

	return !value || values.check(field, value, option.section.formvalue(section), others, titleOf(table, field.above));
}

// What the router offers for a field: [ value, label ].
function offersOf(field, router) {
	return field.kind != 'network' ? [] : values.ownNetworks(router.addressable).map(function(network) {
		return [ network[0], '%s (%s)'.format(network[0], network[1]) ];
	});
}

// Buttons below the input that fill it in. A choice among them would lose what is typed and not confirmed.
function showOffers(option) {
	option.renderWidget = function(section, index, value) {
		var widget = form.Value.prototype.renderWidget.call(this, section, index, value);
		var input = widget.querySelector('input');
		var isReadonly = (this.readonly != null) ? this.readonly : this.map.readonly;

		return E('div', {}, [ widget ].concat((isReadonly ? [] : this.offers).map(function(offer) {
			return E('button', {
				'class': 'btn cbi-button',
				'style': 'margin:.3em .3em 0 0',
				'click': function(ev) {
					ev.preventDefault();
					input.value = offer[0];
					input.dispatchEvent(new Event('change'));
				}
			}, [ offer[1] ]);
		})));
	};
}

function bindNetwork(option, field, table) {
	var offers = option.offers;

	option.load = function(section) {
		var shown = {};

		this.map.data.sections(this.map.config, table.type).forEach(function(one) {
			shown[one['.name']] = values.showNetwork(one[field.option], one[field.mask], field.wildcard);
		});
		this.offers = offers.filter(function(offer) {
			return !Object.keys(shown).some(function(name) { return name != section && shown[name] == offer[0]; });
		});
		this.default = this.offers.length ? this.offers[0][0] : null;
		return shown[section];
	};
	option.write = function(section, value) {
		var network = values.readNetwork(value);

		this.map.data.set(this.map.config, section, field.option, network.address);
		this.map.data.set(this.map.config, section, field.mask, network.mask);
	};
}

function bindField(option, field, table, router) {
	option.rmempty = !!field.optional || !!field.set;
	option.default = field.preset;
	option.password = field.kind == 'key';
	if (!table.name)
		option.modalonly = field.fixed ? false : !field.column || null; // false: in the list alone
	if (field.kind == 'switch') {
		option.enabled = field.on;
		option.disabled = field.off;
	}
	(field.choices || []).forEach(function(choice) { option.value(choice[0], choice[1]); });
	option.offers = offersOf(field, router);
	if (!kWidgets[field.kind] && field.kind != 'key')
		showOffers(option);
	Object.keys(field.when || {}).forEach(function(other) {
		field.when[other].forEach(function(value) { option.depends(other, value); });
	});
	option.load = function(section) {
		return values.stored(form.AbstractValue.prototype.load.call(this, section));
	};
	option.validate = function(section, value) {
		return validate(field, table, this, section, value);
	};
	option.textvalue = function(section) {
		var value = this.cfgvalue(section);
		var text = values.show(field, value == null ? field.preset : value);

		return text ? '%h'.format(text) : null;
	};
	if (field.kind == 'network')
		bindNetwork(option, field, table);
}

function addField(section, field, table, router) {
	var widget = kWidgets[field.kind] || form.Value;
	var option = field.tab ? section.taboption(field.tab, widget, field.option, field.title, values.describe(field))
	                       : section.option(widget, field.option, field.title, values.describe(field));

	bindField(option, field, table, router);
	return option;
}

function addSection(map, table, router) {
	var section = table.name ? map.section(form.NamedSection, table.name, table.type, table.title, table.help)
	                         : map.section(form.GridSection, table.type, table.title, table.help);

	if (!table.name)
		bindGrid(section, table, router);
	if (table.type == 'interface')
		bindInterfaces(section, table, router);
	(table.tabs || []).forEach(function(tab) { section.tab(tab[0], tab[1]); });
	table.fields.forEach(function(field) {
		if (!field.hidden)
			addField(section, field, table, router);
	});
}

// Makes the sections and options that the store lacks known to the form, so that any saving stores them.
function complete(page, router) {
	page.sections.forEach(function(table) {
		if (table.name && !uci.get(page.config, table.name))
			uci.add(page.config, table.type, table.name);
		uci.sections(page.config, table.type, function(section) {
			var lacking = values.missing(table.fields, section);

			Object.keys(lacking).forEach(function(option) {
				uci.set(page.config, section['.name'], option, lacking[option]);
			});
		});
	});
	if (page.config == 'ospf' && uci.get('ospf', 'global', 'router_id') == '0.0.0.0')
		uci.set('ospf', 'global', 'router_id', values.suggestRouterId(router.addressable) || '0.0.0.0');
}

// Resolves to whether the protocol shall be switched off although others lose their routes.
function confirmOff(page, losers) {
	return new Promise(function(resolve) {
		var close = function(isWanted) {
			return function() {
				ui.hideModal();
				resolve(isWanted);
			};
		};

		ui.showModal(_('Switch off %s?').format(page.title), [
			E('p', {}, [ _('With %s its base "zebra" ends too, and these lose their routes: %s.').format(page.title, losers.join(', ')) ]),
			E('div', { 'class': 'button-row' }, [
				E('button', { 'class': 'btn cbi-button', 'click': close(false) }, [ _('Cancel') ]), ' ',
				E('button', { 'class': 'btn cbi-button cbi-button-negative important', 'click': close(true) }, [ _('Switch off') ])
			])
		]);
	});
}

// Keeps the router's part of the page up to date. A form that is drawn anew has lost it.
function follow(map, router) {
	map.renderContents = function() {
		return form.Map.prototype.renderContents.apply(map, arguments).then(function(node) {
			node.insertBefore(router.panel, node.querySelector('.cbi-section'));
			router.draw(node);
			return node;
		});
	};
	poll.add(L.bind(router.refresh, router), kPollSeconds);
	return router.refresh().then(L.bind(map.render, map));
}

// The methods of the view of a page whose settings the page itself stores.
function viewOf(page) {
	return {
		load: function() {
			return Promise.all([ L.resolveDefault(callInterfaces(), {}), uci.load(page.config) ]);
		},

		render: function(loaded) {
			var map = this.map = new form.Map(page.config, page.title, page.help);
			var router = this.router = new state.Router(page, loaded[0].addressable || []);

			complete(page, router);
			page.sections.forEach(function(table) { addSection(map, table, router); });
			return follow(map, router);
		},

		// Resolves to whether it was saved.
		handleSave: function(ev) {
			var isOff = this.map.lookupOption('status', 'global')[0].formvalue('global') != 'on';
			var losers = isOff ? answers.losers(this.router.status, page.config) : [];
			var save = L.bind(view.prototype.handleSave, this, ev);

			return (losers.length ? confirmOff(page, losers) : Promise.resolve(true)).then(function(isWanted) {
				return isWanted && save().then(function() { return true; });
			});
		},

		handleSaveApply: function(ev, mode) {
			return this.handleSave(ev).then(function(isSaved) {
				if (isSaved)
					ui.changes.apply(mode == '0');
			});
		}
	};
}

return baseclass.extend({
	viewOf: viewOf,
	addSection: addSection,
	follow: follow
});
