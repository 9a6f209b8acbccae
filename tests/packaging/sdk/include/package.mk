# SPDX-License-Identifier: Apache-2.0

PKG_BUILD_DIR := $(SDK_WORK)/build/$(PKG_NAME)-$(PKG_VERSION)
PKG_INSTALL_DIR := $(PKG_BUILD_DIR)/ipkg-install

define Build/Patch
endef

# BuildPackage NAME: what the package installs goes to root/NAME, its head to NAME.control, and what runs before its
# removal to NAME.prerm.
define BuildPackage
$(eval $(Package/$(1)))
$(if $(TITLE),,$(error Package/$(1) has no title))
$(if $(Package/$(1)/description),,$(error Package/$(1) has no description))

install-$(1): build
	rm -rf $(SDK_WORK)/root/$(1)
	$$(call Package/$(1)/install,$(SDK_WORK)/root/$(1))
	echo "$(SECTION) | $(CATEGORY) | $(TITLE) | $(DEPENDS)" > $(SDK_WORK)/$(1).control
	echo "by $(PKG_MAINTAINER) | $(PKG_VERSION)-r$(PKG_RELEASE) | $(PKG_LICENSE) | $(PKG_LICENSE_FILES) | $(URL)" \
		>> $(SDK_WORK)/$(1).control
	printf '%s\n' $(strip $(Package/$(1)/conffiles)) >> $(SDK_WORK)/$(1).control
	$$(file >$(SDK_WORK)/$(1).prerm,$$(Package/$(1)/prerm))
packages: install-$(1)
endef

.DEFAULT_GOAL := packages

prepare:
	rm -rf $(PKG_BUILD_DIR)
	$(Build/Prepare)

# As the SDK does it: an install prefix below the build folder, a folder that the headers are taken from.
define CompileWithCMake
cmake -G Ninja -S $(PKG_BUILD_DIR) -B $(PKG_BUILD_DIR)/build -DCMAKE_INSTALL_PREFIX=/usr $(CMAKE_OPTIONS)
cmake --build $(PKG_BUILD_DIR)/build
DESTDIR=$(PKG_INSTALL_DIR) cmake --install $(PKG_BUILD_DIR)/build
rm -rf $(SDK_WORK)/dev
$(call Build/InstallDev,$(SDK_WORK)/dev)
endef

build: prepare
	$(if $(filter undefined,$(origin Build/Compile)),$(CompileWithCMake),$(Build/Compile))

.PHONY: packages prepare build
