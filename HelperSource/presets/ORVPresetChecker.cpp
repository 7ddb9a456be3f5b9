#include "presets/ORVPresetChecker.h"

#include "ports/Sentence.h"
#include "presets/ORVCheckedNames.h"
#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetManager.h"
#include "presets/ORVPropertyListReading.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>

// A preset is walked twice, both times with a stack of its own: first to learn its variables, because what a backslash or
// a brace in a name means depends on whether there are any; then to look at every key of every node.

namespace orvane {

namespace {

constexpr std::array<std::string_view, 4> PresetKeys = {"label", "directoryName", "fileHierarchy", "scriptFile"};
constexpr std::array<std::string_view, 6> NodeKeys = {"filename", "isFolder", "children", "color", "permissions", "contentFilename"};

/// A binary property list can name one array as the contents of many folders, and so hold more items in a kilobyte than any
/// disk. Trees beyond this size are taken for such.
constexpr std::size_t MostItems = 2'000'000;

const char *nameOfType(const PropertyListValue &value) {
    constexpr std::array<const char *, 11> names = {"nothing", "a boolean", "an integer", "a real number", "a date",      "a UID",
                                                    "data",    "a string",  "an array",   "a set",         "a dictionary"};
    return names[static_cast<std::size_t>(value.type())];
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\n\v\f\r") == std::string_view::npos;
}

bool isOctal(std::string_view text) {
    return text.find_first_not_of("01234567") == std::string_view::npos;
}

std::string octal(unsigned mode) {
    std::string digits;
    for (int shift = mode > 0777 ? 9 : 6; shift >= 0; shift -= 3) {
        digits += static_cast<char>('0' + ((mode >> static_cast<unsigned>(shift)) & 7U));
    }
    return digits;
}

bool hasParentComponent(std::string_view path) {
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        if (path.substr(0, end) == "..") {
            return true;
        }
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return false;
}

struct ContentText {
    ORVContentState state;
    const char *text;
};
constexpr std::array<ContentText, 4> ContentTexts = {{
    {ORVContentState::Missing, "there is no content file '%1': the file will be empty"},
    {ORVContentState::DeadLink, "the content file '%1' is a link that leads nowhere: the file will be empty"},
    {ORVContentState::LinkToFolder, "the content file '%1' is a link to a folder: the file will be empty"},
    {ORVContentState::Unusable, "the content file '%1' is not readable, or no ordinary file: the file will be empty"},
}};

struct ScriptText {
    ORVScriptState state;
    ORVProblemSeverity severity;
    const char *text;
};
constexpr std::array<ScriptText, 5> ScriptTexts = {{
    {ORVScriptState::Missing, ORVProblemSeverity::Error, "there is no script '%1'"},
    {ORVScriptState::Folder, ORVProblemSeverity::Error, "'%1' is a folder, not a script"},
    {ORVScriptState::NotExecutable, ORVProblemSeverity::Error, "the script '%1' is not executable"},
    {ORVScriptState::NoInterpreterLine, ORVProblemSeverity::Warning,
     "the script '%1' starts neither with an interpreter line (#!) nor as a program: most likely it cannot be run"},
    {ORVScriptState::InterpreterMissing, ORVProblemSeverity::Error,
     "the interpreter in the first line of the script '%1' is missing or not executable"},
}};

/// Texts by whether a wrong type loses the value or is read all the same.
constexpr const char *WrongTypeRead = "is %1, not %2: it is read as '%3'";
constexpr const char *WrongTypeLost = "is %1, not %2: it counts as absent";

/// A folder of the tree while its children are looked at.
struct Frame {
    const PropertyListValue *node;
    std::span<const PropertyListValue> children;
    std::size_t next = 0;
    ORVSiblingNames siblings = {};
};

std::span<const PropertyListValue> childrenOf(const PropertyListValue &node) {
    const PropertyListValue *children = node.find("children");
    return children != nullptr && children->isArray() ? children->array() : std::span<const PropertyListValue>();
}

bool isFolder(const PropertyListValue &node) {
    return ORVBoolValue(node.find("isFolder"));
}

std::string quotedName(const PropertyListValue &node) {
    const std::string name = ORVTextValue(node.find("filename"));
    return name.empty() ? "" : " \"" + name + "\"";
}

} // namespace

/// The checking of one preset.
struct ORVPresetChecker::Run {
    ORVPresetChecker &checker;
    const PropertyListValue &preset;
    std::vector<ORVPresetProblem> problems = {};
    ORVProblemPlace place = {}; ///< of the node that is looked at
    ORVVariableUse variables = {};
    std::unordered_map<std::string, ORVContentState> contents = {}; ///< that were asked about

