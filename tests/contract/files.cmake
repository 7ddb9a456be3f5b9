# Tests: contract/files.
orvane_add_test(NAME contract_files LABEL contract
  SOURCES
    contract/files/CreationRecoveryTest.cpp
    contract/files/FileSystemContractTest.cpp
    contract/files/FilesTestSupport.cpp
    contract/files/PosixContentsTest.cpp
    contract/files/PosixDepthTest.cpp
    contract/files/PosixDiskTest.cpp
    contract/files/PosixFinderTest.cpp
    contract/files/PosixModesTest.cpp
    contract/files/PosixNamesTest.cpp
    contract/files/PosixPrivateFolderTest.cpp
  LIBRARIES platform_posix)

# A second thread needs a second processor.
cmake_host_system_information(RESULT orvane_processors QUERY NUMBER_OF_LOGICAL_CORES)
if(orvane_processors GREATER 1)
  orvane_add_test(NAME contract_threads LABEL contract
    SOURCES
      contract/files/FilesTestSupport.cpp
      contract/threads/FinishingTest.cpp
      contract/threads/SecondThreadTest.cpp
      contract/threads/SharingTest.cpp
      contract/threads/TwoThreadsTest.cpp
    LIBRARIES commandline)
  orvane_add_test(NAME contract_threads_memory LABEL contract
    SOURCES
      contract/files/FilesTestSupport.cpp
      contract/threads/SecondThreadMemoryTest.cpp
    LIBRARIES commandline)
else()
  message(STATUS "One processor: creations on two threads are not tested")
  add_custom_target(contract_threads)
  add_custom_target(contract_threads_memory)
endif()

# Counting system calls is left to strace, which does not go together with the leak check of the address sanitizer.
if(NOT ORVANE_SANITIZE)
  add_executable(hierarchy_driver contract/files/HierarchyDriver.cpp)
  target_link_libraries(hierarchy_driver PRIVATE platform_posix)
  orvane_add_test(NAME contract_files_calls LABEL contract
    SOURCES
      contract/files/FilesTestSupport.cpp
      contract/files/PosixCallsTest.cpp
    LIBRARIES platform_posix)
  target_compile_definitions(contract_files_calls PRIVATE HIERARCHY_DRIVER="$<TARGET_FILE:hierarchy_driver>")
  add_dependencies(contract_files_calls hierarchy_driver)
endif()
