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
LIBWLAN_CONF_OPTS = -DLIBWLAN_SIM=OFF -DLIBWLAN_EXAMPLES=OFF -DBUILD_TESTING=OFF

LIBWLAN_STORE = $(call qstrip,$(BR2_PACKAGE_LIBWLAN_STORE))
ifeq ($(LIBWLAN_STORE),)
LIBWLAN_DEPENDENCIES += inih
else
LIBWLAN_CONF_OPTS += -DLIBWLAN_STORE=$(LIBWLAN_STORE)
endif

ifeq ($(BR2_PACKAGE_LIBWLAN_WLANCTL),y)
LIBWLAN_CONF_OPTS += -DLIBWLAN_TOOLS=ON
LIBWLAN_DEPENDENCIES += cli11
else
LIBWLAN_CONF_OPTS += -DLIBWLAN_TOOLS=OFF
endif

ifeq ($(BR2_PACKAGE_LIBWLAN_WLANSETUP),y)
LIBWLAN_CONF_OPTS += -DLIBWLAN_REQUEST=ON -DLIBWLAN_SETUP=ON
LIBWLAN_DEPENDENCIES += libmicrohttpd json-for-modern-cpp

define LIBWLAN_INSTALL_INIT_SYSV
	$(INSTALL) -D -m 0755 $(@D)/tools/wlansetup/service/S90wlansetup \
		$(TARGET_DIR)/etc/init.d/S90wlansetup
endef
else
LIBWLAN_CONF_OPTS += -DLIBWLAN_SETUP=OFF
endif

$(eval $(cmake-package))
