# Tests: the command line's own parts, without a process.
orvane_add_test(NAME unit_commandline LABEL unit
  SOURCES
    unit/commandline/AdaptersTest.cpp
    unit/commandline/CommandSupportTest.cpp
    unit/commandline/CreateOptionsTest.cpp
    unit/commandline/CreateReportTest.cpp
    unit/commandline/DryRunFileSystemTest.cpp
    unit/commandline/JSONWriterTest.cpp
    unit/commandline/OptionsTest.cpp
    unit/commandline/PresetTreeTest.cpp
    unit/commandline/PromptTest.cpp
    unit/commandline/TranslationTest.cpp
    unit/commandline/TreeDrawingTest.cpp
  LIBRARIES commandline)
