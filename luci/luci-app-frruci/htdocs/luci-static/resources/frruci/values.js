// SPDX-License-Identifier: Apache-2.0
// Reading and checking values, and what the store lacks. Knows nothing of LuCI's forms.

'use strict';
'require baseclass';

// Four decimal parts without leading zeros, as the daemons read an address; null when it is none.
function readAddress(text) {
	var parts = /^(0|[1-9]\d{0,2})\.(0|[1-9]\d{0,2})\.(0|[1-9]\d{0,2})\.(0|[1-9]\d{0,2})$/.exec(text);

	if (!parts || parts.slice(1).some(function(part) { return Number(part) > 255; }))
		return null;
	return parts.slice(1).reduce(function(number, part) {
		return number * 256 + Number(part);
	}, 0);
}

function showAddress(number) {
	return [ 16777216, 65536, 256, 1 ].map(function(unit) {
		return Math.floor(number / unit) % 256;
	}).join('.');
}

function maskOf(length) {
	return 4294967296 - Math.pow(2, 32 - length);
}

// The length of a mask; null when it is none. With wildcard, a mask whose first bit is clear means the turned one.
function lengthOf(mask, wildcard) {
	var number = readAddress(mask);

	if (number !== null && wildcard && number < 2147483648)
		number = 4294967295 - number;
	for (var length = 0; length <= 32; length++)
		if (number === maskOf(length))
			return length;
	return null;
}

function startOf(address, length) {
	return address - address % Math.pow(2, 32 - length);
}

// 10.1.2.1/24 or 10.1.2.1/255.255.255.0 as { address: '10.1.2.0', length: 24, mask: '255.255.255.0' }, or null.
function readNetwork(text) {
	var halves = String(text).split('/');
	var address = readAddress(halves[0]);
	var length = /^([0-9]|[12][0-9]|3[0-2])$/.test(halves[1]) ? Number(halves[1]) : lengthOf(halves[1], false);

	if (halves.length != 2 || address === null || length === null)
		return null;
	return { address: showAddress(startOf(address, length)), length: length, mask: showAddress(maskOf(length)) };
}

// The network of an address and a mask as they are stored; what cannot be read is shown as it is.
function showNetwork(address, mask, wildcard) {
	var length = lengthOf(mask, wildcard);

	if (!address && !mask)
		return null;
	if (readAddress(address) === null || length === null)
		return (address || '') + '/' + (mask || '');
	return showAddress(startOf(readAddress(address), length)) + '/' + length;
}

// Sections that a display stores state in are found by the interface's name.
function sectionName(name) {
	return name.replace(/\./g, '_');
}

// The display of interfaces stores the cost that it saw with the end of its line.
function stored(value) {
	return (typeof(value) == 'string') ? value.trim() : null;
}

function isShown(field, section) {
	return !field.when || Object.keys(field.when).every(function(option) {
		return field.when[option].indexOf(stored(section[option])) != -1;
	});
}

// What a section lacks of what the replay reads: a missing number would be replayed as 0.
function missing(fields, section) {
	var values = {}, whole = {};

	fields.forEach(function(field) {
		whole[field.option] = stored(section[field.option]) || field.preset;
	});
	fields.forEach(function(field) {
		if (field.preset != null && isShown(field, whole) && !stored(section[field.option]))
			values[field.option] = field.preset;
	});
	return values;
}

function bytesOf(text) {
	return unescape(encodeURIComponent(text)).length;
}

function isBare(text) {
	return !/[\x00-\x20\x7f]/.test(text);
}

var kNotBare = _('Spaces are not possible here.');

