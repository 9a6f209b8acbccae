// SPDX-License-Identifier: Apache-2.0
// NHRP: the phrases that lead from what is stored to what was entered. The library stores what a phrase sets.

'use strict';
'require baseclass';

function isSet(value) {
	return value != null && value != '' && value != '0';
}

// A setting that no phrase takes away can only be replaced.
function isFixed(field, value) {
	return !!field.set && !field.unset && isSet(value);
}

function callOf(field, tunnel, phrase, value) {
	var words = phrase.split(' ');

	return {
		handler: field.handler || 'process_nhrp_interface',
		words: (field.handler ? [ 'x' ] : [ 'x', tunnel ]).concat(words, field.kind == 'switch' ? [] : [ value ])
	};
}

// The daemon keeps a list of addresses, hubs and multicast maps, the store one: the old one goes before a new one comes.
function callsOf(field, tunnel, before, after) {
	var calls = [];

	if (isSet(before) && field.unset)
		calls.push(callOf(field, tunnel, field.unset, before));
	if (isSet(after))
		calls.push(callOf(field, tunnel, field.set, after));
	return calls;
}

// The calls, in the order of the fields.
function between(fields, before, after) {
	return fields.reduce(function(calls, field) {
		var same = !isSet(before[field.option]) && !isSet(after[field.option]) ||
			before[field.option] == after[field.option];

		return (same || !field.set) ? calls
			: calls.concat(callsOf(field, after.interface, before[field.option], after[field.option]));
	}, []);
}

// What can be done to a link between two spokes, whose ends come after it.
var kLinkPhrases = [ [ 'tunnel add', _('Add') ], [ 'tunnel connect', _('Connect') ], [ 'tunnel del', _('Remove') ] ];

function linkCall(tunnel, phrase, one, other) {
	return { handler: 'process_nhrp_interface', words: [ 'x', tunnel ].concat(phrase.split(' '), one, other) };
}

return baseclass.extend({
	links: kLinkPhrases,
	linkCall: linkCall,
	isSet: isSet,
	isFixed: isFixed,
	between: between
});
