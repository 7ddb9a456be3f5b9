# Tests of the preset checker, of templates for existing names and of preset files.
orvane_add_test(NAME unit_presetfiles LABEL unit
  SOURCES
    unit/presetfiles/CheckerTest.cpp
    unit/presetfiles/ImportedNamesTest.cpp
    unit/presetfiles/PresetFileTest.cpp
  LIBRARIES platform_propertylist)
