# Sources of commandline: presets from folders and files, and the checking of them.
target_sources(commandline PRIVATE
  AddCommand.cpp
  CheckCommand.cpp
  ExportCommand.cpp
  FolderImport.cpp
  FolderWalk.cpp
  ImportCommand.cpp
  PresetPacking.cpp
  PresetStorage.cpp
  ResourceFolder.cpp)
