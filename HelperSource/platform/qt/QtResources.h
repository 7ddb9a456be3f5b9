#pragma once

#include "ports/Resources.h"

#include <optional>
#include <string>

namespace orvane {

/// The files that come with the program, in one folder, and its texts in the user's language. Main thread only.
class QtResources final : public Resources {
public:
    /// `folder` is an absolute path.
    explicit QtResources(std::string folder) : _folder(std::move(folder)) {}

    [[nodiscard]] std::optional<std::string> stringOfResource(std::string_view name, std::string_view type) override;
    [[nodiscard]] std::optional<PropertyList> propertyListOfString(std::string_view text) override;
    [[nodiscard]] std::string localizedString(std::string_view key) override;

    [[nodiscard]] const std::string &folder() const { return _folder; }
    /// Path of a file in the folder, whether it is there or not.
    [[nodiscard]] std::string path(std::string_view file) const { return _folder + "/" + std::string(file); }

    /// The folder that belongs to the running program: `share/orvane` beside the folder that the program is in. That is so when it is
    /// installed and in the folder in which it was built.
    [[nodiscard]] static std::string folderOfProgram();

private:
    std::string _folder;
};

} // namespace orvane
