/* SPDX-License-Identifier: Apache-2.0 */
/* Views: named command contexts with placeholders.
 *
 * A view is the list of commands, one a line, that lead from a fresh session into a context of a
 * daemon, for example "enable\nconfigure\ninterface eth1.<vid>". A name in angle brackets is a
 * placeholder; a parameter list fills it. The usual course: frrVtyParamInit, one frrVtyParamStrSet
 * or frrVtyParamIntSet for each placeholder, then frrVtyAutoRun, which takes the list over. Where a
 * set fails the caller ends the list with frrVtyParamFini and gives up.
 *
 * Names and keys are compared exactly and hold at most 31 characters. The registry is written at
 * start and only read afterwards; nothing here locks. */
#ifndef FRRUCI_VTY_VIEWS_H
#define FRRUCI_VTY_VIEWS_H

#include <stdint.h>

#include "../common/c_interface.h"
#include "../common/dlist.h"

FRRUCI_C_BEGIN

typedef struct FrrVtyView { /* a record of the view registry, 40 bytes */
    char name[32];          /* at most 31 characters and a NUL */
    char *entry_text;       /* the record's own copy */
} FrrVtyView;

typedef struct FrrVtyParam { /* a record of a parameter list, 64 bytes */
    char key[32];            /* at most 31 characters and a NUL */
    char value[32];          /* the same; numbers are kept as their decimal text */
} FrrVtyParam;

/* The view registry, in order of registration; null until frrVtyInit makes it. It owns its records
 * and releases them with free. */
extern dlist *gPreCmdEntryList;

/* Registers a view under name; both texts are copied, entry_text in full (although only its first
 * 254 characters are ever expanded).
 * Result: 0 registered; 1 an argument is null, name is longer than 31 characters (such a view could
 * never be found again), or the name is taken, whose view then stays as it is; 4 memory is
 * exhausted and nothing is registered. */
int32_t frrVtyViewReg(const char *name, const char *entry_text);

/* Takes a view out of the registry and releases it.
 * Result: 0 gone; 1 name is null, longer than 254 characters, or not registered. */
int32_t frrVtyViewUnreg(const char *name);

/* In all parameter functions holder is the address of the caller's list pointer, which is null
 * while there is no list. */

/* Makes an empty parameter list and stores it in *holder; a list that is there already is not
 * looked at.
 * Result: 0 made; 1 holder is null; 4 memory is exhausted, *holder is null then. */
int32_t frrVtyParamInit(dlist **holder);

/* Ends the list with dlistDestroy, which keeps its memory, and sets *holder to null.
 * Result: 0 ended, or there was no list; 1 holder is null. */
int32_t frrVtyParamFini(dlist **holder);

/* Adds the parameter key with a text of at most 31 characters; both are copied.
 * Result: the length of value, 0 for an empty one; -1 holder null or without a list, key or value
 * null or longer than 31 characters, key present already, or memory exhausted. */
int32_t frrVtyParamStrSet(dlist **holder, const char *key, const char *value);

/* Adds the parameter key with the decimal text of number.
 * Result: the length of that text; -1 holder null or without a list, key null or longer than 31
 * characters, key present already, or memory exhausted. */
int32_t frrVtyParamIntSet(dlist **holder, const char *key, int32_t number);

/* Takes a parameter out of the list, so that each serves once: copies the characters of its value,
 * at most 31 and no NUL, to out and deletes the record. Logs key and the text that then stands in
 * out, whatever follows the value included: the caller zero-fills out, which holds 32 bytes.
 * Result: the length of the value; -1 holder null or without a list, key or out null, key not
 * present, or the record could not be deleted. */
int32_t frrVtyParamGet(dlist **holder, const char *key, char *out);

/* Expands the entry text of a view into out: at most max_len characters and no NUL, so out is
 * zero-filled by the caller and holds max_len + 1. Each placeholder takes its parameter out of the
 * list; a placeholder that stands there twice therefore fails. Logs the view and its entry text.
 * holder may be null for a view without placeholders.
 * Result: 0 expanded, also when the text was cut at max_len; 1 view_name or out is null, the view
 * is not registered or its name is longer than 31 characters, a closing bracket stands outside a
 * placeholder or an opening one inside, a placeholder's name is longer than 31 characters, or its
 * parameter is missing or empty. */
int32_t frrVtyFPreCmdParse(const char *view_name, dlist **holder, int32_t max_len, char *out);

/* Connects to the daemon at socket_path, expands the view and sends its commands in order and then
 * cmd, each with frrVtyRun and only after the one before it succeeded. reply: the caller's buffer
 * of reply_size bytes (512 by convention), zeroed. holder may be null. The list is finished in
 * every case and must not be used afterwards. The session is closed after success only: after a
 * failed expansion or command its descriptor stays open.
 * Result: 0 success; 1 view_name, socket_path, cmd or reply is null, no connection, or the
 * expansion failed; else the first result of frrVtyRun that is not 0. */
int32_t frrVtyAutoRun(const char *view_name, const char *socket_path, const char *cmd,
                      dlist **holder, int32_t reply_size, char *reply);

FRRUCI_C_END

#endif
