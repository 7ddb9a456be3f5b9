# Tests: contract/preferences.
orvane_add_test(NAME preferences_contract_test LABEL contract
  SOURCES
    contract/preferences/PosixPreferencesStoreTest.cpp
    contract/preferences/PreferencesConcurrencyTest.cpp
    contract/preferences/PreferencesContractTest.cpp
    contract/preferences/PreferencesDamageTest.cpp
  LIBRARIES platform_posix platform_propertylist)
