#include "FolderImport.h"

#include "FolderWalk.h"

#include "platform/posix/FileDescriptor.h"
#include "ports/FinderLabel.h"
#include "presets/ORVPresetChecker.h"
#include "presets/ORVPresetFile.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace orvane {

namespace {

// What a creation gives under the usual mask of 022.
constexpr mode_t UsualFolderMode = 0755;
constexpr mode_t UsualFileMode = 0644;

/// Takes the contents of files into the store.
class ContentTaker {
public:
    ContentTaker(FolderWalk &walk, ResourceFolder *store) : _walk(walk), _store(store) {}

    void take(int folder, std::size_t item) {
        if (_store == nullptr || failed()) {
            return;
        }
        WalkedItem &file = _walk.items()[item];
        constexpr int Flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
        const FileDescriptor source(uninterrupted([&] { return ::openat(folder, file.name.c_str(), Flags); }));
        struct stat status {};
        if (!source || ::fstat(source.get(), &status) != 0) {
            _walk.warnings().push_back(
                {forTranslation("%1: its contents are left out: %2"), {_walk.pathOfItem(item), Sentence::ofError(errno)}});
            return;
        }
        if (!S_ISREG(status.st_mode) || status.st_size == 0) {
            return;
        }
        // Names in folders can be 255 bytes long; in the store they leave room for numbers.
        auto name = _store->addFile(ORVSafeFileName(file.name), source.get(), file.mode);
        if (name) {
            file.contentFilename = std::move(*name);
        } else {
            _problem = {forTranslation("the contents of %1 cannot be stored: %2"), {_walk.pathOfItem(item), Sentence::ofError(errno)}};
        }
    }

    /// Whether the store failed, and why.
    [[nodiscard]] bool failed() const { return !_problem.isEmpty(); }
    [[nodiscard]] const Sentence &problem() const { return _problem; }

private:
    FolderWalk &_walk;
    ResourceFolder *_store;
    Sentence _problem;
};

std::string octalText(mode_t mode) {
    return {static_cast<char>('0' + ((mode >> 6U) & 7U)), static_cast<char>('0' + ((mode >> 3U) & 7U)),
            static_cast<char>('0' + (mode & 7U))};
}

/// The tree's nodes, made from the last to the first, so that each folder's children are there before it.
PropertyListValue treeOf(PropertyListBuilder &builder, const std::vector<WalkedItem> &items, const std::vector<std::string> &templates) {
    std::vector<std::vector<PropertyListValue>> children(items.size());
    for (std::size_t i = items.size(); i-- > 0;) {
        const WalkedItem &item = items[i];
        std::vector<PropertyListEntry> entries;
        if (i > 0) {
            entries.push_back({"filename", builder.string(templates[i])});
        }
        entries.push_back({"isFolder", PropertyListValue::ofBoolean(item.isFolder)});
        if (!children[i].empty()) {
            const std::vector<PropertyListValue> inOrder(children[i].rbegin(), children[i].rend());
            entries.push_back({"children", builder.array(inOrder)});
            children[i] = {};
        }
        if (i > 0 && item.label > 0) {
            entries.push_back({"color", builder.string(FinderLabelColors[static_cast<std::size_t>(item.label)])});
        }
        if (i > 0 && item.mode != (item.isFolder ? UsualFolderMode : UsualFileMode)) {
            entries.push_back({"permissions", builder.string(octalText(item.mode))});
        }
        if (!item.contentFilename.empty()) {
            entries.push_back({"contentFilename", builder.string(item.contentFilename)});
        }
        const PropertyListValue node = builder.dictionary(entries);
        if (i == 0) {
            return node;
        }
        children[item.parent].push_back(node);
    }
    return {};
}

ImportedFolder presetOf(FolderWalk &walk, const FolderImportOptions &options) {
    std::vector<std::string> names;
    for (const WalkedItem &item : walk.items()) {
        names.push_back(item.name);
    }
    const ORVImportedNames imported = ORVImportNames(names, options.variables);
    std::vector<Sentence> warnings = std::move(walk.warnings());
    const WalkedItem &top = walk.items().front();
    if (top.label != 0 || top.mode != UsualFolderMode) {
        warnings.push_back({forTranslation("%1: a preset's top-level folder takes no label and no permissions of its own"), {top.name}});
    }
    for (const ORVImportedNameProblem &problem : imported.problems) {
        const std::vector<Sentence> arguments(problem.arguments.begin(), problem.arguments.end());
        warnings.push_back(Sentence::withReason(walk.pathOfItem(problem.name), {problem.format, arguments}));
    }
    PropertyListBuilder builder;
    const std::vector<PropertyListEntry> preset{{"label", builder.string(options.label)},
                                                {"directoryName", builder.string(imported.templates.front())},
                                                {"fileHierarchy", treeOf(builder, walk.items(), imported.templates)}};
    return {builder.finish(builder.dictionary(preset)), std::move(warnings)};
}

} // namespace

std::optional<ImportedFolder> importFolder(const FolderImportOptions &options, FinderInformation &finderInformation, Sentence &why) {
    FolderWalk walk(finderInformation);
    walk.setShouldStop(options.shouldStop);
    ContentTaker contents(walk, options.contentStore);
    const bool walked = walk.walk(
        options.folder, options.name, [&](int folder, std::size_t item) { contents.take(folder, item); }, why);
    if (walked && contents.failed()) {
        why = contents.problem();
    }
    return walked && !contents.failed() ? std::optional(presetOf(walk, options)) : std::nullopt;
}

} // namespace orvane
