# orvane_add_metainfo_test(NAME FILE): what AppStream has to say against a program's metainfo is a failure.
find_program(ORVANE_APPSTREAMCLI appstreamcli REQUIRED)
execute_process(COMMAND ${ORVANE_APPSTREAMCLI} --version OUTPUT_VARIABLE appstream_version)
string(REGEX MATCH "[0-9.]+" appstream_version "${appstream_version}")
set(orvane_known_to_appstream)
if(appstream_version VERSION_GREATER_EQUAL 1.0)
  set(orvane_known_to_appstream --override url-homepage-missing=info) # there is no such page; older versions do not know the question
endif()

function(orvane_add_metainfo_test name file)
  add_test(NAME ${name} COMMAND ${ORVANE_APPSTREAMCLI} validate --no-net --explain ${orvane_known_to_appstream} ${file})
endfunction()
