/* SPDX-License-Identifier: Apache-2.0 */
/* The generic doubly linked list of the system. */
#ifndef FRRUCI_COMMON_DLIST_H
#define FRRUCI_COMMON_DLIST_H

#include <stdint.h>

#include "c_interface.h"

FRRUCI_C_BEGIN

/* ---- sorted doubly linked list ---- */
typedef struct dlist_node {
    struct dlist_node *prev; /* null at the head */
    struct dlist_node *next; /* null at the tail */
    void *data;              /* the caller's pointer */
} dlist_node;

typedef void (*dlist_destroy_fn)(void *data);
typedef int32_t (*dlist_cmp_fn)(void *a, void *b);         /* negative: a before b */
typedef int32_t (*dlist_keycmp_fn)(void *key, void *data); /* 0: data matches key */
typedef int32_t (*dlist_visit_fn)(void *ctx, void *data);  /* 2 stops the walk */

typedef struct dlist {
    dlist_node *head;
    dlist_node *tail;
    uint64_t count;
    dlist_destroy_fn data_destroy; /* may be null */
    dlist_cmp_fn data_cmp;         /* may be null; used by dlistAddSort only */
} dlist;

/* status codes: 0 success, 1 out of memory, 3 invalid argument */
dlist *dlistCreate(dlist_destroy_fn data_destroy, dlist_cmp_fn data_cmp);
dlist_node *dlistFindByData(dlist *list, void *data);
dlist_node *dlistFindByKey(dlist *list, dlist_keycmp_fn keycmp, void *key);
dlist_node *dlistHead(dlist *list);
dlist_node *dlistTail(dlist *list);
int32_t dlistAddSort(dlist *list, void *data);
int32_t dlistInsertAfter(dlist *list, dlist_node *node, void *data);
int32_t dlistPrepend(dlist *list, void *data);
int32_t dlistAppend(dlist *list, void *data);
int32_t dlistDelete(dlist *list, dlist_node *node);
int32_t dlistSort(dlist *list, dlist_cmp_fn cmp);
uint64_t dlistLength(dlist *list);
int32_t dlistVisit(dlist *list, dlist_visit_fn visit, void *ctx);
void dlistDestroy(dlist *list); /* releases nothing */

FRRUCI_C_END

#endif
