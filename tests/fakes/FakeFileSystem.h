#pragma once

#include "ports/FileSystem.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// A file system in memory. Tests put items in, let the code under test work, and look at the nodes and at the journal,
// which has one line for every call of the port in the order of the calls:
//
//     fileExists /a/b                      beginHierarchy /a
//     isExecutableFile /a/b                enterFolder top
//     contentSource /store/x               copyItem x.txt <- /store/x label=6 mode=0640
//     forgetContents                       makeEmptyFile empty.txt
//     removeEverythingMade                 leaveFolder top label=2 mode=0755
//
// A label is written when it is not 0, a mode when there is one. There is no working folder: "a/b" is "/a/b".

namespace orvane {

/// One item of a `FakeFileSystem`.
struct FakeNode {
    enum class Type { File, Folder, Link, Special };

    FakeNode() = default;
    FakeNode(const FakeNode &) = delete;
    FakeNode &operator=(const FakeNode &) = delete;
    /// Works level by level, so that a chain of any depth is freed without recursion.
    ~FakeNode() {
        std::vector<std::unique_ptr<FakeNode>> pending;
        const auto take = [&pending](FakeNode &node) {
            for (auto &entry : node.children) {
                pending.push_back(std::move(entry.second));
            }
            node.children.clear();
        };
        take(*this);
        while (!pending.empty()) {
            const auto node = std::move(pending.back());
            pending.pop_back();
            take(*node);
        }
    }

    [[nodiscard]] bool isFile() const { return type == Type::File; }
    [[nodiscard]] bool isFolder() const { return type == Type::Folder; }
    /// Names of the children in byte order.
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto &entry : children) {
            result.push_back(entry.first);
        }
        return result;
    }

    Type type = Type::File;
    std::string contents;                     ///< a file's bytes; a link's target
    int label = 0;                            ///< Finder label as it stands on the item
    unsigned mode = 0644;                     ///< permission bits; 0755 for folders and scripts
    bool readable = true;                     ///< false makes it no content source
    bool madeByWriter = false;                ///< true for what a hierarchy writer made
    std::optional<ItemAttributes> attributes; ///< what the writer applied last; absent while nothing was applied
    std::map<std::string, std::unique_ptr<FakeNode>, std::less<>> children;
};

/// In-memory `FileSystem`; see the top of the file. One thread at a time.
class FakeFileSystem final : public FileSystem {
public:
    FakeFileSystem() { _root.type = FakeNode::Type::Folder; }

    // Putting items in. Missing folders above are made; an item that is there is replaced.

    FakeNode &addFolder(std::string_view path, unsigned mode = 0755) {
        FakeNode &node = _place(path, FakeNode::Type::Folder);
        node.mode = mode;
        return node;
    }
    FakeNode &addFile(std::string_view path, std::string_view contents = {}, unsigned mode = 0644) {
        FakeNode &node = _place(path, FakeNode::Type::File);
        node.contents = contents;
        node.mode = mode;
        return node;
    }
    FakeNode &addScript(std::string_view path, std::string_view contents = "#!/bin/sh\n") { return addFile(path, contents, 0755); }
    FakeNode &addLink(std::string_view path, std::string_view target) {
        FakeNode &node = _place(path, FakeNode::Type::Link);
        node.contents = target;
        return node;
    }
    /// A FIFO, socket or device.
    FakeNode &addSpecial(std::string_view path) { return _place(path, FakeNode::Type::Special); }
    void remove(std::string_view path) {
        const std::vector<std::string> parts = _parts(path);
        if (FakeNode *const parent = parts.empty() ? nullptr : _walk({parts.begin(), parts.end() - 1})) {
            parent->children.erase(parts.back());
        }
    }

    // Looking.

    /// The item at the path itself, links not followed; null when there is none.
    [[nodiscard]] const FakeNode *node(std::string_view path) const { return _walk(_parts(path)); }
    [[nodiscard]] FakeNode *node(std::string_view path) { return const_cast<FakeNode *>(std::as_const(*this).node(path)); }
    /// Everything below the path, one entry each, parents first, in byte order; folders end with "/".
    [[nodiscard]] std::vector<std::string> listing(std::string_view path) const {
        std::vector<std::string> result;
        if (const FakeNode *const top = node(path)) {
            _list(*top, "", result);
        }
        return result;
    }
    [[nodiscard]] const std::vector<std::string> &journal() const { return _journal; }
    /// The journal's lines that begin with that word.
    [[nodiscard]] std::vector<std::string> calls(std::string_view operation) const {
        std::vector<std::string> result;
        for (const std::string &line : _journal) {
            if (line == operation || line.starts_with(std::string(operation) + ' ')) {
                result.push_back(line);
            }
        }
        return result;
    }
    void clearJournal() { _journal.clear(); }

