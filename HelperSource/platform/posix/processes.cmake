# Sources of platform_posix: processes, threads, time, user folders, log and case mapping.
target_sources(platform_posix PRIVATE
  PosixChildReaper.cpp
  PosixClock.cpp
  PosixCreationJournal.cpp
  PosixCreationRecovery.cpp
  PosixHotKeyStatement.cpp
  PosixProcessLauncher.cpp
  PosixSmallFile.cpp
  PosixSpawning.cpp
  PosixStopSignals.cpp
  PosixSystemLog.cpp
  PosixThreadLauncher.cpp
  PosixUserFolders.cpp
  UnistringTextCase.cpp)

# The archive spares every program the loading of one more shared library.
find_path(UNISTRING_INCLUDE_DIR unicase.h REQUIRED)
find_library(UNISTRING_LIBRARY NAMES libunistring.a unistring REQUIRED)
target_include_directories(platform_posix SYSTEM PRIVATE ${UNISTRING_INCLUDE_DIR})
target_link_libraries(platform_posix PRIVATE ${UNISTRING_LIBRARY})
