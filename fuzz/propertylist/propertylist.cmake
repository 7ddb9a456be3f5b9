# Fuzzers of the property-list readers and writers.
orvane_add_fuzzer(NAME fuzz_propertylist_xml SOURCES propertylist/FuzzXMLPropertyList.cpp
  CORPUS propertylist-xml LIBRARIES platform_propertylist)
orvane_add_fuzzer(NAME fuzz_propertylist_binary SOURCES propertylist/FuzzBinaryPropertyList.cpp
  CORPUS propertylist-binary LIBRARIES platform_propertylist)
