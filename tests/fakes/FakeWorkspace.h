#pragma once

#include "ports/Workspace.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Remembers what was to be opened; `opens` is what it answers.
class FakeWorkspace final : public Workspace {
public:
    bool openFile(std::string_view path) override {
        opened.emplace_back(path);
        if (onOpen) {
            onOpen(opened.back());
        }
        return opens;
    }

    std::vector<std::string> opened;
    bool opens = true;
    std::function<void(const std::string &path)> onOpen;
};

} // namespace orvane