    // Failing. A call that is told to fail changes nothing.

    /// Makes the n-th call from now (counted from 1) of the operation, such as "makeEmptyFile", fail; of any operation
    /// that can fail when `operation` is empty.
    void failCall(std::size_t n, int error = EIO, std::string_view operation = {}) {
        _failures.push_back({n, error, std::string(operation)});
    }
    /// Makes every call that names this item fail: a name for the writer, a path for the file system.
    void failItem(std::string_view nameOrPath, int error = EIO) { _failingItems.insert_or_assign(std::string(nameOrPath), error); }
    /// Runs before each call with the journal's new line, so that a test can interfere from outside.
    std::function<void(const std::string &line)> beforeCall;

    // The port.

    [[nodiscard]] bool fileExists(std::string_view path) override { return _begin("fileExists", path) == 0 && _resolve(path) != nullptr; }
    [[nodiscard]] bool isExecutableFile(std::string_view path) override {
        const FakeNode *const found = _begin("isExecutableFile", path) != 0 ? nullptr : _resolve(path);
        return found != nullptr && (found->isFile() || found->isFolder()) && (found->mode & 0111U) != 0;
    }
    [[nodiscard]] const ContentSource *contentSource(std::string_view path) override {
        if (_begin("contentSource", path) != 0) {
            return nullptr;
        }
        const auto known = _sources.find(path);
        if (known != _sources.end()) {
            return known->second.get();
        }
        const FakeNode *const itself = node(path);
        const FakeNode *const found = _resolve(path);
        const bool usable = found != nullptr && found->readable && (found->isFile() || (found->isFolder() && itself == found));
        auto source = usable ? std::make_unique<Source>(std::string(path), _copyOf(*found)) : nullptr;
        return _sources.emplace(std::string(path), std::move(source)).first->second.get();
    }
    void forgetContents() override {
        _note("forgetContents");
        _sources.clear();
    }
    [[nodiscard]] std::unique_ptr<HierarchyWriter> beginHierarchy(std::string_view basePath) override;

private:
    class Writer;
    /// What a path held when it was asked for; later changes of the file are not seen before `forgetContents()`.
    struct Source final : ContentSource {
        Source(std::string pathOfIt, std::unique_ptr<FakeNode> copy) : path(std::move(pathOfIt)), item(std::move(copy)) {}
        std::string path;
        std::unique_ptr<FakeNode> item;
    };
    struct Failure {
        std::size_t callsLeft;
        int error;
        std::string operation;
    };

