#include "DryRunFileSystem.h"

#include "Translation.h"

#include "presets/ORVFileHelpers.h"

#include <cerrno>
#include <climits>
#include <limits>
#include <map>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace orvane {

namespace {

constexpr std::size_t NoFolder = std::numeric_limits<std::size_t>::max();

/// A folder as it would be. Its entries lead to folders by their position in a list, to files by `NoFolder`.
struct PlannedFolder {
    std::map<std::string, std::size_t, std::less<>> entries;
    std::string existingPath; ///< where it stands already; empty for a new one
};

/// What file systems refuse in a name; empty when nothing.
std::string problemOfName(std::string_view name) {
    if (name == "." || name == "..") {
        return localized("this name cannot be used");
    }
    if (name.find('\0') != std::string_view::npos) {
        return localized("a NUL character cannot stand in a name");
    }
    if (name.size() > NAME_MAX) {
        return localized("the name has %1 bytes, at most %2 are possible", {std::to_string(name.size()), std::to_string(NAME_MAX)});
    }
    return {};
}

/// Whether something other than a folder stands there; links count as themselves, as creations take them.
bool isNoFolder(const std::string &path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

} // namespace

class DryRunFileSystem::Writer final : public HierarchyWriter {
public:
    Writer(DryRunFileSystem &owner, std::string_view basePath) : _owner(owner), _basePath(basePath) {
        PlannedFolder base;
        base.existingPath = _basePath;
        _folders.push_back(std::move(base));
        _open.push_back(0);
        _items.push_back(0);
    }

    [[nodiscard]] bool enterFolder(std::string_view name) override {
        if (_owner._topPath.empty()) {
            _owner._topPath = stringByAppendingPathComponent(_basePath, name);
            _checkBase();
        }
        TreeItem &item = _add(name, true, {});
        if (!_baseProblem.empty() && item.problem.empty()) {
            _fail(item, std::exchange(_baseProblem, {}));
        }
        const auto known = _current().entries.find(name);
        if (known != _current().entries.end() && known->second != NoFolder) {
            item.problem = localized("goes into the folder of the same name above");
            _items.push_back(_owner._tree.size() - 1);
            _open.push_back(known->second);
            return true;
        }
        if (known != _current().entries.end()) {
            _fail(item, localized("a file of the same name stands above"));
        }
        _enterNewFolder(name, item);
        _items.push_back(_owner._tree.size() - 1);
        return true;
    }

    void leaveFolder(const ItemAttributes &attributes) override {
        TreeItem &item = _owner._tree[_items.back()];
        item.label = attributes.label;
        item.mode = attributes.mode;
        _items.pop_back();
        _open.pop_back();
    }

    [[nodiscard]] bool copyItem(std::string_view name, const ContentSource &source, const ItemAttributes &attributes) override {
        const Content &content = _owner._contents.at(&source);
        if (content.isMissing) {
            return _makeEmptyFile(name, attributes, content.name);
        }
        if (_current().entries.contains(name) || _standsOnDisk(name) || !problemOfName(name).empty()) {
            return false; // as it would be; an empty file is tried next
        }
        TreeItem &item = _add(name, false, attributes);
        item.content = content.name;
        _current().entries.emplace(name, content.isFolder ? _folders.size() : NoFolder);
        if (content.isFolder) { // is copied as one
            _folders.emplace_back();
        }
        return true;
    }

    [[nodiscard]] bool makeEmptyFile(std::string_view name, const ItemAttributes &attributes) override {
        return _makeEmptyFile(name, attributes, {});
    }

    void removeEverythingMade() override {}
    [[nodiscard]] int lastError() const override { return 0; }

private:
    [[nodiscard]] bool _makeEmptyFile(std::string_view name, const ItemAttributes &attributes, const std::string &missingContent) {
        TreeItem &item = _add(name, false, attributes);
        if (!missingContent.empty()) {
            item.problem = localized("the content file '%1' cannot be read: the file will be empty", {missingContent});
        }
        const auto known = _current().entries.find(name);
        if (known == _current().entries.end()) {
            if (_standsOnDisk(name)) {
                _fail(item, localized("something of that name is already there"));
            }
            _current().entries.emplace(name, NoFolder);
        } else if (known->second == NoFolder) {
            item.problem = localized("empties the file of the same name above");
        } else {
            _fail(item, localized("a folder of the same name stands above"));
        }
        return true;
    }

