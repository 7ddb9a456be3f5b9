# The adapters on the session bus, driven through a small program made of them, on a desktop of its own.
add_executable(qtdbus_probe ${CMAKE_CURRENT_LIST_DIR}/qtdbus/probe.cpp)
target_compile_definitions(qtdbus_probe PRIVATE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII)
target_link_libraries(qtdbus_probe PRIVATE platform_xembed)

# orvane_add_qtdbus_test(NAME SCRIPT DESKTOP_ARGUMENT... [-- SCRIPT_ARGUMENT...])
set(qtdbus_tests ${CMAKE_CURRENT_LIST_DIR}/qtdbus)
set(with_desktop ${CMAKE_CURRENT_LIST_DIR}/../tools/with-desktop.sh)
function(orvane_add_qtdbus_test name script)
  set(desktop_arguments ${ARGN})
  set(script_arguments "")
  list(FIND ARGN "--" at)
  if(at GREATER_EQUAL 0)
    list(SUBLIST ARGN 0 ${at} desktop_arguments)
    math(EXPR from "${at} + 1")
    list(SUBLIST ARGN ${from} -1 script_arguments)
  endif()
  # Debian's Python, the one that has the bindings of GLib.
  add_test(NAME ${name}
    COMMAND ${with_desktop} ${desktop_arguments} -- /usr/bin/python3 -B ${qtdbus_tests}/${script} ${script_arguments})
  set_tests_properties(${name} PROPERTIES LABELS desktop TIMEOUT 300 ENVIRONMENT
    "ORVANE_TEST_PROBE=$<TARGET_FILE:qtdbus_probe>;ORVANE_TEST_RESOURCES=${CMAKE_SOURCE_DIR}/resources;ORVANE_TEST_SCREENSHOTS=${CMAKE_BINARY_DIR}/screenshots")
endfunction()

orvane_add_qtdbus_test(desktop_qtdbus_status_item test_status_item.py --wm none)
orvane_add_qtdbus_test(desktop_qtdbus_panel test_tray_hosts.py --tray xfce4-panel --size 800x600 -- --host=panel)
orvane_add_qtdbus_test(desktop_qtdbus_xembed test_tray_hosts.py --size 800x600)
orvane_add_qtdbus_test(desktop_qtdbus_session test_session.py --wm none)
orvane_add_qtdbus_test(desktop_qtdbus_no_bus test_session.py --wm none --no-bus -- --no-bus)
orvane_add_qtdbus_test(desktop_qtdbus_services test_services.py --wm none)
orvane_add_qtdbus_test(desktop_qtdbus_notice test_notice.py --wm none)
orvane_add_qtdbus_test(desktop_qtdbus_workspace test_workspace.py --wm none)

# What is installed for desktops to read.
set(packaged ${CMAKE_BINARY_DIR}/packaging/helper)
find_program(ORVANE_DESKTOP_FILE_VALIDATE desktop-file-validate REQUIRED)
include(${CMAKE_CURRENT_LIST_DIR}/metainfo.cmake)
find_program(ORVANE_MANDOC mandoc REQUIRED)
add_test(NAME lint.helper-desktop-file COMMAND ${ORVANE_DESKTOP_FILE_VALIDATE} ${packaged}/org.orvane.Helper.desktop)
add_test(NAME lint.helper-autostart-file COMMAND ${ORVANE_DESKTOP_FILE_VALIDATE} ${packaged}/autostart/org.orvane.Helper.desktop)
orvane_add_metainfo_test(lint.helper-metainfo ${packaged}/org.orvane.Helper.metainfo.xml)
add_test(NAME lint.helper-manual COMMAND ${ORVANE_MANDOC} -Tlint -Wwarning ${CMAKE_SOURCE_DIR}/packaging/man/orvane-helper.1)
set_tests_properties(lint.helper-desktop-file lint.helper-autostart-file lint.helper-metainfo lint.helper-manual
  PROPERTIES LABELS lint TIMEOUT 60)
