#include "presets/ORVPresetManager.h"

#include "presets/ORVFileHelpers.h"
#include "presets/ORVPropertyListReading.h"
#include "presets/ORVUTF16.h"

#include <utility>

// Creation of file nodes: a node and all below it, depth first, each folder finished (label, then mode) after its
// contents. The walk keeps its own stack, so that the depth of a tree is bounded by memory alone.

namespace orvane {

namespace {

constexpr const char *ErrorDomain = "ORVPresetManager";
constexpr std::size_t PermissionUnits = 3;

bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The entries of a node that creation reads, found in one pass; null where the node has none.
struct NodeEntries {
    const PropertyListValue *filename = nullptr;
    const PropertyListValue *isFolder = nullptr;
    const PropertyListValue *children = nullptr;
    const PropertyListValue *color = nullptr;
    const PropertyListValue *permissions = nullptr;
    const PropertyListValue *contentFilename = nullptr;

    explicit NodeEntries(const PropertyListValue &node) {
        for (const PropertyListEntry &entry : node.dictionary()) {
            if (const PropertyListValue **place = _place(entry.key)) {
                *place = &entry.value;
            }
        }
    }
    [[nodiscard]] std::span<const PropertyListValue> childNodes() const {
        return children != nullptr && children->isArray() ? children->array() : std::span<const PropertyListValue>();
    }
    [[nodiscard]] ItemAttributes attributes() const {
        std::string storage;
        ItemAttributes result;
        if (const std::string_view name = ORVTextView(color, storage); !name.empty()) {
            const long label = ORVFinderLabelForColor(name);
            result.label = label == ORVNotFound ? 0 : static_cast<int>(label);
        }
        result.mode = ORVPresetManager::modeOfPermissions(ORVTextView(permissions, storage));
        return result;
    }

private:
    const PropertyListValue **_place(std::string_view key) {
        switch (key.size()) { // tells almost all keys apart
        case 5:
            return key == "color" ? &color : nullptr;
        case 8:
            return key == "filename" ? &filename : key == "isFolder" ? &isFolder : key == "children" ? &children : nullptr;
        case 11:
            return key == "permissions" ? &permissions : nullptr;
        case 15:
            return key == "contentFilename" ? &contentFilename : nullptr;
        default:
            return nullptr;
        }
    }
};

/// A folder whose contents are being made.
struct OpenFolder {
    std::span<const PropertyListValue> left; ///< children still to be made
    ItemAttributes attributes;               ///< for when they are made
    std::size_t pathLength;                  ///< of its parent, in the walk's path
};

} // namespace

/// One walk through a node. The path grows and shrinks with it and serves messages only.
struct ORVPresetManager::CreationRun {
    ORVPresetManager &manager;
    HierarchyWriter &writer;
    std::span<const PromptValueRow> replacePairs;
    std::string path; ///< of the current folder
    std::vector<OpenFolder> open;
    std::string name; ///< of the current node

    CreationRun(ORVPresetManager &owner, HierarchyWriter &destination, std::span<const PromptValueRow> rows, std::string basePath)
        : manager(owner), writer(destination), replacePairs(rows), path(std::move(basePath)) {}

    bool make(const PropertyListValue &node) {
        if (!makeNode(node)) {
            return false;
        }
        while (!open.empty()) {
            OpenFolder &folder = open.back();
            if (folder.left.empty()) {
                writer.leaveFolder(folder.attributes);
                path.resize(folder.pathLength);
                open.pop_back();
                continue;
            }
            const PropertyListValue &child = folder.left.front();
            folder.left = folder.left.subspan(1);
            if (!makeNode(child)) {
                return false;
            }
        }
        return true;
    }

private:
    bool makeNode(const PropertyListValue &node) {
        const NodeEntries entries(node);
        manager._putNameOf(entries.filename, replacePairs, name);
        if (name.empty()) {
            return false; // deliberately without an error of its own: the last one stays
        }
        const bool made = ORVBoolValue(entries.isFolder) ? enter(entries) : makeFile(entries);
        if (made && manager._ports.progress != nullptr) {
            manager._ports.progress->advanced(1);
        }
        return made;
    }

    bool enter(const NodeEntries &entries) {
        const std::size_t parentLength = path.size();
        if (!writer.enterFolder(name)) {
            manager._setFileCreationError("Unable to create directory " + stringByAppendingPathComponent(path, name) + ".");
            return false;
        }
        if (path.empty() || path.back() != '/') {
            path += '/';
        }
        path += name;
        open.push_back({entries.childNodes(), entries.attributes(), parentLength});
        return true;
    }

