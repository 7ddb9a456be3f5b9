# The program `orvane-settings`.
add_executable(orvane-settings main.cpp)
target_compile_definitions(orvane-settings PRIVATE ORVANE_VERSION="${PROJECT_VERSION}")
target_link_libraries(orvane-settings PRIVATE settings_window platform_wayland)
add_dependencies(orvane-settings translations)
install(TARGETS orvane-settings RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
