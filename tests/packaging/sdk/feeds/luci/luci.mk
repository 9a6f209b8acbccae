# SPDX-License-Identifier: Apache-2.0
# A stand-in for the rules of LuCI's feed: a package is called like its folder, and consists of files.

PKG_NAME := $(notdir $(CURDIR))
PKG_MAINTAINER := $(if $(filter undefined,$(origin LUCI_MAINTAINER)),LuCI,$(LUCI_MAINTAINER))
PKG_URL := $(if $(filter undefined,$(origin LUCI_URL)),LuCI,$(LUCI_URL))

include $(INCLUDE_DIR)/package.mk

define Package/$(PKG_NAME)
  SECTION:=luci
  CATEGORY:=LuCI
  TITLE:=$(LUCI_TITLE)
  DEPENDS:=$(LUCI_DEPENDS)
  URL:=$(PKG_URL)
endef

define Package/$(PKG_NAME)/description
 $(LUCI_TITLE)
endef

define Build/Prepare
	$(INSTALL_DIR) $(PKG_BUILD_DIR)
	$(foreach folder,$(wildcard htdocs root),$(CP) ./$(folder) $(PKG_BUILD_DIR)/;)
endef

define Build/Compile
endef

define Package/$(PKG_NAME)/install
	$(INSTALL_DIR) $(1)/www
	$(if $(wildcard htdocs),$(CP) $(PKG_BUILD_DIR)/htdocs/. $(1)/www/)
	$(if $(wildcard root),$(CP) $(PKG_BUILD_DIR)/root/. $(1)/)
endef

$(eval $(call BuildPackage,$(PKG_NAME)))