    bool makeFile(const NodeEntries &entries) {
        const ItemAttributes attributes = entries.attributes();
        std::string storage;
        const ContentSource *source = contentNamed(ORVTextView(entries.contentFilename, storage));
        if (source != nullptr && writer.copyItem(name, *source, attributes)) {
            return true;
        }
        // Deliberately no message about contents that are missing or cannot be copied: the file is made empty instead.
        if (writer.makeEmptyFile(name, attributes)) {
            return true;
        }
        manager._setFileCreationError("Unable to create file '" + stringByAppendingPathComponent(path, name) + "'.");
        return false;
    }

    /// Each name is looked up once: a preset with thousands of copies has few contents.
    const ContentSource *contentNamed(std::string_view contentFilename) {
        if (contentFilename.empty()) {
            return nullptr;
        }
        if (const auto known = contents.find(contentFilename); known != contents.end()) {
            return known->second;
        }
        const std::string folder = stringByAppendingPathComponent(manager.applicationSupportPath(), ORVFileContentFolder);
        const ContentSource *source = manager._ports.fileSystem.contentSource(stringByAppendingPathComponent(folder, contentFilename));
        contents.emplace(contentFilename, source);
        return source;
    }

    std::map<std::string, const ContentSource *, std::less<>> contents; ///< by name; null for one that cannot be copied
};

std::string ORVPresetManager::cleanFilesystemEntities(std::string_view name) {
    std::string result(name);
    for (char &c : result) {
        if (c == ':' || c == '/') {
            c = '_';
        }
    }
    return result;
}

void ORVPresetManager::_putNameOf(const PropertyListValue *filename, std::span<const PromptValueRow> rows, std::string &name) const {
    std::string storage;
    const std::string_view text = ORVTextView(filename, storage);
    if (text.find_first_of("{}\\:/") == std::string_view::npos) { // as most are: nothing to substitute or to clean
        name = text;
    } else {
        name = cleanFilesystemEntities(replaceBracketedKeysReplace(text, rows));
    }
}

std::optional<unsigned> ORVPresetManager::modeOfPermissions(std::string_view permissions) {
    // Three units are 3 to 9 bytes long.
    if (permissions.size() < PermissionUnits || permissions.size() > 3 * PermissionUnits ||
        ORVUTF16Length(permissions) != PermissionUnits) {
        return std::nullopt;
    }
    // What C's "%o" conversion reads (C17, 7.21.6.2): white space, a sign, octal digits.
    while (!permissions.empty() && isSpace(permissions.front())) {
        permissions.remove_prefix(1);
    }
    const bool negative = permissions.starts_with('-');
    if (negative || permissions.starts_with('+')) {
        permissions.remove_prefix(1);
    }
    unsigned mode = 0;
    for (; !permissions.empty() && permissions.front() >= '0' && permissions.front() <= '7'; permissions.remove_prefix(1)) {
        mode = mode * 8 + static_cast<unsigned>(permissions.front() - '0');
    }
    constexpr unsigned ModeBits = 07777;
    return (negative ? 0U - mode : mode) & ModeBits;
}

bool ORVPresetManager::createFileNodeAtBasePathWithReplacePairs(const PropertyListValue &node, std::string_view basePath,
                                                                std::span<const PromptValueRow> replacePairs) {
    _failedHierarchy.reset();
    const bool isFolder = ORVBoolValue(node.find("isFolder"));
    std::string topName;
    _putNameOf(node.find("filename"), replacePairs, topName);
    if (topName.empty()) {
        return false;
    }
    const std::string topPath = stringByAppendingPathComponent(basePath, topName);
    // Folders that are missing on the way are made for a folder, but not for a file.
    std::unique_ptr<HierarchyWriter> writer =
        isFolder || _ports.fileSystem.fileExists(basePath) ? _ports.fileSystem.beginHierarchy(basePath.empty() ? "." : basePath) : nullptr;
    if (!writer) {
        _setFileCreationError(isFolder ? "Unable to create directory " + topPath + "." : "Unable to create file '" + topPath + "'.");
        return false;
    }
    CreationRun run(*this, *writer, replacePairs, stringByAppendingPathComponent(basePath, ""));
    const bool made = run.make(node);
    if (!made) {
        _failedHierarchy = std::move(writer);
        _failedPath = topPath;
    }
    writer.reset();
    _ports.fileSystem.forgetContents();
    return made;
}

const std::string &ORVPresetManager::applicationSupportPath() {
    if (!_applicationSupport) {
        _applicationSupport = ORVApplicationSupportPath(_ports.folders);
    }
    return *_applicationSupport;
}

void ORVPresetManager::_setFileCreationError(std::string message) {
    _fileCreationError = ORVError{ErrorDomain, 0, {{LocalizedDescriptionKey, std::move(message)}}};
}

} // namespace orvane
