# Growing a list of access points is the only thing in the library that can throw. Nothing else carries the
# tables that pass an exception on; on the camera they would take a seventh of the library.

target_compile_options(wlan PRIVATE -fno-exceptions -fno-asynchronous-unwind-tables)
set_source_files_properties(
    dispatch/survey_entry_points.cpp
    mtk/survey.cpp
    mtk/survey_list.cpp
    realtek/scan_conversion.cpp
    realtek/survey.cpp
    PROPERTIES COMPILE_OPTIONS "-fexceptions;-fasynchronous-unwind-tables")
