# Sources of platform_posix: files.
target_sources(platform_posix PRIVATE
  PosixContent.cpp
  PosixContentCopy.cpp
  PosixExtendedAttributes.cpp
  PosixFileFinisher.cpp
  PosixFileSystem.cpp
  PosixFinderAttributes.cpp
  PosixFinderInformation.cpp
  PosixFolderCursor.cpp
  PosixFolderReader.cpp
  PosixHierarchyWriter.cpp
  PosixHierarchyWriter_copies.cpp
  PosixHierarchyWriter_folders.cpp
  PosixHierarchyWriter_removal.cpp
  PosixHierarchyWriter_threads.cpp
  PosixItemFinish.cpp
  PosixMadeItems.cpp
  PosixNewFile.cpp
  PosixOpenFile.cpp
  PosixPath.cpp
  PosixPrivateFolder.cpp
  PosixSecondThread.cpp
  PosixWriting.cpp)
