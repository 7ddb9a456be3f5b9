# What makes the settings program part of a desktop: its entry in the menu, its service on the bus, metainfo, media types, manual page.
set(settings_id org.orvane.Settings)
set(settings_files ${CMAKE_CURRENT_BINARY_DIR}/settings)
set(ORVANE_SETTINGS_PATH ${CMAKE_INSTALL_FULL_BINDIR}/orvane-settings)
foreach(kind desktop service metainfo.xml)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/${settings_id}.${kind}.in ${settings_files}/${settings_id}.${kind} @ONLY)
endforeach()

install(FILES ${settings_files}/${settings_id}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${settings_files}/${settings_id}.service DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/services)
install(FILES ${settings_files}/${settings_id}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/${settings_id}.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/../man/orvane-settings.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