    /// Asked once for each name: many nodes may share a content file.
    ORVContentState stateOfContent(const std::string &name) {
        const auto known = contents.find(name);
        return known != contents.end() ? known->second : contents.emplace(name, checker._resources.stateOfContent(name)).first->second;
    }

    void add(ORVProblemSeverity severity, std::string_view key, const char *format, std::vector<std::string> arguments = {}) {
        ORVPresetProblem problem{severity, place, format, std::move(arguments), false};
        problem.place.key = key;
        problems.push_back(std::move(problem));
    }

    void checkAll() {
        if (!preset.isDictionary()) {
            add(ORVProblemSeverity::Error, "", "the preset is %1, not a dictionary", {nameOfType(preset)});
            return;
        }
        const bool hasSoundSize = gatherVariables();
        checkLabel();
        checkDirectoryName();
        checkScript();
        checkUnknownKeys(preset, PresetKeys);
        if (hasSoundSize) {
            checkTree();
        } else {
            add(ORVProblemSeverity::Error, "fileHierarchy", "the tree has more than %1 items: it is not looked at any further",
                {std::to_string(MostItems)});
            problems.back().neverEnds = true;
        }
        place = {};
        checkVariables();
    }

    // The preset's own keys.

    /// The text under a key. A value of another type is told of; nothing when there is no text in it.
    std::optional<std::string> textOf(const PropertyListValue &dictionary, std::string_view key) {
        const PropertyListValue *value = dictionary.find(key);
        if (value == nullptr) {
            return std::nullopt;
        }
        if (value->isString()) {
            return std::string(value->string());
        }
        if (!ORVHasText(value)) {
            add(ORVProblemSeverity::Error, key, WrongTypeLost, {nameOfType(*value), "a string"});
            return std::nullopt;
        }
        std::string text = ORVTextValue(value);
        add(ORVProblemSeverity::Warning, key, WrongTypeRead, {nameOfType(*value), "a string", text});
        return text;
    }

    void checkLabel() {
        const auto label = textOf(preset, "label");
        if (!label) {
            add(ORVProblemSeverity::Warning, "label", "the preset has no label: menus show the name of its folder");
        } else if (isBlank(*label)) {
            add(ORVProblemSeverity::Warning, "label", "the label is empty");
        } else if (const auto known = checker._labels.find(*label); known != checker._labels.end() && known->second > 1) {
            add(ORVProblemSeverity::Warning, "label", "%1 presets have the label '%2'", {std::to_string(known->second), *label});
        }
    }

    void checkDirectoryName() {
        const std::string name = textOf(preset, "directoryName").value_or("");
        if (name.empty()) {
            add(ORVProblemSeverity::Error, "directoryName", "the top-level folder has no name");
            return;
        }
        addNameProblems("directoryName", ORVCheckFolderName(name, variables));
    }

    void addNameProblems(std::string_view key, std::vector<ORVNameProblem> found) {
        for (ORVNameProblem &problem : found) {
            add(problem.severity, key, problem.format, std::move(problem.arguments));
            problems.back().neverEnds = problem.neverEnds;
        }
    }

    void checkScript() {
        const std::string script = textOf(preset, "scriptFile").value_or("");
        if (script.empty()) {
            return;
        }
        if (script.find('/') != std::string::npos) {
            add(ORVProblemSeverity::Warning, "scriptFile",
                hasParentComponent(script) ? "'%1' leads out of the scripts folder" : "'%1' is a path, not a file name", {script});
        }
        const ORVScriptState state = checker._resources.stateOfScript(script);
        for (const ScriptText &each : ScriptTexts) {
            if (each.state == state) {
                add(each.severity, "scriptFile", each.text, {script});
            }
        }
    }

    void checkUnknownKeys(const PropertyListValue &dictionary, std::span<const std::string_view> known) {
        for (const PropertyListEntry &entry : dictionary.dictionary()) {
            if (std::find(known.begin(), known.end(), entry.key) == known.end()) {
                add(ORVProblemSeverity::Note, entry.key, "the key '%1' is not known and not used", {std::string(entry.key)});
            }
        }
    }

    // The tree.

