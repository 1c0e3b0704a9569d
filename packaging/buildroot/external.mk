include $(sort $(wildcard $(BR2_EXTERNAL_LIBWLAN_PATH)/package/*/*.mk))
