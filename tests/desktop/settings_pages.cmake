# The settings window's pages, with real keys, other programs beside them, and scripts that run.
add_library(settings_pages_support INTERFACE)
target_link_libraries(settings_pages_support INTERFACE settings_window qt_test_support x11_test_support platform_posix)

orvane_add_desktop_test(NAME desktop_settings_pages
  SOURCES
    desktop/settings_pages/CountersPageTest.cpp
    desktop/settings_pages/DroppedFilesTest.cpp
    desktop/settings_pages/FolderContentsTest.cpp
    desktop/settings_pages/GeneralPageTest.cpp
    desktop/settings_pages/HotKeyFieldTest.cpp
    desktop/settings_pages/ScriptPanelTest.cpp
    desktop/settings_pages/ScriptTrialTest.cpp
  LIBRARIES settings_pages_support)
orvane_add_desktop_test(NAME desktop_settings_pages_xfwm4 PROGRAM desktop_settings_pages DESKTOP_ARGUMENTS --wm xfwm4)

orvane_add_desktop_test(NAME desktop_settings_pages_looks
  SOURCES desktop/settings_pages/PagesLooksTest.cpp desktop/qt/LooksSupport.cpp
  LIBRARIES settings_pages_support)
orvane_add_desktop_test(NAME desktop_settings_pages_looks_double PROGRAM desktop_settings_pages_looks
  DESKTOP_ARGUMENTS --size 2560x1600 ENVIRONMENT QT_SCALE_FACTOR=2)

# What is installed for desktops to read.
set(packaged_settings ${CMAKE_BINARY_DIR}/packaging/settings)
find_program(ORVANE_DESKTOP_FILE_VALIDATE desktop-file-validate REQUIRED)
include(${CMAKE_CURRENT_LIST_DIR}/metainfo.cmake)
find_program(ORVANE_MANDOC mandoc REQUIRED)
find_program(ORVANE_UPDATE_MIME_DATABASE update-mime-database REQUIRED)
find_program(ORVANE_GIO gio REQUIRED)
add_test(NAME lint.settings-desktop-file COMMAND ${ORVANE_DESKTOP_FILE_VALIDATE} ${packaged_settings}/org.orvane.Settings.desktop)
orvane_add_metainfo_test(lint.settings-metainfo ${packaged_settings}/org.orvane.Settings.metainfo.xml)
add_test(NAME lint.settings-manual COMMAND ${ORVANE_MANDOC} -Tlint -Wwarning ${CMAKE_SOURCE_DIR}/packaging/man/orvane-settings.1)
add_test(NAME lint.settings-media-types
  COMMAND ${CMAKE_CURRENT_LIST_DIR}/settings_pages/media_types_test.sh ${CMAKE_SOURCE_DIR}/packaging/settings/org.orvane.Settings.xml)
set_tests_properties(lint.settings-desktop-file lint.settings-metainfo lint.settings-manual lint.settings-media-types
  PROPERTIES LABELS lint TIMEOUT 60)

# The translations: up to date with the sources, nothing unfinished, and what the programs load of them.
add_test(NAME lint.translations COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_SOURCE_DIR}/resources/translations/update.py --check)
set_tests_properties(lint.translations PROPERTIES LABELS lint TIMEOUT 60)
orvane_add_desktop_test(NAME desktop_translations SOURCES desktop/settings_pages/TranslationsTest.cpp LIBRARIES qt_test_support
  ENVIRONMENT ORVANE_TEST_BUILT_RESOURCES=${CMAKE_BINARY_DIR}/share/orvane)
add_dependencies(desktop_translations translations)
