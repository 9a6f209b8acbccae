/* SPDX-License-Identifier: Apache-2.0 */
/* The one container of the system: a doubly linked list of the caller's pointers, with an optional
 * order.
 *
 * The list owns its nodes. The data belong to the caller, unless the list has a data_destroy, which
 * then gets the data of every node that dlistDelete takes out. Nothing here locks; whoever shares a
 * list guards it.
 *
 * Misuse is answered by a status code and one line on standard output, which begins with the
 * function's name and a fixed number ("dlistAppend:349 thiz != NULL failed.", ended by CR LF). Only
 * dlistDestroy ends the process on a null list. */
#ifndef FRRUCI_COMMON_DLIST_H
#define FRRUCI_COMMON_DLIST_H

#include <stdint.h>

#include "c_interface.h"

FRRUCI_C_BEGIN

typedef struct dlist_node {  /* 24 bytes */
    struct dlist_node *prev; /* null at the head */
    struct dlist_node *next; /* null at the tail */
    void *data;              /* the caller's pointer, never null in nodes made here */
} dlist_node;

/* Releases the data of a deleted node. */
typedef void (*dlist_destroy_fn)(void *data);

/* Orders two data: negative when a must come before b; zero or positive otherwise. */
typedef int32_t (*dlist_cmp_fn)(void *a, void *b);

/* Compares a key, always the first argument, with a node's data: 0 when they match. */
typedef int32_t (*dlist_keycmp_fn)(void *key, void *data);

/* Is shown one node's data; 2 stops the walk. Must not delete the node that it is shown,
 * unless it stops the walk. */
typedef int32_t (*dlist_visit_fn)(void *ctx, void *data);

typedef struct dlist {             /* 40 bytes */
    dlist_node *head;              /* null while empty */
    dlist_node *tail;              /* null while empty */
    uint64_t count;                /* nodes */
    dlist_destroy_fn data_destroy; /* may be null: deleted data stay the caller's */
    dlist_cmp_fn data_cmp;         /* may be null; used by dlistAddSort only */
} dlist;

/* Makes an empty list; both functions may be null. The list record comes from malloc.
 * Result: the list, which the caller holds for good (see dlistDestroy); null when memory is
 * exhausted. */
dlist *dlistCreate(dlist_destroy_fn data_destroy, dlist_cmp_fn data_cmp);

/* Finds the first node whose data pointer is data itself.
 * Result: the node, still the list's; null when there is none or an argument is null. */
dlist_node *dlistFindByData(dlist *list, void *data);

/* Finds the first node for which keycmp(key, its data) is 0.
 * Result: the node, still the list's; null when there is none or an argument is null. */
dlist_node *dlistFindByKey(dlist *list, dlist_keycmp_fn keycmp, void *key);

/* Result: the first node; null when the list is empty or null. */
dlist_node *dlistHead(dlist *list);

/* Result: the last node; null when the list is empty or null. */
dlist_node *dlistTail(dlist *list);

/* Adds data before the first node whose data it must precede by the list's data_cmp, so after all
 * equal ones; at the tail when there is no such node or the list has no data_cmp.
 * Result: 0 added; 1 memory is exhausted; 3 list or data is null. */
int32_t dlistAddSort(dlist *list, void *data);

/* Adds data after node, which must be the list's own; at the head when node is null.
 * Result: 0 added; 1 memory is exhausted; 3 list or data is null. */
int32_t dlistInsertAfter(dlist *list, dlist_node *node, void *data);

/* Adds data at the head, as dlistInsertAfter with a null node, under whose name it also reports.
 * Result: 0 added; 1 memory is exhausted; 3 list or data is null. */
int32_t dlistPrepend(dlist *list, void *data);

/* Adds data at the tail, as dlistInsertAfter after the tail, under whose name it reports all but a
 * null list.
 * Result: 0 added; 1 memory is exhausted; 3 list or data is null. */
int32_t dlistAppend(dlist *list, void *data);

/* Takes node, which must be the list's own, out of the list, hands its data to data_destroy where
 * the list has one, releases the node and counts down, in this order. A null node is no mistake:
 * nothing is done.
 * Result: 0; 3 list is null. */
int32_t dlistDelete(dlist *list, dlist_node *node);

/* Sorts the list by cmp; equal data keep their order. Nodes stay the same records. The list's own
 * data_cmp is neither used nor changed. The time grows with the square of the length.
 * Result: 0; 3 list or cmp is null. */
int32_t dlistSort(dlist *list, dlist_cmp_fn cmp);

/* Result: the number of nodes; 0 when list is null. */
uint64_t dlistLength(dlist *list);

/* Shows the data of every node to visit(ctx, data), from the head, until a call returns 2.
 * Result: that of the last call; 0 when there was none; 3 list or visit is null. */
int32_t dlistVisit(dlist *list, dlist_visit_fn visit, void *ctx);

/* Releases nothing: nodes, data and list record stay as they are. A null list ends the process. */
void dlistDestroy(dlist *list);

FRRUCI_C_END

#endif
