# The pages on counters and general settings, and the panel on a preset's script.
target_sources(settings_window PRIVATE
  CounterTableModel.cpp
  CounterValueField.cpp
  CountersPage.cpp
  ElidedLabel.cpp
  GeneralPage.cpp
  HotKeyField.cpp
  HotKeyInstructions.cpp
  HotKeyRecorder.cpp
  HotKeyRecording.cpp
  InlineMessage.cpp
  LogView.cpp
  PathLabel.cpp
  ScriptPanel.cpp
  ScriptTrial.cpp
  Sentences.cpp)
target_link_libraries(settings_window PUBLIC platform_x11)
