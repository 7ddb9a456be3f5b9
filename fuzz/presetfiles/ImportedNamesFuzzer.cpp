#include "presets/ORVImportedNames.h"
#include "presets/ORVNameTemplate.h"
#include "presets/ORVPresetManager.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

// Any lines as the names of a folder and what is in it, with "A" and "B" as texts of variables: no template's scan is without
// end, and each gives its name back unless a problem says otherwise.

namespace {

using namespace orvane;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty() && lines.size() < 16) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        if (end > 0) {
            lines.emplace_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::vector<PromptValueRow> rowsOf(const std::vector<std::string> &templates) {
    std::vector<PromptValueRow> rows;
    for (std::size_t i = 0; i < templates.size(); ++i) {
        const std::string text = i == 0 ? templates[i] : ORVPresetManager::cleanFilesystemEntities(templates[i]);
        for (const ORVTemplateKey &key : ORVScanTemplate(text).keys) {
            const bool isListed = std::any_of(rows.begin(), rows.end(), [&](const auto &row) { return row.key == key.name; });
            if (i == 0 || !isListed) {
                rows.push_back({key.name, key.name == "x" ? "A" : key.name == "y" ? "B" : ""});
            }
        }
    }
    return rows;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::vector<std::string> names =
        linesOf(std::string_view(reinterpret_cast<const char *>(data), std::min<std::size_t>(size, 4096)));
    if (names.empty()) {
        return 0;
    }
    const ORVImportedNames imported = ORVImportNames(names, {{"A", "x"}, {"B", "y"}});
    require(imported.templates.size() == names.size());
    const auto rows = rowsOf(imported.templates);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string &each = imported.templates[i];
        require(ORVPresetManager::scanEnds(each) && (ORVScanTemplate(each).ending == ORVScanEnding::Ends));
        std::string made = ORVFillTemplate(each, rows);
        made = ORVPresetManager::cleanFilesystemEntities(i == 0 ? ORVFillTemplate(made, rows) : made);
        const bool isTold =
            std::any_of(imported.problems.begin(), imported.problems.end(), [&](const auto &problem) { return problem.name == i; });
        require(made == names[i] || isTold);
    }
    return 0;
}
