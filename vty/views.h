/* SPDX-License-Identifier: Apache-2.0 */
/* Views: named command contexts with placeholders; start-up of the view registry. */
#ifndef FRRUCI_VTY_VIEWS_H
#define FRRUCI_VTY_VIEWS_H

#include <stdint.h>

#include "../common/c_interface.h"
#include "../common/dlist.h"

FRRUCI_C_BEGIN

/* ---- views and command templates ---- */
typedef struct FrrVtyView { /* a record of the view registry, 40 bytes */
    char name[32];          /* at most 31 characters and a NUL */
    char *entry_text;       /* the record's own copy */
} FrrVtyView;

typedef struct FrrVtyParam { /* a record of a parameter list, 64 bytes */
    char key[32];            /* at most 31 characters and a NUL */
    char value[32];
} FrrVtyParam;

extern dlist *gPreCmdEntryList; /* the registry, in order of registration; made by frrVtyInit */

int32_t frrVtyViewReg(const char *name, const char *entry_text);
int32_t frrVtyViewUnreg(const char *name);

/* holder: the address of the caller's list pointer, null while there is no list */
int32_t frrVtyParamInit(dlist **holder);
int32_t frrVtyParamFini(dlist **holder);
int32_t frrVtyParamStrSet(dlist **holder, const char *key, const char *value);
int32_t frrVtyParamIntSet(dlist **holder, const char *key, int32_t number);
int32_t frrVtyParamGet(dlist **holder, const char *key,
                       char *out); /* takes the parameter out; writes no NUL */

int32_t frrVtyFPreCmdParse(const char *view_name, dlist **holder, int32_t max_len,
                           char *out); /* out zero-filled */
int32_t frrVtyAutoRun(const char *view_name, const char *socket_path, const char *cmd,
                      dlist **holder, int32_t reply_size,
                      char *reply); /* always finishes the holder's list */

int32_t frr_process_init(void);
int32_t frrVtyInit(void);

FRRUCI_C_END

#endif
