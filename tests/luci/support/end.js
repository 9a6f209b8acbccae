// SPDX-License-Identifier: Apache-2.0
// Runs after a test: says how it ended.

failures.forEach(function(failure) {
	print(failure);
});
if (failures.length > 0 || checks == 0)
	throw new Error(failures.length + ' of ' + checks + ' checks failed');
print(checks + ' checks passed');
