#include "VariableMaking.h"

#include "VariableIndex.h"

#include "presets/ORVImportedNames.h"
#include "presets/ORVNameTemplate.h"
#include "presets/ORVPresetManager.h"

#include <string_view>
#include <vector>

namespace orvane {

namespace {

/// The template with the key in place of the text, in what stands between its keys.
std::string withKeyForText(const std::string &name, bool isDirectoryName, std::string_view text, std::string_view key) {
    const std::string scanned = isDirectoryName ? name : ORVPresetManager::cleanFilesystemEntities(name); // byte for byte as long
    std::string result;
    std::size_t done = 0;
    const auto replaceUntil = [&](std::size_t end) {
        for (std::size_t found = name.find(text, done); found != std::string::npos && found + text.size() <= end;
             found = name.find(text, found)) {
            const bool isEscaped = found > 0 && name[found - 1] == '\\';
            result.append(name, done, found - done).append(isEscaped ? text : key);
            done = found += text.size();
        }
        result.append(name, done, end - done);
        done = end;
    };
    for (const ORVTemplateKey &each : ORVScanTemplate(scanned).keys) {
        replaceUntil(each.begin);
        result.append(name, each.begin, each.end - each.begin);
        done = each.end;
    }
    replaceUntil(name.size());
    return result;
}

/// The preset and the nodes of its tree, with their templates.
struct Names {
    std::vector<ItemID> items;
    std::vector<std::string> templates;
};

Names namesOf(const PresetDocument &document, ItemID preset) {
    Names names{{preset}, {document.text(preset, "directoryName")}};
    document.forEachBelow(document.treeOf(preset), [&](ItemID node) {
        names.items.push_back(node);
        names.templates.push_back(document.filename(node));
        return document.isFolder(node);
    });
    return names;
}

} // namespace

VariableMade makeVariable(PresetDocument &document, ItemID preset, const std::string &text, const std::string &name) {
    if (!ORVIsVariableName(name)) {
        return {VariableMaking::BadName};
    }
    if (text.empty() || text.find_first_of("{}\\") != std::string::npos) {
        return {VariableMaking::BadText};
    }
    const Names names = namesOf(document, preset);
    std::vector<std::string> templates;
    if (VariableIndex(document).variablesOfPreset(preset).empty()) {
        templates = ORVImportNames(names.templates, {{text, name}}).templates; // they have been names so far
    } else {
        const std::string key = std::string(ORVOpenTag).append(name).append(ORVCloseTag);
        for (std::size_t i = 0; i < names.items.size(); ++i) {
            templates.push_back(withKeyForText(names.templates[i], i == 0, text, key));
        }
    }
    const EditHistory::Step step(document.history(), "Make Variable");
    VariableMade made;
    for (std::size_t i = 0; i < names.items.size(); ++i) {
        if (templates[i] != names.templates[i]) {
            document.setText(names.items[i], i == 0 ? "directoryName" : "filename", templates[i], false);
            ++made.names;
        }
    }
    made.outcome = made.names == 0 ? VariableMaking::NotFound : VariableMaking::Done;
    return made;
}

} // namespace orvane
