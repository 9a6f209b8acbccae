// SPDX-License-Identifier: Apache-2.0
// The tables of fields against what the replay reads, the words that the program takes and the daemon's lines.
// Reads docs/ospf-front.md docs/rip.md docs/nhrp.md docs/apply.md host/handlers.cpp
// Reads packaging/openwrt/frruci/files/ospf.config packaging/openwrt/frruci/files/rip.config

var fields = require('frruci.fields');
var pages = [ fields.ospf, fields.rip, fields.nhrp ];

function rowsAfter(file, heading) {
	var lines = texts[file].split(heading + '\n')[1].split(/\n#/)[0].split('\n');

	return lines.filter(function(line) { return /^\| /.test(line); }).slice(1).map(function(line) {
		return line.split('|').slice(1, -1).map(function(cell) { return cell.trim(); });
	});
}

function quoted(cell) {
	return (cell.match(/`[^`]+`/g) || []).map(function(word) { return word.slice(1, -1); });
}

function sorted(list) {
	return list.slice().sort();
}

// The options of a section's fields, those of the masks among them.
function optionsOf(page, type) {
	return page.sections.filter(function(section) { return section.type == type; }).reduce(function(all, section) {
		section.fields.forEach(function(field) {
			all.push(field.option);
			if (field.mask)
				all.push(field.mask);
		});
		return all;
	}, []);
}

function eachField(check) {
	pages.forEach(function(page) {
		page.sections.forEach(function(section) {
			section.fields.forEach(function(field) {
				check(field, section, page, page.config + ' ' + section.type + ' ' + field.option);
			});
		});
	});
}

function fieldOf(page, type, option) {
	return page.sections.filter(function(section) { return section.type == type; }).reduce(function(found, section) {
		return found.concat(section.fields);
	}, []).filter(function(field) { return field.option == option; })[0];
}

// Every option that a replay reads has a field, and no field is for nothing.
(function() {
	var keywords = rowsAfter('docs/ospf-front.md', '## Keywords of an interface').map(function(row) { return quoted(row[0])[0]; });
	var read = { global: [ 'status' ] };

	rowsAfter('docs/ospf-front.md', '## Replay').forEach(function(row) {
		var words = quoted(row[1]);

		read[words[0]] = (read[words[0]] || []).concat(words.slice(1));
	});
	read.interface = read.interface.concat(keywords);
	same(read.ospf_cfg.length, 7);
	same(keywords.length, 9);
	Object.keys(read).forEach(function(type) {
		same(sorted(optionsOf(fields.ospf, type)), sorted(read[type]), 'ospf ' + type);
	});
})();

rowsAfter('docs/rip.md', '## Store').forEach(function(row) {
	var type = quoted(row[0])[0];

	same(sorted(optionsOf(fields.rip, type)), sorted(quoted(row[1])), 'rip ' + type);
});

(function() {
	var stored = rowsAfter('docs/nhrp.md', '## Builders').map(function(row) { return quoted(row[3])[0]; });
	var options = stored.filter(function(option) { return option && option != 'WORD'; });

	options = options.filter(function(option, position) { return options.indexOf(option) == position; });
	same(sorted(optionsOf(fields.nhrp, 'nhrp')), sorted(options.concat([ 'interface', 'redirect', 'shortcut' ])), 'nhrp');
})();

// The phrases that the handler knows.
(function() {
	var known = rowsAfter('docs/nhrp.md', '## Phrases').map(function(row) {
		return quoted(row[0])[0].replace(/( [A-Z])+$/, '');
	});
	var used = require('frruci.phrases').links.map(function(link) { return link[0]; });

	eachField(function(field, section, page) {
		if (page === fields.nhrp && field.handler != 'process_nhrp_global')
			used = used.concat([ field.set, field.unset ].filter(Boolean));
	});
	same(sorted(used), sorted(known), 'phrases');
})();

// The ranges of the program's own table: the words of a form, [ word, low, high ] for what has a range.
(function() {
	var compared = 0;

	function forms(handler) {
		return texts['host/handlers.cpp'].split('constexpr Form kForms[]')[1].split('};')[0].replace(/"\s+"/g, '')
			.match(new RegExp('\\{' + handler + ',\\s+"[^"]+"', 'g')).map(function(form) {
				return form.split('"')[1].split(' ');
			});
	}

	function range(field, token, what) {
		var ends = /=(\d+)\.\.(\d+)$/.exec(token);

		compared++;
		same([ field.min, field.max ], [ Number(ends[1]), Number(ends[2]) ], what);
	}

	function words(field, token, what) {
		compared++;
		same(sorted(field.kind == 'switch' ? [ field.on, field.off ] : field.choices.map(function(choice) { return choice[0]; })),
		     sorted(token.replace(/^[A-Z0-9]+=/, '').split('|')), what);
	}

	function token(field, text, what) {
		if (/\.\./.test(text) && field.kind == 'choice')
			same([ Number(field.choices[0][0]), Number(field.choices[field.choices.length - 1][0]) ],
			     text.split('=')[1].split('..').map(Number), what);
		else if (/\.\./.test(text))
			range(field, text, what);
		else
			words(field, text, what);
	}

	forms('kOspfInterface').forEach(function(form) {
		if (form.length == 4 && form[2] != 'auto_type')
			token(fieldOf(fields.ospf, 'interface', form[2]), form[3], 'ospf ' + form[2]);
		if (form[4] == 'KEY8')
			same(fieldOf(fields.ospf, 'interface', 'simple_key').max, 8);
		if (form[5] == 'KEY16')
			same(fieldOf(fields.ospf, 'interface', 'md5_key').max, 16);
		if (form[5] == 'KEY16')
			range(fieldOf(fields.ospf, 'interface', 'md5_key_id'), form[4], 'ospf md5_key_id');
	});
	range(fieldOf(fields.ospf, 'network', 'area_id'), forms('kOspfNetwork')[0][3], 'area');
	[ 'originate', 'always', 'metric', 'metric_type' ].forEach(function(option, position) {
		token(fieldOf(fields.ospf, 'advertise_cfg', option), forms('kOspfDefault')[0][position], option);
	});
	[ 'distance', 'rfc_compatible', 'spf_delay', 'spf_hold_init', 'spf_hold_max', 'max_path', 'passive_def' ]
		.forEach(function(option, position) {
			token(fieldOf(fields.ospf, 'ospf_cfg', option), forms('kOspfOptions')[0][position], option);
		});
	forms('kRipConfig').forEach(function(form) {
		token(fieldOf(fields.rip, 'config', form[0]), form[1], 'rip ' + form[0]);
		if (form[2])
			range(fieldOf(fields.rip, 'config', form[0] + '_metric'), form[2], 'rip ' + form[0] + '_metric');
	});
	forms('kRipInterface').forEach(function(form) {
		if (form[0] != 'show' && form[0] != 'authen_mode')
			token(fieldOf(fields.rip, 'interface', form[0]), form[2], 'rip ' + form[0]);
		if (form[2] == 'md5')
			range(fieldOf(fields.rip, 'interface', 'key_id'), form[3], 'rip key_id');
		if (form[4])
			same([ form[4], fieldOf(fields.rip, 'interface', 'key').max ], [ 'KEY16', 16 ]);
	});
	range(fieldOf(fields.nhrp, 'nhrp', 'network_id'), forms('kNhrpInterface').filter(function(form) {
		return form[4] == 'network-id';
	})[0][5], 'network_id');
	forms('kNhrpGlobal').slice(1).forEach(function(form) {
		var field = fieldOf(fields.nhrp, 'nhrp', form[1].replace(/-/g, '_'));

		same(field.set, form[1]);
		range(field, form[2], field.option);
	});
	same(compared, 38, 'compared');
})();

// What a refused command is found by is a line that apply sends.
(function() {
	var lines = rowsAfter('docs/apply.md', '## The kinds').map(function(row) { return quoted(row[1])[0].replace(/\[ no \] /, ''); });
	var groups = 0;

	holds(lines.length > 40, 'lines');
	eachField(function(field, section, page, what) {
		if (!field.words || field.hidden)
			return;
		groups++;
		holds(lines.some(function(line) { return (line + ' ').indexOf(field.words + ' ') == 0; }), what + ': ' + field.words);
	});
	holds(groups > 40, 'words');
})();

// The defaults of the package's own settings.
[ fields.ospf, fields.rip ].forEach(function(page) {
	var text = texts['packaging/openwrt/frruci/files/' + page.config + '.config'];
	var compared = 0;

	page.sections.forEach(function(section) {
		var own = section.name && text.split("config " + section.type + " '" + section.name + "'")[1].split('\nconfig')[0];

		section.fields.forEach(function(field) {
			var value = own && new RegExp("option " + field.option + " '([^']*)'").exec(own);

			if (!own)
				return;
			compared++;
			same(field.preset, value && value[1], page.config + ' ' + field.option);
		});
	});
	same(compared, page.config == 'ospf' ? 13 : 12);
});

// What is stored whatever is shown has a default, as a missing number is replayed as 0; a key cannot have one.
eachField(function(field, section, page, what) {
	var isName = field.kind == 'network' || field.option == 'interface';

	if (page !== fields.nhrp)
		same(field.preset != null, !isName && field.kind != 'key', what + ': preset');
	holds(field.hidden || field.fixed || /[.]$/.test(field.help), what + ': help');
	holds(field.title, what + ': title');
	if (field.kind == 'number' && field.preset != null)
		holds(Number(field.preset) >= field.min && Number(field.preset) <= field.max, what + ': preset in range');
	if (field.above)
		holds(fieldOf(page, section.type, field.above), what + ': above');
	Object.keys(field.when || {}).forEach(function(option) {
		var choices = fieldOf(page, section.type, option).choices.map(function(choice) { return choice[0]; });

		field.when[option].forEach(function(value) { holds(choices.indexOf(value) != -1, what + ': when'); });
	});
});
