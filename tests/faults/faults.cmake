# What must hold when something fails: short forms of what `./dev faults` does at length. They start the program under
# strace, count memory and processes, and so do not go together with sanitizers.
find_package(Python3 COMPONENTS Interpreter REQUIRED)

orvane_add_test(NAME unit_journal LABEL unit SOURCES unit/core/JournaledFileSystemTest.cpp)

add_executable(soak faults/Soak.cpp)
target_link_libraries(soak PRIVATE fakes commandline)
target_include_directories(soak PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})

if(NOT ORVANE_SANITIZE)
  find_program(ORVANE_STRACE strace REQUIRED)
  set(faults ${CMAKE_CURRENT_SOURCE_DIR}/faults)
  set(run_orvane --orvane $<TARGET_FILE:orvane>)
  add_test(NAME faults.short COMMAND ${Python3_EXECUTABLE} -B ${faults}/sweep.py ${run_orvane} --short)
  add_test(NAME faults.memory COMMAND ${Python3_EXECUTABLE} -B ${faults}/memory.py ${run_orvane} --short)
  add_test(NAME faults.recovery COMMAND ${Python3_EXECUTABLE} -B ${faults}/recovery.py ${run_orvane})
  add_test(NAME faults.together COMMAND ${Python3_EXECUTABLE} -B ${faults}/together.py ${run_orvane} --creations 25)
  add_test(NAME faults.soak COMMAND soak 2000 200 200)
  set_tests_properties(faults.short faults.memory faults.recovery faults.together faults.soak PROPERTIES LABELS faults TIMEOUT 600)

  # Images are mounted: that takes root and a kernel that lets it.
  execute_process(COMMAND ${Python3_EXECUTABLE} -B ${faults}/powercut.py --can RESULT_VARIABLE cannot OUTPUT_VARIABLE why
                  OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(cannot EQUAL 0)
    add_test(NAME faults.powercut COMMAND ${Python3_EXECUTABLE} -B ${faults}/powercut.py ${run_orvane} --instants 5)
    set_tests_properties(faults.powercut PROPERTIES LABELS faults TIMEOUT 600 RUN_SERIAL ON)
  else()
    message(STATUS "The test faults.powercut is left out: ${why}")
  endif()
endif()
