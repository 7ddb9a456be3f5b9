#include "platform/propertylist/PropertyListFiles.h"
#include "ports/TextCase.h"
#include "presets/ORVNameTemplate.h"
#include "presets/ORVPresetChecker.h"
#include "presets/ORVPresetFile.h"
#include "presets/ORVPresetManager.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

// Any bytes as a preset file: it is refused with a reason, or taken apart, checked and put together again. Names of
// resources never lead out of a folder, and a preset with other names has exactly these.

namespace {

using namespace orvane;

class SameCase final : public TextCase {
public:
    std::string uppercase(std::string_view text) override { return std::string(text); }
};

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void requireSafe(std::string_view name) {
    const std::string safe = ORVSafeFileName(name);
    require(safe.size() <= 200 && safe.find('/') == std::string::npos && safe.find('\0') == std::string::npos);
    require(safe != "." && safe != "..");
    require(ORVSafeFileName(safe) == safe);
    require(safe.empty() || ORVNumberedFileName(safe, 12).size() <= 255);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const auto document = readPropertyList(std::string_view(reinterpret_cast<const char *>(data), size));
    Sentence why;
    const auto parts = document ? ORVUnpackPreset(*document, why) : std::nullopt;
    if (!parts) {
        require(!document || !why.isEmpty());
        return 0;
    }
    ORVPackedResources resources(*parts);
    SameCase textCase;
    const auto problems = ORVPresetChecker(resources, textCase).checkPreset(parts->preset.root());
    for (const ORVPresetProblem &problem : problems) {
        require(!problem.text().empty());
        require(!ORVTextOfPlace(problem.place, parts->preset.root()).empty() || problem.place.key.empty());
    }
    const bool hasEndlessTree = std::any_of(problems.begin(), problems.end(), [](const ORVPresetProblem &problem) {
        return problem.neverEnds && problem.place.key == "fileHierarchy";
    });
    if (hasEndlessTree) {
        return 0;
    }
    ORVRenamedResources renamed;
    for (const std::string &name : ORVContentNamesOfPreset(parts->preset.root())) {
        requireSafe(name);
        renamed.contents.emplace(name, "new");
    }
    const PropertyList preset = ORVPresetWithResources(parts->preset, renamed);
    require(ORVContentNamesOfPreset(preset.root()).size() == (renamed.contents.empty() ? 0U : 1U));
    if (const auto xml = writeXMLPropertyList(ORVPackPreset(*parts).root())) {
        const auto again = readPropertyList(*xml);
        require(again && ORVUnpackPreset(*again, why));
    }
    return 0;
}
