/* SPDX-License-Identifier: Apache-2.0 */
/* Brackets for the public declarations: C linkage, visible outside the library. */
#ifndef FRRUCI_COMMON_C_INTERFACE_H
#define FRRUCI_COMMON_C_INTERFACE_H

#ifdef __cplusplus
#define FRRUCI_EXTERN_C_OPEN extern "C" {
#define FRRUCI_EXTERN_C_CLOSE }
#else
#define FRRUCI_EXTERN_C_OPEN
#define FRRUCI_EXTERN_C_CLOSE
#endif

#define FRRUCI_C_BEGIN FRRUCI_EXTERN_C_OPEN _Pragma("GCC visibility push(default)")
#define FRRUCI_C_END _Pragma("GCC visibility pop") FRRUCI_EXTERN_C_CLOSE

#endif
