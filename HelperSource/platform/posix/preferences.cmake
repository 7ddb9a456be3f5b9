# Sources of platform_posix: preferences.
target_sources(platform_posix PRIVATE
  PosixPreferencesEdit.cpp
  PosixPreferencesFile.cpp
  PosixPreferencesLock.cpp
  PosixPreferencesReplacement.cpp
  PosixPreferencesStore.cpp)
target_link_libraries(platform_posix PUBLIC platform_propertylist)
