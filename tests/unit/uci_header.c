/* SPDX-License-Identifier: Apache-2.0 */
/* The store's header is plain C too. */

#include <uci.h>

_Static_assert(sizeof(struct uci_ptr) == 72, "as in C++");
_Static_assert(offsetof(struct uci_option, v) == 48, "as in C++");
_Static_assert(UCI_ERR_LAST == 8 && UCI_ERR_DUPLICATE == 6 && UCI_TYPE_HOOK == 8, "fixed codes");
