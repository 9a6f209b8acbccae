// SPDX-License-Identifier: Apache-2.0
// What the status page says above everything else: what does not work, what differs, what came back.

'use strict';
'require baseclass';
'require frruci.status as status';

// How long it is told that a daemon is back.
var kBackSeconds = 60;

var kSubjects = {
	status: _('the state of the daemons'),
	neighbors: _('the neighbours'),
	database: _('the routers and networks of the area'),
	interfaces: _('the interfaces'),
	rip: _('RIP'),
	nhrp_cache: _('the NHRP cache'),
	diff: _('the difference between stored and running')
};

// The difference is not asked for each time.
var kAll = Object.keys(kSubjects).length - 1;

var kReasons = {
	mute: _('The plugin of rpcd gave no answer.'),
	missing: _('The router has no object "frruci" on its bus: the plugin of rpcd is missing, or rpcd was not restarted since it came.'),
	denied: _('This login may not read it: it lacks the right "luci-app-frruci".'),
	late: _('The answer did not come in time.')
};

// The numbers by which ubus, and the web server before it, say no.
var kCodes = {
	'3': 'missing', '4': 'missing', '-32000': 'missing', '-32601': 'missing',
	'5': 'mute', '6': 'denied', '-32002': 'denied', '7': 'late'
};

var kConsequences = {
	zebra: _('Without it no route reaches the kernel.'),
	mgmtd: _('Without it settings may not reach the other daemons.'),
	ospfd: _('OSPF is switched on: its neighbours and routes are gone until it is back.'),
	ripd: _('RIP is switched on: its routes are gone until it is back.'),
	nhrpd: _('NHRP is switched on: its tunnels are gone until it is back.')
};

// Why a call failed, from the words of its error: "RPC call to ... failed with ubus code 4: Resource not found", and
// where in the code it came from on further lines.
function reason(message) {
	var first = message.split('\n')[0], found = /failed with (.*?)(-?\d+): (.*)/.exec(first);

	if (!found)
		return _('The router did not answer: %s.').format(first);
	return kReasons[kCodes[found[2]]] || _('The router said: %s.').format(found[3]);
}

// One banner for all calls that failed for one reason. FAILURES holds a message for each method that failed.
function failureBanners(failures, clock) {
	var groups = {};

	Object.keys(kSubjects).forEach(function(method) {
		var why = failures[method] == null ? null : reason(failures[method]);

		if (why != null)
			groups[why] = (groups[why] || []).concat(kSubjects[method]);
	});
	return Object.keys(groups).map(function(why) {
		return {
			kind: 'bad', title: groups[why].length >= kAll ? _('Nothing could be read') : _('Not read: %s').format(groups[why].join(', ')),
			text: clock ? why + ' ' + _('What is shown of it is as of %s.').format(clock) : why
		};
	});
}

function stateOf(daemon) {
	return daemon.state == 'running';
}

// What was seen of the daemons while the page is open: FOLLOWED is the last answer of this function, or null.
function follow(followed, daemons, now) {
	var seen = {};

	(daemons || []).forEach(function(daemon) {
		var before = followed && followed[daemon.name], runs = stateOf(daemon);

		if (before && before.runs == runs)
			seen[daemon.name] = before;
		else
			seen[daemon.name] = { runs: runs, since: before ? now : null };
	});
	return seen;
}

function wanted(answer, name) {
	return status.protocols.some(function(about) {
		return (about.daemon == name || name == 'zebra' || name == 'mgmtd') && status.stored(answer, about.name) == 'on';
	});
}

function clockOf(time) {
	var date = new Date(time * 1000);

	return [ date.getHours(), date.getMinutes(), date.getSeconds() ].map(function(part) {
		return (part < 10 ? '0' : '') + part;
	}).join(':');
}

function goneBanner(daemon, seen) {
	var silent = daemon.state == 'silent', words = [
		silent ? _('It is there and gives no answer: it hangs or has too much to do.') : kConsequences[daemon.name]
	];

	if (seen && seen.since != null)
		words.push(_('Seen since %s.').format(clockOf(seen.since)));
	return {
		kind: 'bad', title: (silent ? _('%s does not answer') : _('%s does not run')).format(daemon.name),
		text: words.join(' '), buttons: [ 'doctor' ]
	};
}

