#pragma once

#include "ports/UserFolders.h"

#include <string>

namespace orvane {

/// Folders as told; counts how often the support folder was asked for.
class FakeUserFolders final : public UserFolders {
public:
    [[nodiscard]] std::string applicationSupportDirectory() override {
        ++supportQuestions;
        return applicationSupport;
    }
    [[nodiscard]] std::string homeDirectory() override { return home; }

    std::string home = "/home/user";
    std::string applicationSupport = "/home/user/.local/share";
    int supportQuestions = 0;
};

} // namespace orvane
