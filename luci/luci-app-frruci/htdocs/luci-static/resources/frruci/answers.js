// SPDX-License-Identifier: Apache-2.0
// What the router's answers mean for a page: where a refusal belongs, and who else is hit.

'use strict';
'require baseclass';
'require frruci.values as values';

function startsWith(text, words) {
	return text == words || text.indexOf(words + ' ') == 0;
}

// The command without its "no", unless the field's own command begins with it.
function matches(field, command) {
	return field.words && (startsWith(command, field.words) || startsWith(command.replace(/^no /, ''), field.words));
}

// The field with the longest fitting words: "ip ospf authentication-key" is not "ip ospf authentication".
function fieldOf(section, command) {
	return section.fields.filter(function(field) {
		return matches(field, command);
	}).sort(function(one, other) {
		return other.words.length - one.words.length;
	})[0] || null;
}

function networkIn(command) {
	var word = command.replace(/^no /, '').split(' ')[1];
	var network = values.readNetwork(word);

	return network ? network.address + '/' + network.length : null;
}

// The stored sections of a type that a refusal is about; of a network that is to go there is none.
function isAbout(section, field, refusal, stored) {
	if (section.name)
		return stored['.name'] == section.name;
	if (section.type == 'interface')
		return refusal.context == 'interface ' + stored.interface;
	return values.showNetwork(stored[field.option], stored[field.mask], field.wildcard) == networkIn(refusal.command);
}

// The key chain of RIP belongs to the interfaces that use its number.
function locateKeyChain(page, refusal, stored) {
	var number = /^key chain app_rip_(\d+)/.exec(refusal.context || refusal.command);
	var user = number && stored.filter(function(section) {
		return section['.type'] == 'interface' && section.key_id == number[1] && section.authen_mode == 'md5';
	})[0];

	return (page.config == 'rip' && user) ? { section: user['.name'], option: 'key' } : null;
}

// Where a refused command belongs: { section, option }, or null when it is no field's. stored: the sections of the store.
function locate(page, refusal, stored) {
	for (var i = 0; i < page.sections.length; i++) {
		var section = page.sections[i];
		var field = startsWith(refusal.context || 'configure', section.context) ? fieldOf(section, refusal.command) : null;
		var place = field && stored.filter(function(one) {
			return one['.type'] == section.type && isAbout(section, field, refusal, one);
		})[0];

		if (place)
			return { section: place['.name'], option: field.option };
	}
	return locateKeyChain(page, refusal, stored);
}

// One line in the daemon's words.
function tell(refusal) {
	var answer = String(refusal.answer || '').trim();

	return answer ? _('%s refused "%s": %s').format(refusal.daemon, refusal.command, answer)
	              : _('%s refused "%s".').format(refusal.daemon, refusal.command);
}

function ofProtocol(status, protocol) {
	return (status.applied && status.applied.refused || []).filter(function(refusal) {
		return refusal.protocol == protocol;
	});
}

function isRunning(status, name) {
	return (status.daemons || []).some(function(daemon) {
		return daemon.name == name && daemon.state != 'stopped';
	});
}

// Who loses zebra when the protocol is switched off: zebra stays while the other of ospfd and ripd runs, for nobody else.
function losers(status, protocol) {
	var own = (status.protocols || {})[protocol] || {};

	if (own.stored != 'on' && !own.running)
		return [];
	if (isRunning(status, protocol == 'ospf' ? 'ripd' : 'ospfd'))
		return [];
	return (status.others || []).concat(isRunning(status, 'nhrpd') ? [ 'nhrpd' ] : []);
}

// How the protocol is, in one line: { state: 'on' | 'off' | 'fault', text }.
function stateOf(status, page) {
	var protocol = (status.protocols || {})[page.config];

	if (!protocol)
		return { state: 'fault', text: _('The state is not known: frruci does not answer.') };
	if (protocol.running)
		return { state: 'on', text: _('%s is running').format(page.title) };
	if (protocol.stored == 'on')
		return { state: 'fault', text: _('%s is switched on, but %s does not run.').format(page.title, page.daemon) };
	return { state: 'off', text: (protocol.stored == 'off' ? _('%s is switched off') : _('%s is not set up')).format(page.title) };
}

return baseclass.extend({
	locate: locate,
	tell: tell,
	ofProtocol: ofProtocol,
	losers: losers,
	stateOf: stateOf,
	isRunning: isRunning
});