function daemonBanners(answer, followed, now) {
	var banners = [];

	status.daemons(answer).forEach(function(daemon) {
		var seen = followed && followed[daemon.name];

		if (!stateOf(daemon) && wanted(answer, daemon.name))
			banners.push(goneBanner(daemon, seen));
		else if (stateOf(daemon) && seen && seen.since != null && now - seen.since < kBackSeconds)
			banners.push({ kind: 'good', title: _('%s runs again').format(daemon.name), text: _('Since %s.').format(clockOf(seen.since)) });
	});
	return banners;
}

function refusedOf(answer) {
	return answer.applied && answer.applied.refused || [];
}

function refusedBanner(answer) {
	var refused = refusedOf(answer);

	if (refused.length == 0)
		return [];
	return [ {
		kind: 'bad',
		title: N_(refused.length, 'A setting was refused', '%d settings were refused').format(refused.length),
		text: _('Stored, and not running. In the words of the daemon:'),
		refused: refused.map(function(entry) {
			return {
				where: [ entry.daemon, entry.context ].filter(Boolean).join(', '),
				command: entry.command || '', answer: entry.answer || ''
			};
		}),
		buttons: [ 'diff', 'apply' ]
	} ];
}

// What was refused differs as well, and is told already.
function differenceBanner(diff, answer) {
	if (!diff || !(diff.differences > refusedOf(answer).length))
		return [];
	return [ {
		kind: 'busy',
		title: N_(diff.differences, 'A stored setting does not run', '%d stored settings do not run').format(diff.differences),
		text: _('What is stored and what the daemons run differ.'),
		buttons: [ 'diff', 'apply' ]
	} ];
}

function watchBanner(answer) {
	var runs = answer.watch && answer.watch.running;

	if (runs || !wanted(answer, 'zebra'))
		return [];
	return [ {
		kind: 'busy', title: _('Nobody watches the daemons'),
		text: _('frruci watch does not run: a daemon that is started anew comes up without its settings, and saved settings are not applied.'),
		buttons: [ 'doctor' ]
	} ];
}

// One place for each button is enough.
function withButtonsOnce(banners) {
	var given = {};

	banners.forEach(function(banner) {
		banner.buttons = (banner.buttons || []).filter(function(name) {
			var first = !given[name];

			given[name] = true;
			return first;
		});
	});
	return banners;
}

// FACTS: status and diff (null when never answered), failures, followed, now, and clock, the time of the last answer
// when there is an older one to show.
function banners(facts) {
	var all = failureBanners(facts.failures || {}, facts.clock);

	if (facts.status)
		all = all.concat(daemonBanners(facts.status, facts.followed, facts.now), refusedBanner(facts.status),
			differenceBanner(facts.diff, facts.status), watchBanner(facts.status));
	return withButtonsOnce(all);
}

// The lines of a difference by daemon, each with the sign that is shown.
function differenceGroups(diff) {
	var groups = [];

	(diff && diff.lines || []).forEach(function(line) {
		var last = groups[groups.length - 1];

		if (!last || last.daemon != line.daemon)
			groups.push(last = { daemon: line.daemon, lines: [] });
		last.lines.push({
			kind: line.sign == '+' ? 'plus' : line.sign == '-' ? 'minus' : 'context',
			text: (line.sign == '-' ? '−' : line.sign || ' ') + ' ' + line.text
		});
	});
	return groups;
}

// What an "apply" did, and what it said.
function applied(answer) {
	var refused = answer.refused || [], words = (answer.messages || []).slice();

	if (refused.length > 0)
		words.unshift(N_(refused.length, '%d setting was refused.', '%d settings were refused.').format(refused.length));
	else if (answer.status > 0)
		words.unshift(_('Not all was applied.'));
	else if (!(answer.changes > 0))
		words.unshift(_('Nothing had to be changed.'));
	else
		words.unshift(N_(answer.changes, '%d change was applied.', '%d changes were applied.').format(answer.changes));
	return { kind: refused.length > 0 || answer.status > 0 ? 'bad' : 'good', lines: words };
}

// What the doctor found, the worst first.
function findings(answer) {
	var kinds = { fault: [ 'bad', _('fault') ], warning: [ 'busy', _('warning') ], ok: [ 'good', _('in order') ] };

	return Object.keys(kinds).reduce(function(all, state) {
		return all.concat((answer.findings || []).filter(function(finding) {
			return finding.state == state;
		}).map(function(finding) {
			return { kind: kinds[state][0], word: kinds[state][1], subject: finding.subject, text: finding.text };
		}));
	}, []);
}

return baseclass.extend({
	reason: reason,
	follow: follow,
	banners: banners,
	clock: clockOf,
	differenceGroups: differenceGroups,
	applied: applied,
	findings: findings
});
