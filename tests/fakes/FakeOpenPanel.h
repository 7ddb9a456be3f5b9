#pragma once

#include "ports/OpenPanel.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// A user in front of an open panel, who chooses what stands in `filenames` or gives up.
class FakeOpenPanel final : public OpenPanel {
public:
    [[nodiscard]] std::optional<std::vector<std::string>> runModal(const OpenPanelSettings &settings) override {
        shown.push_back(settings);
        if (whileShown) {
            whileShown();
        }
        return filenames;
    }

    std::optional<std::vector<std::string>> filenames; ///< nothing: the user gives up
    std::function<void()> whileShown;
    std::vector<OpenPanelSettings> shown; ///< one entry a panel
};

} // namespace orvane
