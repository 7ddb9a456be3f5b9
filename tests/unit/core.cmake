# Tests of the core over fakes.
orvane_add_test(NAME core_test LABEL unit
  SOURCES
    unit/core/DriverTest.cpp
    unit/core/EndlessTemplatesTest.cpp
    unit/core/HelpersTest.cpp
    unit/core/KeysTest.cpp
    unit/core/ManagerCoreTest.cpp
    unit/core/NodesTest.cpp
    unit/core/PostflightJobTest.cpp
    unit/core/PromptTest.cpp
    unit/core/PropertyListTest.cpp
    unit/core/RecordsTest.cpp
    unit/core/RunnerTest.cpp
    unit/core/SentenceTest.cpp
    unit/core/ServiceTest.cpp
    unit/core/SurveyTest.cpp
    unit/core/TableViewTest.cpp
    unit/core/TopLevelNameTest.cpp)
