#pragma once

#include "ports/FrontWindow.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// A file manager that shows what it is told to. The hook runs after each call was written down.
class FakeFrontWindow final : public FrontWindow {
public:
    [[nodiscard]] bool fileManagerIsActive() override {
        _note("fileManagerIsActive");
        return active;
    }
    [[nodiscard]] std::optional<std::string> folder() override {
        _note("folder");
        return shown;
    }

    bool active = false;
    std::optional<std::string> shown; ///< nothing when no window is open
    std::vector<std::string> journal;
    std::function<void(const std::string &entry)> hook;

private:
    void _note(const std::string &entry) {
        journal.push_back(entry);
        if (hook) {
            hook(entry);
        }
    }
};

} // namespace orvane