var kChecks = {
	number: function(field, value) {
		return (/^\d{1,10}$/.test(value) && Number(value) >= field.min && Number(value) <= field.max) ||
			_('A whole number from %d to %d.').format(field.min, field.max);
	},

	choice: function(field, value) {
		return field.choices.some(function(choice) { return choice[0] == value; }) || _('None of the choices.');
	},

	router: function(field, value, section) {
		var number = readAddress(value);

		if (number === null)
			return _('Four numbers from 0 to 255, like 10.0.0.1.');
		return number != 0 || section.status != 'on' || _('0.0.0.0 is no router ID: choose one of this router\'s addresses.');
	},

	network: function(field, value, section, others) {
		var network = readNetwork(value);

		if (!network)
			return _('An address and a length from %d to 32, like 192.168.1.0/24.').format(field.least);
		if (network.length < field.least)
			return _('The length must be at least %d.').format(field.least);
		return !others.some(function(other) {
			return showNetwork(other[field.option], other[field.mask], field.wildcard) == network.address + '/' + network.length;
		}) || _('This network is in the list already.');
	},

	address: function(field, value) {
		return readAddress(value) !== null || _('Four numbers from 0 to 255, like 10.0.0.1.');
	},

	prefix: function(field, value) {
		return (/\/\d{1,2}$/.test(value) && readNetwork(value) !== null) ||
			_('An address and its length, like 10.0.0.1/24.');
	},

	name: function(field, value) {
		return (bytesOf(value) <= 15 && isBare(value) && !/[\/|"$&'();<>[\\`]/.test(value)) ||
			_('The name of an interface: at most 15 characters.');
	},

	text: function(field, value) {
		return !isBare(value) ? kNotBare : bytesOf(value) <= 63 || _('At most %d characters.').format(63);
	},

	// What is longer would be cut by the daemon, without a word.
	key: function(field, value, section, others) {
		if (!isBare(value))
			return kNotBare;
		if (bytesOf(value) > field.max)
			return _('At most %d characters.').format(field.max);
		return !others.some(function(other) {
			return section.authen_mode == 'md5' && other.authen_mode == 'md5' &&
				other.key_id == section.key_id && other.key != value;
		}) || _('Another interface has another key with this number.');
	}
};
kChecks.host = kChecks.text;

// True, or what is wrong with a value. section has the other values as they are in the form, others the other sections
// of the type as they are stored; above is the title of the option that the value has to be greater than.
function check(field, value, section, others, above) {
	var result = kChecks[field.kind] ? kChecks[field.kind](field, value, section, others || []) : true;

	if (result === true && field.above && Number(value) <= Number(section[field.above]))
		return _('Must be greater than "%s".').format(above);
	return result;
}

// The help line: what it is, what may be entered, what is usual.
function describe(field) {
	var parts = [ field.help ];

	if (field.kind == 'number')
		parts.push(field.unit ? _('%d to %d %s.').format(field.min, field.max, field.unit.name)
		                      : _('%d to %d.').format(field.min, field.max));
	if (field.kind == 'key')
		parts.push(_('At most %d characters, no spaces.').format(field.max));
	if (field.kind == 'number' && field.preset != null)
		parts.push(_('Usually %s.').format(field.preset));
	return parts.filter(Boolean).join(' ');
}

// A value as a person reads it in a list.
function show(field, value) {
	if (field.kind == 'switch')
		return (value == field.on) ? _('Yes') : _('No');
	if (field.kind == 'choice')
		return (field.choices.filter(function(choice) { return choice[0] == value; })[0] || [ 0, value ])[1];
	return (value && field.unit) ? '%s %s'.format(value, field.unit.sign) : value;
}

// Which networks the router's own interfaces are in, once each: [ '10.1.2.0/24', 'eth1.2' ].
function ownNetworks(addressable) {
	var seen = {};

	return (addressable || []).map(function(one) {
		var network = one.address ? readNetwork(one.address) : null;

		return network ? [ network.address + '/' + network.length, one.name ] : null;
	}).filter(function(network) {
		var isNew = network && !seen[network[0]];

		if (isNew)
			seen[network[0]] = true;
		return isNew;
	});
}

// The greatest address of an interface that is up, as the daemon would choose; null when there is none.
function suggestRouterId(addressable) {
	var best = (addressable || []).reduce(function(greatest, one) {
		return Math.max(greatest, one.up && one.address ? readAddress(one.address.split('/')[0]) || 0 : 0);
	}, 0);

	return best > 0 ? showAddress(best) : null;
}

return baseclass.extend({
	readNetwork: readNetwork,
	showNetwork: showNetwork,
	sectionName: sectionName,
	stored: stored,
	missing: missing,
	check: check,
	describe: describe,
	show: show,
	ownNetworks: ownNetworks,
	suggestRouterId: suggestRouterId
});
