# Sources of the core that belong to the status-bar menu.
target_sources(core PRIVATE ${CMAKE_CURRENT_LIST_DIR}/MenuBarController.cpp)
