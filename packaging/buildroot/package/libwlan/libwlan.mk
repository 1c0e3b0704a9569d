################################################################################
#
# libwlan
#
################################################################################

LIBWLAN_SITE = $(BR2_EXTERNAL_LIBWLAN_PATH)/../..
LIBWLAN_SITE_METHOD = local
LIBWLAN_OVERRIDE_SRCDIR_RSYNC_EXCLUSIONS = --exclude build
LIBWLAN_LICENSE = MIT
LIBWLAN_LICENSE_FILES = LICENSE
LIBWLAN_INSTALL_STAGING = YES
LIBWLAN_CONF_OPTS = -DLIBWLAN_SIM=OFF -DLIBWLAN_TESTS=OFF -DLIBWLAN_WERROR=OFF

LIBWLAN_STORE = $(call qstrip,$(BR2_PACKAGE_LIBWLAN_STORE))
ifeq ($(LIBWLAN_STORE),)
LIBWLAN_DEPENDENCIES += inih
else
LIBWLAN_CONF_OPTS += -DLIBWLAN_STORE=$(LIBWLAN_STORE)
endif

ifeq ($(BR2_PACKAGE_LIBWLAN_WLANCTL),y)
LIBWLAN_CONF_OPTS += -DLIBWLAN_TOOLS=ON
LIBWLAN_DEPENDENCIES += cli11 json-for-modern-cpp
else
LIBWLAN_CONF_OPTS += -DLIBWLAN_TOOLS=OFF
endif

$(eval $(cmake-package))
