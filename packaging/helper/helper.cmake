# What makes the helper part of a desktop: entries for the menu and for log-in, its service on the bus, metainfo, icons, resources.
set(helper_id org.orvane.Helper)
set(helper_files ${CMAKE_CURRENT_BINARY_DIR}/helper)
set(ORVANE_HELPER_PATH ${CMAKE_INSTALL_FULL_BINDIR}/orvane-helper)
foreach(kind desktop autostart.desktop service metainfo.xml)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/${helper_id}.${kind}.in ${helper_files}/${helper_id}.${kind} @ONLY)
endforeach()
# Two files of one name, in folders of their own: a user's copy of the one for log-in, with "Hidden=true", switches it off.
file(MAKE_DIRECTORY ${helper_files}/autostart)
configure_file(${helper_files}/${helper_id}.autostart.desktop ${helper_files}/autostart/${helper_id}.desktop COPYONLY)

install(FILES ${helper_files}/${helper_id}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${helper_files}/autostart/${helper_id}.desktop DESTINATION ${CMAKE_INSTALL_SYSCONFDIR}/xdg/autostart)
install(FILES ${helper_files}/${helper_id}.service DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/services)
install(FILES ${helper_files}/${helper_id}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES man/orvane-helper.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/resources/icons/hicolor DESTINATION ${CMAKE_INSTALL_DATADIR}/icons)
install(FILES ${CMAKE_SOURCE_DIR}/resources/ORVMenuBar.png ${CMAKE_SOURCE_DIR}/resources/ORVMenuBar@2x.png
  DESTINATION ${CMAKE_INSTALL_DATADIR}/orvane)
include(${CMAKE_CURRENT_LIST_DIR}/../systemd/systemd.cmake)