    static std::vector<std::string> _parts(std::string_view path) {
        std::vector<std::string> parts;
        while (!path.empty()) {
            const std::size_t end = std::min(path.find('/'), path.size());
            if (end > 0) {
                parts.emplace_back(path.substr(0, end));
            }
            path.remove_prefix(std::min(end + 1, path.size()));
        }
        return parts;
    }
    [[nodiscard]] const FakeNode *_walk(const std::vector<std::string> &parts) const {
        const FakeNode *at = &_root;
        for (const std::string &part : parts) {
            const auto found = at->children.find(part);
            if (found == at->children.end()) {
                return nullptr;
            }
            at = found->second.get();
        }
        return at;
    }
    [[nodiscard]] FakeNode *_walk(const std::vector<std::string> &parts) {
        return const_cast<FakeNode *>(std::as_const(*this)._walk(parts));
    }
    /// Follows links anywhere in the path; null for a missing item, a dangling link and a cycle (more than 40 links,
    /// the number at which Linux gives up).
    [[nodiscard]] const FakeNode *_resolve(std::string_view path) const {
        std::vector<std::string> left = _parts(path);
        std::vector<std::string> done;
        for (int links = 0; !left.empty();) {
            const std::string part = left.front();
            left.erase(left.begin());
            if (part == "." || part == "..") {
                if (const FakeNode *const folder = _walk(done); folder == nullptr || !folder->isFolder()) {
                    return nullptr; // only folders have these
                }
                if (part == ".." && !done.empty()) {
                    done.pop_back();
                }
                continue;
            }
            done.push_back(part);
            const FakeNode *const found = _walk(done);
            if (found == nullptr || links > 40) {
                return nullptr;
            }
            if (found->type == FakeNode::Type::Link) {
                ++links;
                done.pop_back();
                if (found->contents.starts_with('/')) {
                    done.clear();
                }
                std::vector<std::string> target = _parts(found->contents);
                left.insert(left.begin(), target.begin(), target.end());
            }
        }
        return _walk(done);
    }
    FakeNode &_place(std::string_view path, FakeNode::Type type) {
        FakeNode *at = &_root;
        std::vector<std::string> parts = _parts(path);
        for (std::size_t i = 0; i < parts.size(); ++i) {
            auto &child = at->children[parts[i]];
            const bool last = i + 1 == parts.size();
            if (!child || (last && type != FakeNode::Type::Folder)) {
                child = std::make_unique<FakeNode>();
                child->type = last ? type : FakeNode::Type::Folder;
                child->mode = child->isFolder() ? 0755 : 0644;
            }
            at = child.get();
        }
        return *at;
    }
    static std::unique_ptr<FakeNode> _copyOf(const FakeNode &from) {
        auto copy = std::make_unique<FakeNode>();
        copy->type = from.type == FakeNode::Type::Special ? FakeNode::Type::File : from.type;
        copy->contents = from.contents;
        copy->label = from.label;
        copy->mode = from.mode & 0777U;
        copy->readable = from.readable;
        for (const auto &[name, child] : from.children) {
            copy->children.emplace(name, _copyOf(*child));
        }
        return copy;
    }
    static void _list(const FakeNode &folder, const std::string &prefix, std::vector<std::string> &result) {
        for (const auto &[name, child] : folder.children) {
            result.push_back(prefix + name + (child->isFolder() ? "/" : ""));
            _list(*child, prefix + name + "/", result);
        }
    }
    void _note(std::string line) {
        _journal.push_back(std::move(line));
        if (beforeCall) {
            const std::string copy = _journal.back();
            beforeCall(copy);
        }
    }
    /// Notes the call; the error with which it has to fail, or 0.
    int _begin(std::string_view operation, std::string_view item, std::string_view rest = {}) {
        _note(std::string(operation) + ' ' + std::string(item) + std::string(rest));
        int error = 0;
        for (Failure &failure : _failures) {
            if (failure.callsLeft > 0 && (failure.operation.empty() || failure.operation == operation) && --failure.callsLeft == 0) {
                error = failure.error;
            }
        }
        const auto named = _failingItems.find(item);
        return named != _failingItems.end() ? named->second : error;
    }

    FakeNode _root;
    std::map<std::string, std::unique_ptr<Source>, std::less<>> _sources;
    std::vector<std::string> _journal;
    std::vector<Failure> _failures;
    std::map<std::string, int, std::less<>> _failingItems;
};

/// Its writer.
class FakeFileSystem::Writer final : public HierarchyWriter {
public:
    Writer(FakeFileSystem &fileSystem, FakeNode &base) : _fileSystem(fileSystem) { _folders.push_back({&base, ""}); }

    [[nodiscard]] bool enterFolder(std::string_view name) override {
        if (!_mayUse(name, _fileSystem._begin("enterFolder", name))) {
            return false;
        }
        const auto found = _children().find(name);
        if (found == _children().end()) {
            _make(name, FakeNode::Type::Folder);
        } else if (!found->second->isFolder()) {
            return _fail(ENOTDIR);
        }
        _folders.push_back({_children().find(name)->second.get(), std::string(name)});
        return true;
    }
    void leaveFolder(const ItemAttributes &attributes) override {
        _fileSystem._note("leaveFolder " + _folders.back().name + _text(attributes));
        if (_folders.size() > 1) {
            _apply(*_folders.back().node, attributes);
            _folders.pop_back();
        }
    }
    [[nodiscard]] bool copyItem(std::string_view name, const ContentSource &source, const ItemAttributes &attributes) override {
        const auto &from = static_cast<const Source &>(source);
        if (!_mayUse(name, _fileSystem._begin("copyItem", name, " <- " + from.path + _text(attributes)))) {
            return false;
        }
        if (_children().contains(name)) {
            return _fail(EEXIST);
        }
        auto copy = _copyOf(*from.item);
        FakeNode *const made = copy.get();
        _children().emplace(std::string(name), std::move(copy));
        _adopt(_folders.back().node, std::string(name), *made);
        _apply(*made, attributes);
        return true;
    }
    [[nodiscard]] bool makeEmptyFile(std::string_view name, const ItemAttributes &attributes) override {
        if (!_mayUse(name, _fileSystem._begin("makeEmptyFile", name, _text(attributes)))) {
            return false;
        }
        const auto found = _children().find(name);
        if (found != _children().end() && !(found->second->isFile() && _isOurs(*found->second))) {
            return _fail(EEXIST);
        }
        FakeNode &file = found == _children().end() ? _make(name, FakeNode::Type::File) : *found->second;
        file.contents.clear();
        _apply(file, attributes);
        return true;
    }
    void removeEverythingMade() override {
        _fileSystem._note("removeEverythingMade");
        for (; !_made.empty(); _made.pop_back()) {
            auto &siblings = _made.back().parent->children;
            const auto found = siblings.find(_made.back().name);
            if (found != siblings.end() && found->second.get() == _made.back().node && found->second->children.empty()) {
                siblings.erase(found);
            }
        }
    }
    [[nodiscard]] int lastError() const override { return _error; }

