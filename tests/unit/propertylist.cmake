# Tests: unit/propertylist.
find_package(PkgConfig REQUIRED)
pkg_check_modules(LIBPLIST REQUIRED IMPORTED_TARGET libplist-2.0)

orvane_add_test(NAME propertylist_test LABEL unit
  SOURCES
    unit/propertylist/BinaryReadingTest.cpp
    unit/propertylist/LargeListsTest.cpp
    unit/propertylist/OracleTest.cpp
    unit/propertylist/RandomLists.cpp
    unit/propertylist/RoundTripTest.cpp
    unit/propertylist/SitesTest.cpp
    unit/propertylist/WritingTest.cpp
    unit/propertylist/XMLReadingTest.cpp
    unit/propertylist/XMLRefusalsTest.cpp
  LIBRARIES platform_propertylist PkgConfig::LIBPLIST)
target_compile_definitions(propertylist_test PRIVATE
  ORVANE_PLISTLIB_SCRIPT="${CMAKE_CURRENT_SOURCE_DIR}/tools/plistlib-oracle.py")
