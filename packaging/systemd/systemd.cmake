# The helper as a user unit of systemd. The unit's name follows systemd's "Desktop Environment Integration", so that portals know the
# program by it; desktops that start autostart entries and applications as units call theirs after the entry, and a drop-in gives
# these the same sandbox.
set(unit app-${helper_id})
set(unit_files ${CMAKE_CURRENT_BINARY_DIR}/systemd)
file(READ ${CMAKE_CURRENT_LIST_DIR}/sandbox.conf ORVANE_SANDBOX)
string(STRIP "${ORVANE_SANDBOX}" ORVANE_SANDBOX)
configure_file(${CMAKE_CURRENT_LIST_DIR}/${helper_id}.service.in ${unit_files}/${unit}.service @ONLY)
configure_file(${CMAKE_CURRENT_LIST_DIR}/drop-in.conf.in ${unit_files}/${unit}@.service.d/sandbox.conf @ONLY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/sandbox.conf)

# systemd looks below lib in the system's own folders, below share wherever data is looked for (systemd.unit(5)).
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr" OR CMAKE_INSTALL_PREFIX STREQUAL "/usr/local")
  set(ORVANE_USER_UNITS lib/systemd/user CACHE STRING "Folder for units of users")
else()
  set(ORVANE_USER_UNITS ${CMAKE_INSTALL_DATADIR}/systemd/user CACHE STRING "Folder for units of users")
endif()
install(FILES ${unit_files}/${unit}.service DESTINATION ${ORVANE_USER_UNITS})
install(FILES ${unit_files}/${unit}@.service.d/sandbox.conf DESTINATION ${ORVANE_USER_UNITS}/${unit}@.service.d)
