# Sources of commandline: presets from folders and files, and the checking of them.
target_sources(commandline PRIVATE
  AddCommand.cpp
  CheckCommand.cpp
  ExportCommand.cpp
  ImportCommand.cpp
  PresetStorage.cpp)
target_link_libraries(commandline PUBLIC preset_files)
