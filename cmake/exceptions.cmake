# Growing a list of access points can throw, and so can the firmware's store; both reach the program. Nothing else
# carries the tables that pass an exception on: they would take 5 KiB more on the camera.

target_compile_options(wlan PRIVATE -fno-exceptions -fno-asynchronous-unwind-tables)
set_source_files_properties(
    dispatch/access_point_services.cpp
    dispatch/mode_entry_points.cpp
    dispatch/mtk_requests.cpp
    dispatch/realtek_requests.cpp
    dispatch/stored_settings.cpp
    dispatch/survey_entry_points.cpp
    mtk/modes.cpp
    mtk/settings.cpp
    mtk/survey.cpp
    mtk/survey_list.cpp
    mtk/wps_commit.cpp
    mtk/wps_session.cpp
    realtek/hostapd_config.cpp
    realtek/modes.cpp
    realtek/scan_conversion.cpp
    realtek/survey.cpp
    realtek/wpa_supplicant_config.cpp
    PROPERTIES COMPILE_OPTIONS "-fexceptions;-fasynchronous-unwind-tables")