    PlannedFolder &_current() { return _folders[_open.back()]; }

    [[nodiscard]] bool _standsOnDisk(std::string_view name) {
        const std::string &path = _current().existingPath;
        const std::string whole = path.empty() ? path : stringByAppendingPathComponent(path, name);
        return !path.empty() && (_owner._fileSystem.fileExists(whole) || isNoFolder(whole)); // a link to nothing stands there, too
    }

    TreeItem &_add(std::string_view name, bool isFolder, const ItemAttributes &attributes) {
        TreeItem item;
        item.depth = _open.size() - 1;
        item.name = name;
        item.isFolder = isFolder;
        item.label = attributes.label;
        item.mode = attributes.mode;
        TreeItem &added = _owner._tree.emplace_back(std::move(item));
        if (std::string problem = problemOfName(name); !problem.empty()) {
            _fail(added, std::move(problem));
        }
        return added;
    }

    /// For an item of the current folder.
    void _fail(TreeItem &item, std::string problem) {
        item.problem = std::move(problem);
        _noteFailure(item);
    }

    void _noteFailure(const TreeItem &item) {
        if (!_owner._failure.empty()) {
            return;
        }
        std::string path = _basePath;
        for (std::size_t depth = 1; depth < _items.size(); ++depth) {
            path = stringByAppendingPathComponent(path, _owner._tree[_items[depth]].name);
        }
        path = stringByAppendingPathComponent(path, item.name);
        _owner._failure = item.isFolder ? "Unable to create directory " + path + "." : "Unable to create file '" + path + "'.";
    }

    void _checkBase() {
        if (::access(_basePath.c_str(), W_OK | X_OK) != 0 && errno != ENOENT) {
            _baseProblem = localized("nothing can be made in '%1': %2", {_basePath, textOfError(errno)});
        }
    }

    void _enterNewFolder(std::string_view name, TreeItem &item) {
        PlannedFolder folder;
        if (_standsOnDisk(name)) {
            folder.existingPath = stringByAppendingPathComponent(_current().existingPath, name);
            if (isNoFolder(folder.existingPath) && item.problem.empty()) {
                _fail(item, localized("something of that name is already there"));
            }
            item.problem = item.problem.empty() ? localized("goes into what is already there") : item.problem;
        }
        _current().entries[std::string(name)] = _folders.size();
        _open.push_back(_folders.size());
        _folders.push_back(std::move(folder));
    }

    DryRunFileSystem &_owner;
    std::string _basePath;
    std::string _baseProblem;
    std::vector<PlannedFolder> _folders; ///< the base first
    std::vector<std::size_t> _open;      ///< from the base to the current folder
    std::vector<std::size_t> _items;     ///< the open folders' places in the tree
};

const ContentSource *DryRunFileSystem::contentSource(std::string_view path) {
    const ContentSource *source = _fileSystem.contentSource(path);
    const bool isMissing = source == nullptr;
    if (isMissing) { // handed over like any other, so that every file that wants it can be told from an empty one
        source = _missing.emplace_back(std::make_unique<ContentSource>()).get();
    }
    struct stat status {};
    const bool isFolder = !isMissing && ::stat(std::string(path).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    _contents[source] = {std::string(lastPathComponent(path)), isMissing, isFolder};
    return source;
}

void DryRunFileSystem::forgetContents() {
    _contents.clear();
    _missing.clear();
    _fileSystem.forgetContents();
}

std::unique_ptr<HierarchyWriter> DryRunFileSystem::beginHierarchy(std::string_view basePath) {
    _tree.clear();
    _topPath.clear();
    _failure.clear();
    return std::make_unique<Writer>(*this, basePath);
}

} // namespace orvane
