#pragma once

#include <string_view>

namespace orvane {

/// The user's desktop.
class Workspace {
public:
    virtual ~Workspace() = default;
    /// Opens a file or folder with the program that the user has for it, without waiting. False when nobody takes it.
    virtual bool openFile(std::string_view path) = 0;
};

} // namespace orvane
