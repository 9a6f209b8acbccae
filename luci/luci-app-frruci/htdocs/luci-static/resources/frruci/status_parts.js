// SPDX-License-Identifier: Apache-2.0
// What the status page is put together from, and how it is changed in place.

'use strict';
'require baseclass';

// Signs that tell the kinds apart without colour.
var kSigns = {
	good: '<circle class="full" cx="8" cy="8" r="6"/>',
	busy: '<circle cx="8" cy="8" r="6"/><path class="full" d="M8,2a6,6 0 0 1 0,12z"/>',
	idle: '<circle cx="8" cy="8" r="6"/>',
	bad: '<path d="M3,3L13,13M13,3L3,13"/>'
};

// The page of a protocol lies beside this one.
function pageUrl(name) {
	return L.url.apply(L, L.env.dispatchpath.slice(0, -1).concat(name));
}

function badge(kind, word, title) {
	var sign = E('span', { 'class': 'frruci-badge frruci-' + kind, title: title || null });

	sign.innerHTML = '<svg viewBox="0 0 16 16" aria-hidden="true">' + kSigns[kind] + '</svg>';
	sign.appendChild(document.createTextNode(word));
	return sign;
}

function pageLink(name, text) {
	return E('a', { href: pageUrl(name) }, [ text ]);
}

function empty(why) {
	return E('p', { 'class': 'frruci-empty' }, why.page ? [ why.text, ' ', pageLink(why.page, why.link) ] : [ why.text ]);
}

function cell(content, title) {
	var child = content.badge ? badge(content.badge.kind, content.badge.word, content.badge.title)
		: content.strong ? E('strong', [ content.text ]) : content.text;

	return E('td', { 'class': 'td', 'data-title': title, title: content.title || null }, [ child ]);
}

// A table, or WHY there is none.
function table(titles, rows, why) {
	if (rows.length == 0)
		return empty(why);
	return E('table', { 'class': 'table' }, [
		E('tr', { 'class': 'tr table-titles' }, titles.map(function(title) {
			return E('th', { 'class': 'th' }, [ title ]);
		}))
	].concat(rows.map(function(row) {
		return E('tr', { 'class': 'tr' }, row.map(function(content, i) {
			return cell(content, titles[i]);
		}));
	})));
}

function heading(name, facts) {
	return [ E('h3', [ name ]) ].concat(facts.length == 0 ? [] : E('div', { 'class': 'frruci-facts' }, facts.map(function(fact) {
		return E('span', [ E('span', { 'class': 'frruci-quiet' }, [ fact.title ]), ' ', fact.text ]);
	})));
}

function card(content) {
	return E('div', { 'class': 'frruci-card frruci-' + content.kind }, [
		E('div', [ content.page ? pageLink(content.page, content.title) : content.title ]),
		badge(content.kind, content.word),
		E('div', { 'class': 'frruci-quiet' }, [ content.detail ])
	].concat(content.lines.map(function(line) {
		return E('div', [ line ]);
	})));
}

// Makes NODE look like WANTED and touches only what differs, so that nothing flickers and a selection stays.
function mend(node, wanted) {
	var i;

	if (node.nodeType != wanted.nodeType || node.nodeName != wanted.nodeName) {
		node.parentNode.replaceChild(wanted, node);
		return;
	}
	if (node.nodeType == Node.TEXT_NODE) {
		if (node.data != wanted.data)
			node.data = wanted.data;
		return;
	}
	for (i = node.attributes.length - 1; i >= 0; i--)
		if (!wanted.hasAttribute(node.attributes[i].name))
			node.removeAttribute(node.attributes[i].name);
	for (i = 0; i < wanted.attributes.length; i++)
		if (node.getAttribute(wanted.attributes[i].name) != wanted.attributes[i].value)
			node.setAttribute(wanted.attributes[i].name, wanted.attributes[i].value);
	mendChildren(node, Array.prototype.slice.call(wanted.childNodes));
}

function mendChildren(node, wanted) {
	wanted.forEach(function(child, i) {
		if (node.childNodes[i])
			mend(node.childNodes[i], child);
		else
			node.appendChild(child);
	});
	while (node.childNodes.length > wanted.length)
		node.removeChild(node.lastChild);
}

return baseclass.extend({
	badge: badge,
	empty: empty,
	table: table,
	heading: heading,
	card: card,
	mendChildren: mendChildren
});
