# Tests of the settings program's models and of its adapters.
orvane_add_test(NAME unit_settings LABEL unit
  SOURCES
    unit/settings/CountersTest.cpp
    unit/settings/DocumentCostTest.cpp
    unit/settings/DocumentTest.cpp
    unit/settings/DocumentUndoTest.cpp
    unit/settings/EditHistoryTest.cpp
    unit/settings/GeneralSettingsTest.cpp
    unit/settings/MergeTest.cpp
    unit/settings/NamesTest.cpp
    unit/settings/NodeTextTest.cpp
    unit/settings/PermissionsTest.cpp
    unit/settings/ProblemsTest.cpp
    unit/settings/RecoveryTest.cpp
    unit/settings/StoreTest.cpp
    unit/settings/VariableMakingTest.cpp
    unit/settings/VariablesTest.cpp
  LIBRARIES settings_platform)
orvane_add_test(NAME unit_settings_platform LABEL unit
  SOURCES
    unit/settings/AutostartTest.cpp
    unit/settings/ContentStoreTest.cpp
    unit/settings/RecoveryFileTest.cpp
    unit/settings/SettingsOnDiskTest.cpp
  LIBRARIES settings_platform)