    /// Makes a folder above the base; it counts as made by this writer.
    void adoptParent(FakeNode &parent, const std::string &name, FakeNode &child) { _adopt(&parent, name, child); }

private:
    struct Folder {
        FakeNode *node;
        std::string name;
    };
    struct Made {
        FakeNode *parent;
        std::string name;
        const FakeNode *node;
    };

    static std::string _text(const ItemAttributes &attributes) {
        std::string text = attributes.label != 0 ? " label=" + std::to_string(attributes.label) : "";
        if (attributes.mode) {
            text += " mode=0";
            for (int shift = (*attributes.mode & 07000U) != 0 ? 9 : 6; shift >= 0; shift -= 3) {
                text += static_cast<char>('0' + ((*attributes.mode >> static_cast<unsigned>(shift)) & 7U));
            }
        }
        return text;
    }
    [[nodiscard]] decltype(FakeNode::children) &_children() { return _folders.back().node->children; }
    bool _fail(int error) {
        _error = error;
        return false;
    }
    bool _mayUse(std::string_view name, int error) {
        if (error != 0) {
            return _fail(error);
        }
        if (name.empty() || name == "." || name == ".." || name.find('/') != std::string_view::npos ||
            name.find('\0') != std::string_view::npos) {
            return _fail(EINVAL);
        }
        return name.size() <= 255 || _fail(ENAMETOOLONG);
    }
    [[nodiscard]] bool _isOurs(const FakeNode &node) const { return _ours.contains(&node); }
    FakeNode &_make(std::string_view name, FakeNode::Type type) {
        auto node = std::make_unique<FakeNode>();
        FakeNode *const made = node.get();
        made->type = type;
        made->mode = type == FakeNode::Type::Folder ? 0755 : 0644;
        _children().emplace(std::string(name), std::move(node));
        _adopt(_folders.back().node, std::string(name), *made);
        return *made;
    }
    void _adopt(FakeNode *parent, const std::string &name, FakeNode &node) {
        node.madeByWriter = true;
        _made.push_back({parent, name, &node});
        _ours.emplace(&node, true);
        for (auto &[childName, child] : node.children) {
            _adopt(&node, childName, *child);
        }
    }
    static void _apply(FakeNode &node, const ItemAttributes &attributes) {
        node.attributes = attributes;
        node.label = attributes.label != 0 ? attributes.label & 7 : node.label;
        node.mode = attributes.mode.value_or(node.mode);
    }

    FakeFileSystem &_fileSystem;
    std::vector<Folder> _folders;
    std::vector<Made> _made;
    std::map<const FakeNode *, bool> _ours;
    int _error = 0;
};

inline std::unique_ptr<HierarchyWriter> FakeFileSystem::beginHierarchy(std::string_view basePath) {
    if (_begin("beginHierarchy", basePath) != 0) {
        return nullptr;
    }
    const std::vector<std::string> parts = _parts(basePath);
    std::string path;
    std::vector<std::string> missing;
    for (const std::string &part : parts) {
        path += '/' + part;
        const FakeNode *const found = _resolve(path);
        if (found == nullptr && node(path) == nullptr) {
            missing.push_back(path);
        } else if (found == nullptr || !found->isFolder()) {
            return nullptr;
        }
    }
    for (const std::string &each : missing) {
        addFolder(each);
    }
    auto writer = std::make_unique<Writer>(*this, const_cast<FakeNode &>(*_resolve(basePath)));
    for (const std::string &each : missing) {
        const std::size_t slash = each.rfind('/');
        writer->adoptParent(*node(each.substr(0, slash)), each.substr(slash + 1), *node(each));
    }
    return writer;
}

} // namespace orvane
