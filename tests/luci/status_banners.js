// SPDX-License-Identifier: Apache-2.0
// What the status page says above everything else.

var banners = require('frruci.status_banners');

function router(daemons, changes) {
	var status = {
		daemons: Object.keys(daemons).map(function(name) {
			return { name: name, state: daemons[name] };
		}),
		protocols: { ospf: { stored: 'on', running: true }, rip: { stored: 'off' }, nhrp: { stored: 'unset' } },
		watch: { running: true }
	};

	Object.keys(changes || {}).forEach(function(key) {
		status[key] = changes[key];
	});
	return status;
}

function said(facts) {
	return banners.banners(facts).map(function(banner) {
		return [ banner.kind, banner.title, banner.text ].concat(banner.buttons);
	});
}

var well = { zebra: 'running', ospfd: 'running', ripd: 'stopped', nhrpd: 'stopped' };

same(said({ status: router(well), diff: { differences: 0 }, now: 0 }), [], 'nothing to say');
same(said({ status: null, now: 0 }), [], 'nothing was read yet');

// Calls that fail
function failed(message) {
	return said({ failures: { rip: message }, now: 0 })[0][2];
}

var missing = 'The router has no object "frruci" on its bus: the plugin of rpcd is missing, or rpcd was not restarted since it came.';
var denied = 'This login may not read it: it lacks the right "luci-app-frruci".';

same(failed('RPC call to frruci/rip failed with ubus code 4: Resource not found\n  at handle (rpc.js:94:7)'), missing);
same(failed('RPC call to frruci/rip failed with ubus code 3: Method not found'), missing);
same(failed('RPC call to frruci/rip failed with error -32000: Object not found'), missing);
same(failed('RPC call to frruci/rip failed with error -32002: Access denied'), denied);
same(failed('RPC call to frruci/rip failed with ubus code 6: Permission denied'), denied);
same(failed('RPC call to frruci/rip failed with ubus code 5: No data received'), 'The plugin of rpcd gave no answer.');
same(failed('RPC call to frruci/rip failed with ubus code 7: Request timeout'), 'The answer did not come in time.');
same(failed('RPC call to frruci/rip failed with HTTP error 502: Bad Gateway'), 'The router said: Bad Gateway.');
same(failed('XHR request aborted by browser\n  at x'), 'The router did not answer: XHR request aborted by browser.');
same(said({ failures: { diff: 'failed with ubus code 4: a', status: 'failed with ubus code 4: b', rip: 'failed with ubus code 7: c' }, clock: '14:02:11', now: 0 }), [
	[ 'bad', 'Not read: the state of the daemons, the difference between stored and running', missing + ' What is shown of it is as of 14:02:11.' ],
	[ 'bad', 'Not read: RIP', 'The answer did not come in time. What is shown of it is as of 14:02:11.' ]
], 'one banner for each reason');

var none = {};

[ 'status', 'neighbors', 'database', 'interfaces', 'rip', 'nhrp_cache' ].forEach(function(method) {
	none[method] = 'XHR request timed out';
});
same(said({ failures: none, now: 0 }), [ [ 'bad', 'Nothing could be read', 'The router did not answer: XHR request timed out.' ] ]);

// Daemons that go and come
function at(time) {
	return banners.clock(time);
}

var start = new Date(2024, 0, 2, 14, 2, 11).getTime() / 1000;

same(at(start), '14:02:11');
same(at(start + 3600 * 12 - 2 * 60), '02:00:11', 'two digits each');

var gone = { zebra: 'running', ospfd: 'stopped', ripd: 'stopped' }, silent = { zebra: 'silent', ospfd: 'running' };
var lost = 'OSPF is switched on: its neighbours and routes are gone until it is back.';
var first = banners.follow(null, router(well).daemons, start), second, third, fourth;

same(first.ospfd, { runs: true, since: null });
same(said({ status: router(gone), followed: banners.follow(null, router(gone).daemons, start), now: start }),
	[ [ 'bad', 'ospfd does not run', lost, 'doctor' ] ], 'it was gone when the page was opened');
second = banners.follow(first, router(gone).daemons, start);
same(said({ status: router(gone), followed: second, now: start }), [ [ 'bad', 'ospfd does not run', lost + ' Seen since 14:02:11.', 'doctor' ] ]);
third = banners.follow(second, router(gone).daemons, start + 3);
same(third.ospfd, { runs: false, since: start }, 'the first look that missed it counts');
fourth = banners.follow(third, router(well).daemons, start + 6);
same(said({ status: router(well), followed: fourth, now: start + 6 }), [ [ 'good', 'ospfd runs again', 'Since 14:02:17.' ] ]);
same(said({ status: router(well), followed: fourth, now: start + 65 }).length, 1);
same(said({ status: router(well), followed: fourth, now: start + 66 }), [], 'told for a minute');
same(said({ status: router(silent), now: 0 }),
	[ [ 'bad', 'zebra does not answer', 'It is there and gives no answer: it hangs or has too much to do.', 'doctor' ] ]);
