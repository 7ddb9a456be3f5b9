# What the helper does when adapters and core are put together, over fakes.
orvane_add_test(NAME wiring_test LABEL unit
  SOURCES
    unit/wiring/UnfinishedCreationsTest.cpp
    ${PROJECT_SOURCE_DIR}/HelperSource/wiring/UnfinishedCreations.cpp)
