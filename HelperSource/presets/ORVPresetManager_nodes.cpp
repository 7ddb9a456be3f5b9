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

std::span<const PropertyListValue> childrenOf(const PropertyListValue &node) {
    const PropertyListValue *children = node.find("children");
    return children != nullptr && children->isArray() ? children->array() : std::span<const PropertyListValue>();
}

ItemAttributes attributesOf(const PropertyListValue &node) {
    std::string storage;
    ItemAttributes attributes;
    const std::string_view color = ORVTextView(node.find("color"), storage);
    if (!color.empty()) {
        const long label = ORVFinderLabelForColor(color);
        attributes.label = label == ORVNotFound ? 0 : static_cast<int>(label);
    }
    attributes.mode = ORVPresetManager::modeOfPermissions(ORVTextView(node.find("permissions"), storage));
    return attributes;
}

/// A folder whose contents are being made.
struct OpenFolder {
    const PropertyListValue *node;
    std::span<const PropertyListValue> left; ///< children still to be made
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

    bool make(const PropertyListValue &node) {
        if (!makeNode(node)) {
            return false;
        }
        while (!open.empty()) {
            OpenFolder &folder = open.back();
            if (folder.left.empty()) {
                writer.leaveFolder(attributesOf(*folder.node));
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
        std::string storage;
        name = cleanFilesystemEntities(manager.replaceBracketedKeysReplace(ORVTextView(node.find("filename"), storage), replacePairs));
        if (name.empty()) {
            return false; // deliberately without an error of its own: the last one stays
        }
        const bool made = ORVBoolValue(node.find("isFolder")) ? enter(node) : makeFile(node);
        if (made && manager._ports.progress != nullptr) {
            manager._ports.progress->advanced(1);
        }
        return made;
    }

    bool enter(const PropertyListValue &node) {
        const std::size_t parentLength = path.size();
        if (!writer.enterFolder(name)) {
            manager._setFileCreationError("Unable to create directory " + stringByAppendingPathComponent(path, name) + ".");
            return false;
        }
        if (path.empty() || path.back() != '/') {
            path += '/';
        }
        path += name;
        open.push_back({&node, childrenOf(node), parentLength});
        return true;
    }

    bool makeFile(const PropertyListValue &node) {
        const ItemAttributes attributes = attributesOf(node);
        if (const ContentSource *source = contentOf(node); source != nullptr && writer.copyItem(name, *source, attributes)) {
            return true;
        }
        // Deliberately no message about contents that are missing or cannot be copied: the file is made empty instead.
        if (writer.makeEmptyFile(name, attributes)) {
            return true;
        }
        manager._setFileCreationError("Unable to create file '" + stringByAppendingPathComponent(path, name) + "'.");
        return false;
    }

    const ContentSource *contentOf(const PropertyListValue &node) {
        std::string storage;
        const std::string_view contentFilename = ORVTextView(node.find("contentFilename"), storage);
        if (contentFilename.empty()) {
            return nullptr;
        }
        const std::string folder = stringByAppendingPathComponent(manager.applicationSupportPath(), ORVFileContentFolder);
        return manager._ports.fileSystem.contentSource(stringByAppendingPathComponent(folder, contentFilename));
    }
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
    std::string storage;
    const std::string topName =
        cleanFilesystemEntities(replaceBracketedKeysReplace(ORVTextView(node.find("filename"), storage), replacePairs));
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
    CreationRun run{*this, *writer, replacePairs, stringByAppendingPathComponent(basePath, ""), {}, {}};
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
