// SPDX-License-Identifier: Apache-2.0
// The menu: each entry leads to a view that exists, and is shown to whoever has the access group that exists.
// Reads luci/luci-app-frruci/root/usr/share/luci/menu.d/luci-app-frruci.json
// Reads luci/luci-app-frruci/root/usr/share/rpcd/acl.d/luci-app-frruci.json

function json(folder) {
	return JSON.parse(texts['luci/luci-app-frruci/root/usr/share/' + folder + '/luci-app-frruci.json']);
}

var menu = json('luci/menu.d');
var groups = json('rpcd/acl.d');
var paths = Object.keys(menu);
var views = paths.filter(function(path) { return menu[path].action.type == 'view'; });

same(views.map(function(path) { return menu[path].action.path; }),
     [ 'frruci/status', 'frruci/ospf', 'frruci/rip', 'frruci/nhrp' ]);
views.forEach(function(path) {
	holds(modules['view.' + menu[path].action.path.replace('/', '.')], path + ': view');
	holds(menu[path.replace(/\/[^\/]*$/, '')], path + ': parent');
});
paths.forEach(function(path) {
	holds(menu[path].title && menu[path].order, path + ': title and place');
	menu[path].depends.acl.forEach(function(group) { holds(groups[group], path + ': ' + group); });
});
same(paths.filter(function(path) { return menu[path].action.type == 'firstchild'; }).length, 1);