    /// False when there are too many items; their variables are then not known.
    bool gatherVariables() {
        variables.add(ORVTextValue(preset.find("directoryName")), {});
        const PropertyListValue *root = preset.find("fileHierarchy");
        if (root == nullptr || !root->isDictionary()) {
            return true;
        }
        std::vector<Frame> open;
        open.push_back({root, childrenOf(*root)});
        std::size_t items = 0;
        ORVProblemPlace at{true, {}, "filename"};
        std::string storage;
        while (!open.empty()) {
            Frame &frame = open.back();
            if (frame.next == frame.children.size()) {
                open.pop_back();
                continue;
            }
            at.children.resize(open.size());
            at.children.back() = static_cast<std::uint32_t>(frame.next);
            const PropertyListValue &node = frame.children[frame.next++];
            if (++items > MostItems) {
                return false;
            }
            const std::string_view name = ORVTextView(node.find("filename"), storage);
            if (name.find('{') != std::string_view::npos) {
                variables.add(ORVPresetManager::cleanFilesystemEntities(name), at);
            }
            if (isFolder(node)) {
                open.push_back({&node, childrenOf(node)});
            }
        }
        return true;
    }

    void checkTree() {
        const PropertyListValue *root = preset.find("fileHierarchy");
        if (root == nullptr) {
            return;
        }
        if (!root->isDictionary()) {
            add(ORVProblemSeverity::Error, "fileHierarchy", WrongTypeLost, {nameOfType(*root), "a dictionary"});
            return;
        }
        place.isInTree = true;
        checkUnknownKeys(*root, NodeKeys);
        checkRoot(*root);
        std::vector<Frame> open;
        open.push_back({root, childrenOf(*root)});
        while (!open.empty()) {
            Frame &frame = open.back();
            if (frame.next == frame.children.size()) {
                open.pop_back();
                continue;
            }
            place.children.resize(open.size());
            place.children.back() = static_cast<std::uint32_t>(frame.next);
            const PropertyListValue &node = frame.children[frame.next];
            checkNode(node, frame);
            ++frame.next;
            if (isFolder(node)) {
                open.push_back({&node, childrenOf(node)});
            }
        }
    }

    void checkRoot(const PropertyListValue &root) {
        checkChildrenType(root);
        for (const std::string_view key : {"color", "permissions", "contentFilename"}) {
            if (ORVHasText(root.find(key)) && !ORVTextValue(root.find(key)).empty()) {
                add(ORVProblemSeverity::Note, key, "the top-level folder takes none: it is not used");
            }
        }
    }

    void checkNode(const PropertyListValue &node, Frame &folder) {
        if (!node.isDictionary()) {
            add(ORVProblemSeverity::Error, "", "the item is %1, not a dictionary: the creation will fail", {nameOfType(node)});
            return;
        }
        checkFilename(node, folder);
        checkIsFolder(node);
        checkChildrenType(node);
        checkColor(node);
        checkPermissions(node);
        checkContent(node);
        checkUnknownKeys(node, NodeKeys);
    }

    void checkFilename(const PropertyListValue &node, Frame &folder) {
        const std::string name = textOf(node, "filename").value_or("");
        if (name.empty()) {
            add(ORVProblemSeverity::Error, "filename", "the name is empty: the creation will fail");
            return;
        }
        addNameProblems("filename", ORVCheckNodeName(name, variables));
        if (auto clash = folder.siblings.add(name, folder.next, kindOf(node), variables, checker._textCase)) {
            add(clash->severity, "filename", clash->format, std::move(clash->arguments));
        }
    }

    ORVSiblingKind kindOf(const PropertyListValue &node) {
        if (isFolder(node)) {
            return ORVSiblingKind::Folder;
        }
        const std::string content = ORVTextValue(node.find("contentFilename"));
        if (content.empty()) {
            return ORVSiblingKind::EmptyFile;
        }
        const bool isCopiedFolder = stateOfContent(content) == ORVContentState::UsableFolder;
        return isCopiedFolder ? ORVSiblingKind::CopiedFolder : ORVSiblingKind::FileWithContents;
    }

    void checkIsFolder(const PropertyListValue &node) {
        const PropertyListValue *value = node.find("isFolder");
        if (value != nullptr && value->type() != PropertyListType::Boolean) {
            add(ORVProblemSeverity::Warning, "isFolder", WrongTypeRead,
                {nameOfType(*value), "a boolean", ORVBoolValue(value) ? "true" : "false"});
        }
    }

