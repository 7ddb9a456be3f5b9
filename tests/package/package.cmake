# What is packaged. Whether the package itself installs, works and goes away again takes minutes: ./dev package --test.
find_program(ORVANE_DPKG_DEB dpkg-deb)
if(ORVANE_DPKG_DEB)
  add_test(NAME lint.package-comparison COMMAND ${ORVANE_BASH} ${CMAKE_CURRENT_LIST_DIR}/twice_test.sh)
  set_tests_properties(lint.package-comparison PROPERTIES LABELS lint TIMEOUT 60)
else()
  message(STATUS "The test lint.package-comparison is left out: there is no dpkg-deb")
endif()

if(TARGET orvane-helper)
  find_program(ORVANE_SYSTEMD_ANALYZE systemd-analyze)
  if(ORVANE_SYSTEMD_ANALYZE)
    add_test(NAME lint.helper-unit
      COMMAND ${ORVANE_BASH} ${CMAKE_CURRENT_LIST_DIR}/unit_test.sh ${CMAKE_BINARY_DIR}/packaging $<TARGET_FILE:orvane-helper>)
    set_tests_properties(lint.helper-unit PROPERTIES LABELS lint TIMEOUT 60)
  else()
    message(STATUS "The test lint.helper-unit is left out: there is no systemd-analyze")
  endif()
endif()
