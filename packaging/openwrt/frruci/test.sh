#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# test.sh PACKAGE VERSION: run by the packages feed where the package is installed.

case "$1" in
libfrruci)
	ls -l /usr/lib/libfrruci.so
	;;
frruci)
	frruci --version | grep -Fx "frruci $2"
	;;
esac
