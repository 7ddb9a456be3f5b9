# The programs' texts in other languages: orvane_LANGUAGE.ts as people edit them, made into what the programs load.
find_package(Qt6 6.4 REQUIRED COMPONENTS LinguistTools)
set(translations)
foreach(language de fr)
  set(source ${CMAKE_CURRENT_LIST_DIR}/orvane_${language}.ts)
  set(translation ${CMAKE_BINARY_DIR}/share/orvane/translations/orvane_${language}.qm)
  add_custom_command(OUTPUT ${translation}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/share/orvane/translations
    COMMAND Qt6::lrelease -silent ${source} -qm ${translation}
    DEPENDS ${source} VERBATIM)
  list(APPEND translations ${translation})
endforeach()
add_custom_target(translations ALL DEPENDS ${translations})
install(FILES ${translations} DESTINATION ${CMAKE_INSTALL_DATADIR}/orvane/translations)
