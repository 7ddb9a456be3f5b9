#include "TemplateSpans.h"

#include "presets/ORVNameTemplate.h"
#include "presets/ORVPresetManager.h"
#include "presets/ORVUTF16.h"

#include <algorithm>
#include <string>

namespace orvane {

namespace {

using Kind = TemplateSpan::Kind;

/// The first brace of that kind, from a place on, without a backslash before it.
std::size_t findBrace(std::string_view text, char brace, std::size_t from) {
    std::size_t found = text.find(brace, from);
    while (found != std::string_view::npos && found > 0 && text[found - 1] == '\\') {
        found = text.find(brace, found + 1);
    }
    return found;
}

/// Where the open brace stands that the scan stumbled over, behind the last key.
std::size_t strayBrace(std::string_view text, std::size_t from) {
    std::size_t open = findBrace(text, '{', from);
    while (open != std::string_view::npos) {
        const std::size_t close = findBrace(text, '}', open + 1);
        if (close == std::string_view::npos) {
            break;
        }
        open = findBrace(text, '{', close + 1); // it was "{}", which is no key
    }
    return open;
}

void addEscapes(std::string_view text, std::size_t from, std::size_t to, std::vector<TemplateSpan> &spans) {
    for (std::size_t at = from; at + 1 < to; ++at) {
        if (text[at] == '\\' && (text[at + 1] == '{' || text[at + 1] == '}')) {
            spans.push_back({Kind::EscapedBrace, at, at + 2});
            ++at;
        }
    }
}

Kind kindOfKey(std::string_view written, const ORVTemplateKey &key, bool isDirectoryName) {
    if (!isDirectoryName && written.find_first_of(":/") != std::string_view::npos) {
        return Kind::UnreplacedVariable;
    }
    return ORVPresetManager::isAutomaticVariable(key.name) ? Kind::AutomaticVariable : Kind::Variable;
}

void countUnits(std::string_view text, std::vector<TemplateSpan> &spans) {
    std::size_t bytes = 0;
    std::size_t units = 0;
    const auto unitsTo = [&](std::size_t place) {
        units += ORVUTF16Length(text.substr(bytes, place - bytes));
        bytes = place;
        return units;
    };
    for (TemplateSpan &span : spans) {
        span.beginUnit = unitsTo(span.begin);
        span.endUnit = unitsTo(span.end);
    }
}

} // namespace

std::vector<TemplateSpan> spansOfTemplate(std::string_view text, bool isDirectoryName) {
    // Cleaning moves nothing, so the places hold for the text as it stands.
    const ORVTemplateScan scan = ORVScanTemplate(isDirectoryName ? std::string(text) : ORVPresetManager::cleanFilesystemEntities(text));
    std::vector<TemplateSpan> spans;
    std::size_t done = 0;
    for (const ORVTemplateKey &key : scan.keys) {
        addEscapes(text, done, key.begin, spans);
        spans.push_back({kindOfKey(text.substr(key.begin, key.end - key.begin), key, isDirectoryName), key.begin, key.end});
        done = key.end;
    }
    const bool isProblem = scan.hasUnclosedKey || scan.ending != ORVScanEnding::Ends;
    const std::size_t stray = isProblem ? std::min(strayBrace(text, done), text.size()) : text.size();
    addEscapes(text, done, stray, spans);
    if (stray < text.size()) {
        spans.push_back({Kind::Problem, stray, text.size()});
    }
    countUnits(text, spans);
    return spans;
}

} // namespace orvane
