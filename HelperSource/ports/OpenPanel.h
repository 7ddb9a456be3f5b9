#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// What an open panel offers.
struct OpenPanelSettings {
    std::string title;
    std::string prompt; ///< title of the confirming button
    bool canChooseFiles = true;
    bool canChooseDirectories = false;
    bool canCreateDirectories = false;
};

/// Lets the user choose among files and folders.
class OpenPanel {
public:
    virtual ~OpenPanel() = default;
    /// Shows the panel and returns when the user has chosen; opens where the user last chose. Absolute paths, at least one;
    /// nothing when the user gave up. Main thread only.
    [[nodiscard]] virtual std::optional<std::vector<std::string>> runModal(const OpenPanelSettings &settings) = 0;
};

} // namespace orvane
