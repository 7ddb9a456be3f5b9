# The adapters on Wayland, on real compositors without a screen. Where a compositor is not installed its tests are skipped, not passed.
set(orvane_wayland_tests ${CMAKE_CURRENT_LIST_DIR})

# orvane_add_compositor_test(NAME name TOOL script PROGRAM target [ARGUMENTS argument...] [ENVIRONMENT NAME=VALUE...])
function(orvane_add_compositor_test)
  cmake_parse_arguments(TEST "" "NAME;TOOL;PROGRAM" "ARGUMENTS;ENVIRONMENT" ${ARGN})
  add_test(NAME ${TEST_NAME}
    COMMAND ${orvane_wayland_tests}/../tools/${TEST_TOOL} ${TEST_ARGUMENTS} -- $<TARGET_FILE:${TEST_PROGRAM}>)
  set_tests_properties(${TEST_NAME} PROPERTIES LABELS desktop TIMEOUT 300 SKIP_RETURN_CODE 77 ENVIRONMENT "${TEST_ENVIRONMENT}")
endfunction()

pkg_check_modules(ORVANE_WAYLAND_TESTS IMPORTED_TARGET wayland-client>=1.20 xkbcommon)
if(TARGET PkgConfig::ORVANE_WAYLAND_TESTS)
  add_library(wayland_test_support STATIC
    ${orvane_wayland_tests}/wayland/WaylandDesk.cpp
    ${orvane_wayland_tests}/wayland/WaylandInput.cpp)
  target_link_libraries(wayland_test_support PUBLIC fakes platform_wayland GTest::gtest PkgConfig::ORVANE_WAYLAND_TESTS)

  add_executable(desktop_wayland_layershell ${orvane_wayland_tests}/wayland/LayerShellPopUpMenusTest.cpp)
  target_link_libraries(desktop_wayland_layershell PRIVATE wayland_test_support)
  orvane_add_compositor_test(NAME desktop_sway_layershell TOOL with-sway.sh PROGRAM desktop_wayland_layershell)
endif()
