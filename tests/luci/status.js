// SPDX-License-Identifier: Apache-2.0
// What the status page says.

var status = require('frruci.status');

same(status.duration(0), '0s');
same(status.duration(59.9), '59s');
same(status.duration(60), '1m');
same(status.duration(75), '1m 15s');
same(status.duration(3600), '1h');
same(status.duration(3661), '1h 1m');
same(status.duration(2 * 86400 + 3 * 3600 + 59), '2d 3h');
same(status.duration(86400 + 59), '1d');
