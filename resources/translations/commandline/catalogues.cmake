# The command line's texts in other languages: LANGUAGE.po as people edit them, made into catalogues for gettext.
find_package(Gettext REQUIRED)
set(catalogues)
foreach(language de fr)
  set(source ${CMAKE_CURRENT_LIST_DIR}/${language}.po)
  set(folder ${CMAKE_BINARY_DIR}/share/locale/${language}/LC_MESSAGES)
  add_custom_command(OUTPUT ${folder}/orvane.mo
    COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
    COMMAND ${GETTEXT_MSGFMT_EXECUTABLE} --check --output-file=${folder}/orvane.mo ${source}
    DEPENDS ${source} VERBATIM)
  list(APPEND catalogues ${folder}/orvane.mo)
  install(FILES ${folder}/orvane.mo DESTINATION ${CMAKE_INSTALL_LOCALEDIR}/${language}/LC_MESSAGES)
endforeach()
add_custom_target(commandline_catalogues ALL DEPENDS ${catalogues})
