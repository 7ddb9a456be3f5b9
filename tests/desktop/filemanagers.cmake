# The adapters on file managers. Rules and contract need no display; the active window has an X server of its own.
add_executable(filemanagers_rules
  desktop/filemanagers/FolderRulesTest.cpp
  desktop/filemanagers/FrontWindowContractTest.cpp
  desktop/filemanagers/main.cpp)
target_link_libraries(filemanagers_rules PRIVATE fakes platform_filemanagers GTest::gtest)
gtest_discover_tests(filemanagers_rules PROPERTIES LABELS unit DISCOVERY_TIMEOUT 60)

add_test(NAME filemanagers_user_entries
  COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/desktop/filemanagers/user_entries_test.py
          ${PROJECT_SOURCE_DIR}/packaging/filemanagers/install-user-entries)
add_test(NAME filemanagers_extensions
  COMMAND /usr/bin/python3 -B ${CMAKE_CURRENT_SOURCE_DIR}/desktop/filemanagers/extensions_test.py ${PROJECT_SOURCE_DIR}/packaging/filemanagers)
set_tests_properties(filemanagers_user_entries filemanagers_extensions PROPERTIES LABELS unit TIMEOUT 120)

orvane_add_desktop_test(NAME desktop_filemanagers_active
  SOURCES desktop/filemanagers/X11ActiveApplicationTest.cpp desktop/filemanagers/main.cpp
  LIBRARIES platform_filemanagers
  DESKTOP_ARGUMENTS --wm none)

# Real file managers, those that are installed here.
add_executable(desktop_filemanagers_real
  desktop/filemanagers/FileManagerProgram.cpp
  desktop/filemanagers/RealFileManagersMain.cpp
  desktop/filemanagers/RealFileManagersTest.cpp)
target_link_libraries(desktop_filemanagers_real PRIVATE fakes platform_filemanagers GTest::gtest)
foreach(name thunar pcmanfm-qt pcmanfm nemo caja nautilus dolphin)
  find_program(ORVANE_FILE_MANAGER_${name} ${name})
  if(ORVANE_FILE_MANAGER_${name})
    set(user "")
    if(name STREQUAL dolphin) # which refuses to be root's
      set(user --ordinary-user)
    endif()
    orvane_add_desktop_test(NAME desktop_filemanagers_${name} PROGRAM desktop_filemanagers_real
      DESKTOP_ARGUMENTS --accessibility ${user}
      ENVIRONMENT ORVANE_TEST_FILEMANAGER=${name})
    # One at a time: they watch for a hung program's 300 ms.
    set_tests_properties(desktop_filemanagers_${name} PROPERTIES RUN_SERIAL ON)
  else()
    message(STATUS "desktop_filemanagers_${name} is not registered: ${name} is not installed")
  endif()
endforeach()
