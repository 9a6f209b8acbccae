// SPDX-License-Identifier: Apache-2.0
// What the pages' modules see of LuCI, as far as they need it without a browser, and what their tests say.

var checks = 0;
var failures = [];

var modules = {};
var texts = {}; // of the files that a test reads

// Makes a module known; it runs when it is first required.
function define(name, classes, body) {
	modules[name] = { classes: classes, body: body };
}

function _(text) {
	return text;
}

function N_(count, one, many) {
	return count == 1 ? one : many;
}

String.prototype.format = function() {
	var values = arguments, used = 0;

	return this.replace(/%(.)/g, function(match, kind) {
		if (kind == '%')
			return '%';
		if (kind == 's')
			return String(values[used++]);
		if (kind == 'd')
			return String(Math.floor(Number(values[used++])));
		throw new Error('this stand-in knows no ' + match);
	});
};

var baseclass = {
	extend: function(properties) {
		function Class() {
			if (this.__init__)
				this.__init__.apply(this, arguments);
		}
		Object.keys(properties).forEach(function(name) {
			Class.prototype[name] = properties[name];
		});
		Class.extend = baseclass.extend;
		return Class;
	}
};

function require(name) {
	var module = modules[name];

	if (name == 'baseclass')
		return baseclass;
	if (!module)
		throw new Error('no module ' + name);
	if (!module.instance) {
		var made = module.body.apply(null, [ {}, {}, {} ].concat(module.classes.map(require)));
		module.instance = new made();
	}
	return module.instance;
}

// Fails when the values are not the same; objects and lists are the same when their JSON is.
function same(actual, expected, what) {
	var is = JSON.stringify(actual), should = JSON.stringify(expected);

	checks++;
	if (is !== should)
		failures.push((what || 'value') + '\n  is     ' + is + '\n  should ' + should + '\n' + new Error().stack);
}

function holds(condition, what) {
	same(!!condition, true, what);
}