same(said({ status: router({ zebra: 'stopped', ospfd: 'running' }), now: 0 })[0][2], 'Without it no route reaches the kernel.');
same(said({ status: router({ mgmtd: 'stopped' }), now: 0 })[0][2], 'Without it settings may not reach the other daemons.');
same(said({ status: { daemons: [ { name: 'mgmtd', state: 'stopped' }, { name: 'zebra', state: 'running', version: '8.4.4' } ],
	protocols: { ospf: { stored: 'on' } }, watch: { running: true } }, now: 0 }), [], 'this version does without mgmtd');
same(said({ status: router(gone, { protocols: { ospf: { stored: 'off' } } }), followed: second, now: start }), [], 'switched off, nobody misses it');
[ [ 'rip', 'ripd', 'RIP is switched on: its routes are gone until it is back.' ],
	[ 'nhrp', 'nhrpd', 'NHRP is switched on: its tunnels are gone until it is back.' ] ].forEach(function(row) {
	var protocols = {}, daemons = {};

	protocols[row[0]] = { stored: 'on' };
	daemons[row[1]] = 'stopped';
	same(said({ status: router(daemons, { protocols: protocols }), now: 0 })[0][2], row[2]);
});

// What was refused
var refused = [
	{ protocol: 'ospf', daemon: 'ospfd', context: 'interface eth1.2', command: 'ip ospf cost 70000', answer: '% Unknown command' },
	{ protocol: 'rip', daemon: 'ripd', command: 'x' }
];
var banner = banners.banners({ status: router(well, { applied: { time: 1, changes: 1, refused: refused } }), diff: { differences: 3 }, now: 0 });

same([ banner[0].kind, banner[0].title, banner[0].text ],
	[ 'bad', '2 settings were refused', 'Stored, and not running. In the words of the daemon:' ]);
same(banner[0].refused, [
	{ where: 'ospfd, interface eth1.2', command: 'ip ospf cost 70000', answer: '% Unknown command' },
	{ where: 'ripd', command: 'x', answer: '' }
]);
same(banner.map(function(one) {
	return one.buttons;
}), [ [ 'diff', 'apply' ], [] ], 'each button once');
same(said({ status: router(well, { applied: { refused: refused.slice(1) } }), now: 0 })[0][1], 'A setting was refused');
same(said({ status: router(well, { applied: { refused: refused } }), diff: { differences: 2 }, now: 0 }).length, 1,
	'what was refused is not told again as a difference');

// What differs
same(said({ status: router(well), diff: { differences: 1 }, now: 0 }),
	[ [ 'busy', 'A stored setting does not run', 'What is stored and what the daemons run differ.', 'diff', 'apply' ] ]);
same(said({ status: router(well), diff: { differences: 7 }, now: 0 })[0][1], '7 stored settings do not run');
same(banners.differenceGroups({ lines: [
	{ sign: ' ', daemon: 'ospfd', text: 'interface eth1.2' }, { sign: '-', daemon: 'ospfd', text: 'ip ospf cost 10' },
	{ sign: '+', daemon: 'ripd', text: 'router rip' }
] }), [
	{ daemon: 'ospfd', lines: [ { kind: 'context', text: '  interface eth1.2' }, { kind: 'minus', text: '− ip ospf cost 10' } ] },
	{ daemon: 'ripd', lines: [ { kind: 'plus', text: '+ router rip' } ] }
]);
same(banners.differenceGroups({ differences: 0, lines: [] }), []);

// Nobody watches
same(said({ status: router(well, { watch: { running: false } }), now: 0 }), [ [ 'busy', 'Nobody watches the daemons',
	'frruci watch does not run: a daemon that is started anew comes up without its settings, and saved settings are not applied.', 'doctor' ] ]);
same(said({ status: router(well, { watch: { running: false }, protocols: {} }), now: 0 }), [], 'there is nothing to watch');

// What "apply" did
same(banners.applied({ changes: 2, refused: [], status: 0 }), { kind: 'good', lines: [ '2 changes were applied.' ] });
same(banners.applied({ changes: 1, refused: [], status: 0 }), { kind: 'good', lines: [ '1 change was applied.' ] });
same(banners.applied({ changes: 0, refused: [], status: 0 }), { kind: 'good', lines: [ 'Nothing had to be changed.' ] });
same(banners.applied({ changes: 2, refused: refused, status: 1 }), { kind: 'bad', lines: [ '2 settings were refused.' ] });
same(banners.applied({ changes: 0, refused: [], status: 3, messages: [ 'ospfd: no answer', 'given up' ] }),
	{ kind: 'bad', lines: [ 'Not all was applied.', 'ospfd: no answer', 'given up' ] });

// The doctor
same(banners.findings({ findings: [
	{ state: 'ok', subject: 'zebra', text: 'answers' }, { state: 'warning', subject: 'watchfrr', text: 'restarts' },
	{ state: 'fault', subject: 'ospfd', text: 'is gone' }, { state: 'ok', subject: 'ripd', text: 'answers' }
] }), [
	{ kind: 'bad', word: 'fault', subject: 'ospfd', text: 'is gone' }, { kind: 'busy', word: 'warning', subject: 'watchfrr', text: 'restarts' },
	{ kind: 'good', word: 'in order', subject: 'zebra', text: 'answers' }, { kind: 'good', word: 'in order', subject: 'ripd', text: 'answers' }
]);
