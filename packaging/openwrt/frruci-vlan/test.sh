#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# test.sh PACKAGE VERSION: run by the packages feed where the package is installed. The modules name no version.

case "$1" in
frruci-vlan)
	lua -e 'print(require("frruci.vlan").answerVlan and "frruci.vlan: loads")' | grep -F "loads"
	;;
esac
