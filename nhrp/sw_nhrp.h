/* SPDX-License-Identifier: Apache-2.0 */
/* NHRP show, the start of nhrpd, and the NHRP settings in the store.
 *
 * The settings live in the UCI file /etc/config/nhrp, in one section, "sdwan", which must exist: a
 * write into a section that is not there fails and changes nothing. A setting that is off is stored
 * as "0". Option "interface" names the tunnel interface that NHRP runs on. */
#ifndef FRRUCI_NHRP_SW_NHRP_H
#define FRRUCI_NHRP_SW_NHRP_H

#include <stdint.h>

#include "../common/c_interface.h"

FRRUCI_C_BEGIN

/* Sends "show ip nhrp cache json" to nhrpd and streams the answer into
 * /tmp/tmp/nhrp_pipe_c2lua_cache (frrVtyNhrpPrint tells how).
 * vrf: ignored. what: "cache"; with anything else, null included, an empty command line is sent
 * instead and its answer streamed.
 * Result: 0 success; 1 no connection, or an exchange failed. */
uint32_t swNhrpShow(uint16_t vrf, const char *what);

/* Starts zebra when none runs (zebra_enable), then, when no nhrpd runs, runs the shell command
 * "nhrp -d".
 * Result: the number of running nhrpd processes when there is one; else the shell's status of the
 * start command (0: started). */
int32_t nhrp_enable(void);

/* Records the tunnel interface of NHRP in option "interface".
 * ifname: the interface's name. flag: non-zero records ifname unless the option is there already,
 * whatever its value; 0 writes "0" (ifname is ignored).
 * Result: 0 written, or nothing to do; 2 ifname is needed and null, or no such section; else
 * libuci's code of the failed write (3 no such file, 4 file or folder not writable, ...). */
int32_t nhrp_set_interface(const char *ifname, int32_t flag);

/* Stores one setting of a tunnel interface.
 * section: "sdwan". option: the setting's name. enable: non-zero records the interface as
 * nhrp_set_interface(ifname, 1) does, whose result does not count, and stores value; 0 stores "0"
 * (ifname and value are ignored).
 * Result: 0 written; 2 a text that is needed is null, or no such section; else libuci's code of the
 * failed write. */
int32_t nhrp_set_interface_config(const char *section, const char *option, const char *ifname,
                                  const char *value, int32_t enable);

/* Stores one global setting; option "interface" is left alone.
 * section: "sdwan". option: the setting's name. enable: non-zero stores value; 0 stores "0" (value
 * is ignored).
 * Result: 0 written; 2 a text that is needed is null, or no such section; else libuci's code of the
 * failed write. */
int32_t nhrp_set_enable_config(const char *section, const char *option, const char *value,
                               int32_t enable);

FRRUCI_C_END

#endif
