// SPDX-License-Identifier: Apache-2.0
// What the status page says: words and classes, from what the router answers.

'use strict';
'require baseclass';

// The two largest units that are not nothing: "2d 3h", "1m 15s".
function duration(seconds) {
	var units = [
		[ Math.floor(seconds / 86400), 'd' ],
		[ Math.floor(seconds / 3600) % 24, 'h' ],
		[ Math.floor(seconds / 60) % 60, 'm' ],
		[ Math.floor(seconds) % 60, 's' ]
	];
	var first = 0;

	while (first < 3 && units[first][0] == 0)
		first++;
	return units.slice(first, first + 2).filter(function(unit, position) {
		return position == 0 || unit[0] > 0;
	}).map(function(unit) {
		return unit.join('');
	}).join(' ');
}

return baseclass.extend({
	duration: duration
});
