#pragma once

#include "ports/VariablePrompt.h"

#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// A user who types prepared values and then confirms or gives up.
class FakeVariablePrompt final : public VariablePrompt {
public:
    struct Run {
        std::string directoryName;
        std::vector<PromptValueRow> rows; ///< as they were offered
    };

    [[nodiscard]] bool runModally(std::string_view directoryName, std::span<PromptValueRow> rows) override {
        runs.push_back({std::string(directoryName), {rows.begin(), rows.end()}});
        for (PromptValueRow &row : rows)
            if (const auto answer = answers.find(row.key); answer != answers.end())
                row.value = answer->second;
        if (whileShown)
            whileShown(rows);
        return !cancels;
    }

    std::map<std::string, std::string> answers; ///< by variable name, for every row of that name
    bool cancels = false;                       ///< gives up, after having typed the answers
    std::function<void(std::span<PromptValueRow> rows)> whileShown;
    std::vector<Run> runs;
};

} // namespace orvane
