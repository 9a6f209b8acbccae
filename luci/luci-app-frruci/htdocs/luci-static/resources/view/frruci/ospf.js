// SPDX-License-Identifier: Apache-2.0

'use strict';
'require view';
'require frruci.fields as fields';
'require frruci.page as page';

return view.extend(page.viewOf(fields.ospf));
