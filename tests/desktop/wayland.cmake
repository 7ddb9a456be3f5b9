# The adapters on Wayland, on real compositors without a screen. The tests on one that is not installed, or does not start here, are
# not registered.
set(orvane_wayland_tests ${CMAKE_CURRENT_LIST_DIR})

# Sets the variable ORVANE_<NAME>_STARTS. What has started once is not tried again.
function(orvane_try_compositor name)
  string(TOUPPER ${name} upper)
  if(ORVANE_${upper}_STARTS)
    return()
  endif()
  execute_process(COMMAND ${orvane_wayland_tests}/../tools/with-${name}.sh -- true
    TIMEOUT 60 RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE why)
  if(status STREQUAL "0")
    set(ORVANE_${upper}_STARTS ON CACHE INTERNAL "tests on ${name} can run")
  else()
    string(STRIP "${why}" why)
    string(REGEX REPLACE "^.*\n" "" why "${why}")
    message(STATUS "No tests on ${name}: ${why}")
    set(ORVANE_${upper}_STARTS OFF PARENT_SCOPE)
  endif()
endfunction()
orvane_try_compositor(sway)
orvane_try_compositor(kwin)
orvane_try_compositor(gnome)
orvane_try_compositor(weston)

# orvane_add_compositor_test(NAME name TOOL script PROGRAM target [ARGUMENTS argument...] [ENVIRONMENT NAME=VALUE...])
function(orvane_add_compositor_test)
  cmake_parse_arguments(TEST "" "NAME;TOOL;PROGRAM" "ARGUMENTS;ENVIRONMENT" ${ARGN})
  add_test(NAME ${TEST_NAME}
    COMMAND ${orvane_wayland_tests}/../tools/${TEST_TOOL} ${TEST_ARGUMENTS} -- $<TARGET_FILE:${TEST_PROGRAM}>)
  set_tests_properties(${TEST_NAME} PROPERTIES LABELS desktop TIMEOUT 300 ENVIRONMENT
    "ORVANE_TEST_SCREENSHOTS=${PROJECT_BINARY_DIR}/screenshots;${TEST_ENVIRONMENT}")
endfunction()

pkg_check_modules(ORVANE_WAYLAND_TESTS IMPORTED_TARGET wayland-client>=1.20 xkbcommon)
if(TARGET PkgConfig::ORVANE_WAYLAND_TESTS)
  add_library(wayland_test_support STATIC
    ${orvane_wayland_tests}/wayland/WaylandDesk.cpp
    ${orvane_wayland_tests}/wayland/WaylandInput.cpp)
  target_link_libraries(wayland_test_support PUBLIC fakes platform_wayland GTest::gtest PkgConfig::ORVANE_WAYLAND_TESTS)

  foreach(test IN ITEMS Chooser LayerShell TwoOutputs)
    string(TOLOWER ${test} name)
    add_executable(desktop_wayland_${name} ${orvane_wayland_tests}/wayland/${test}PopUpMenusTest.cpp)
    target_link_libraries(desktop_wayland_${name} PRIVATE wayland_test_support)
  endforeach()
  add_executable(desktop_wayland_sway
    ${orvane_wayland_tests}/wayland/SwayActiveApplicationTest.cpp
    ${orvane_wayland_tests}/wayland/SwayHotKeysTest.cpp)
  target_link_libraries(desktop_wayland_sway PRIVATE wayland_test_support)

  add_executable(desktop_wayland_kwin ${orvane_wayland_tests}/wayland/KWinTest.cpp)
  target_link_libraries(desktop_wayland_kwin PRIVATE wayland_test_support)
  add_executable(desktop_wayland_layouts ${orvane_wayland_tests}/wayland/LayoutsTest.cpp)
  target_link_libraries(desktop_wayland_layouts PRIVATE wayland_test_support)
  add_executable(desktop_wayland_services ${orvane_wayland_tests}/wayland/HotKeyServicesTest.cpp)
  target_link_libraries(desktop_wayland_services PRIVATE wayland_test_support)

  add_executable(desktop_wayland_portal ${orvane_wayland_tests}/wayland/RealPortalTest.cpp)
  target_link_libraries(desktop_wayland_portal PRIVATE wayland_test_support)

  # Only a bus and any display.
  orvane_add_compositor_test(NAME desktop_wayland_services TOOL with-desktop.sh PROGRAM desktop_wayland_services ARGUMENTS --wm none
    ENVIRONMENT ORVANE_TEST_MOCK_SERVICES=${orvane_wayland_tests}/wayland/mock_services.py)
  if(ORVANE_SWAY_STARTS)
    orvane_add_compositor_test(NAME desktop_sway_layershell TOOL with-sway.sh PROGRAM desktop_wayland_layershell)
    orvane_add_compositor_test(NAME desktop_sway_twooutputs TOOL with-sway.sh PROGRAM desktop_wayland_twooutputs ARGUMENTS --outputs 2)
    orvane_add_compositor_test(NAME desktop_sway_chooser TOOL with-sway.sh PROGRAM desktop_wayland_chooser)
    orvane_add_compositor_test(NAME desktop_sway_layouts TOOL with-sway.sh PROGRAM desktop_wayland_layouts)
    orvane_add_compositor_test(NAME desktop_sway TOOL with-sway.sh PROGRAM desktop_wayland_sway
      ARGUMENTS --line "set $mod Mod4" --line "bindsym Control+Shift+b nop theirs" --line "bindcode $mod+44 nop theirs")
  endif()
  if(ORVANE_KWIN_STARTS)
    orvane_add_compositor_test(NAME desktop_kwin_layershell TOOL with-kwin.sh PROGRAM desktop_wayland_layershell)
    orvane_add_compositor_test(NAME desktop_kwin_twooutputs TOOL with-kwin.sh PROGRAM desktop_wayland_twooutputs ARGUMENTS --outputs 2)
    orvane_add_compositor_test(NAME desktop_kwin_layouts TOOL with-kwin.sh PROGRAM desktop_wayland_layouts ARGUMENTS --layouts us,de,fr,ru)
    orvane_add_compositor_test(NAME desktop_kwin TOOL with-kwin.sh PROGRAM desktop_wayland_kwin)
    orvane_add_compositor_test(NAME desktop_kwin_chooser TOOL with-kwin.sh PROGRAM desktop_wayland_chooser)
  endif()

  # The portal itself where it is installed; only KDE's back end has global shortcuts in Debian 12.
  if(EXISTS /usr/libexec/xdg-desktop-portal)
    foreach(compositor sway gnome)
      string(TOUPPER ${compositor} upper)
      if(ORVANE_${upper}_STARTS)
        orvane_add_compositor_test(NAME desktop_${compositor}_portal TOOL with-${compositor}.sh PROGRAM desktop_wayland_portal
          ENVIRONMENT GTEST_FILTER=RealPortalWithoutShortcuts.*)
      endif()
    endforeach()
    # It is a program of Qt 5, which needs a plugin of its own for Wayland.
    if(ORVANE_KWIN_STARTS AND EXISTS /usr/share/xdg-desktop-portal/portals/kde.portal
       AND EXISTS /usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/qt5/plugins/platforms/libqwayland-generic.so)
      orvane_add_compositor_test(NAME desktop_kwin_portal TOOL with-kwin.sh PROGRAM desktop_wayland_portal
        ENVIRONMENT GTEST_FILTER=RealPortalOfKde.*)
    endif()
  else()
    message(STATUS "No tests of hot keys by the desktop portal itself: xdg-desktop-portal is not installed")
  endif()
endif()
