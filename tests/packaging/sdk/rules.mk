# SPDX-License-Identifier: Apache-2.0
# A stand-in for the rules of OpenWrt's SDK, for reading and trying a package Makefile. SDK_WORK is its folder.

INCLUDE_DIR := $(TOPDIR)/include
STAGING_DIR := $(SDK_WORK)/staging
INSTALL_DIR := install -d -m0755
INSTALL_BIN := install -m0755
INSTALL_DATA := install -m0644
INSTALL_CONF := install -m0600
CP := cp -fpR
