# Tests of the preset checker, of templates for existing names and of preset files.
orvane_add_test(NAME unit_presetfiles LABEL unit
  SOURCES
    unit/presetfiles/CheckerTest.cpp
    unit/presetfiles/ImportedNamesTest.cpp
    unit/presetfiles/PreferencesReferenceTest.cpp
    unit/presetfiles/PresetFileTest.cpp
  LIBRARIES platform_posix platform_propertylist)
target_compile_definitions(unit_presetfiles PRIVATE ORVANE_REFERENCE="${PROJECT_SOURCE_DIR}/docs/preferences.md")
