#pragma once

#include <string>

namespace orvane {

/// Where the user's folders are. Any thread.
class UserFolders {
public:
    virtual ~UserFolders() = default;
    /// Absolute path of the folder that holds one folder for each application's data; it need not exist.
    [[nodiscard]] virtual std::string applicationSupportDirectory() = 0;
    /// Absolute path of the user's home folder.
    [[nodiscard]] virtual std::string homeDirectory() = 0;
};

} // namespace orvane
