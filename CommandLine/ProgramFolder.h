#pragma once

#include <string>

namespace orvane {

/// The folder in which the running program's file lies, links followed, with a "/" at its end; empty where the system does not tell.
[[nodiscard]] std::string folderOfProgram();

} // namespace orvane