    void checkChildrenType(const PropertyListValue &node) {
        const PropertyListValue *children = node.find("children");
        if (children == nullptr) {
            return;
        }
        if (!children->isArray()) {
            add(ORVProblemSeverity::Error, "children", WrongTypeLost, {nameOfType(*children), "an array"});
        } else if (!children->array().empty() && !place.children.empty() && !isFolder(node)) {
            add(ORVProblemSeverity::Error, "children", "a file has no contents of its own: %1 items will not be made",
                {std::to_string(children->array().size())});
        }
    }

    void checkColor(const PropertyListValue &node) {
        const auto color = textOf(node, "color");
        if (color && !color->empty() && ORVFinderLabelForColor(*color) == ORVNotFound) {
            add(ORVProblemSeverity::Warning, "color", "'%1' is no label colour: no label will be set", {*color});
        }
    }

    void checkPermissions(const PropertyListValue &node) {
        const auto permissions = textOf(node, "permissions");
        if (!permissions || permissions->empty()) {
            return;
        }
        const auto mode = ORVPresetManager::modeOfPermissions(*permissions);
        if (!mode) {
            add(ORVProblemSeverity::Warning, "permissions", "'%1' is not three digits long: permissions will not be set", {*permissions});
        } else if (!isOctal(*permissions)) {
            add(ORVProblemSeverity::Warning, "permissions", "'%1' is not three octal digits: the mode will be %2",
                {*permissions, octal(*mode)});
        }
    }

    void checkContent(const PropertyListValue &node) {
        const std::string name = textOf(node, "contentFilename").value_or("");
        if (name.empty()) {
            return;
        }
        if (isFolder(node)) {
            add(ORVProblemSeverity::Warning, "contentFilename", "a folder takes no content file: '%1' is not used", {name});
            return;
        }
        if (name.find('/') != std::string::npos) {
            add(ORVProblemSeverity::Warning, "contentFilename",
                hasParentComponent(name) ? "'%1' leads out of the content folder" : "'%1' is a path, not a file name", {name});
        }
        const ORVContentState state = stateOfContent(name);
        for (const ContentText &each : ContentTexts) {
            if (each.state == state) {
                add(ORVProblemSeverity::Error, "contentFilename", each.text, {name});
            }
        }
    }

    void checkVariables() {
        const bool hasScript = !ORVTextValue(preset.find("scriptFile")).empty();
        for (ORVVariableProblem &problem : variables.problems(hasScript, checker._textCase)) {
            problems.push_back(
                {ORVProblemSeverity::Warning, std::move(problem.place), problem.format, std::move(problem.arguments), false});
        }
    }
};

const char *ORVNameOfSeverity(ORVProblemSeverity severity) {
    switch (severity) {
    case ORVProblemSeverity::Note:
        return "note";
    case ORVProblemSeverity::Warning:
        return "warning";
    case ORVProblemSeverity::Error:
        break;
    }
    return "error";
}

std::string ORVPresetProblem::text() const {
    return textWithArguments(format, arguments);
}

std::string ORVTextOfPlace(const ORVProblemPlace &place, const PropertyListValue &preset) {
    if (!place.isInTree) {
        return place.key;
    }
    std::string text = "fileHierarchy";
    const PropertyListValue *root = preset.find("fileHierarchy");
    PropertyListValue node = root == nullptr ? PropertyListValue() : *root;
    for (const std::uint32_t child : place.children) {
        const auto children = childrenOf(node);
        node = child < children.size() ? children[child] : PropertyListValue();
        text += "/children[" + std::to_string(child) + "]" + quotedName(node);
    }
    return place.key.empty() ? text : text + "/" + place.key;
}

void ORVPresetChecker::rememberLabels(const PropertyListValue &presets) {
    _labels.clear();
    for (const PropertyListValue &preset : presets.array()) {
        if (const PropertyListValue *label = preset.find("label"); ORVHasText(label)) {
            ++_labels[ORVTextValue(label)];
        }
    }
}

std::vector<ORVPresetProblem> ORVPresetChecker::checkPreset(const PropertyListValue &preset) {
    Run run{*this, preset};
    run.checkAll();
    return std::move(run.problems);
}

std::span<const std::string_view> ORVKnownPresetKeys() {
    return PresetKeys;
}

std::span<const std::string_view> ORVKnownNodeKeys() {
    return NodeKeys;
}

} // namespace orvane
