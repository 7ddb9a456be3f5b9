#pragma once

#include "ports/FileSystem.h"
#include "ports/FinderInformation.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace orvane {

/// What a creation would find for a content file's name.
enum class ORVContentState {
    Usable,
    UsableFolder, ///< a folder, which is copied with all below it
    Missing,      ///< nothing has that name
    DeadLink,     ///< a symbolic link that leads nowhere or in a circle
    LinkToFolder, ///< a symbolic link to a folder, which gives an empty file
    Unusable      ///< there, but not readable, or a FIFO, socket or device
};

/// What a creation would find for a script's name.
enum class ORVScriptState {
    Usable,
    Missing,
    Folder,             ///< a folder has that name
    NotExecutable,      ///< a file without permission to execute it
    NoInterpreterLine,  ///< a file that starts neither with "#!" nor as a program of this system
    InterpreterMissing, ///< the program after "#!" is missing or not executable
};

/// Where a preset's content files and scripts are looked up. One thread at a time.
class ORVPresetResources {
public:
    virtual ~ORVPresetResources() = default;
    /// `name` as it stands in the preset, not empty.
    [[nodiscard]] virtual ORVContentState stateOfContent(std::string_view name) = 0;
    [[nodiscard]] virtual ORVScriptState stateOfScript(std::string_view name) = 0;
};

/// Those of the support folder. Lets go of the file system's content sources now and then, so that a preset with very many
/// content files does not use up the descriptors: no hierarchy may be in the making on the same file system.
class ORVStoredResources final : public ORVPresetResources {
public:
    /// Gives the first bytes of the file at a path (up to the number), or nothing when it cannot be read.
    using HeadReader = std::function<std::optional<std::string>(const std::string &path, std::size_t bytes)>;

    /// The ports are borrowed. `supportPath` is the support folder.
    ORVStoredResources(FileSystem &fileSystem, FinderInformation &finderInformation, std::string supportPath, HeadReader readHead);
    ~ORVStoredResources() override;
    ORVStoredResources(const ORVStoredResources &) = delete;
    ORVStoredResources &operator=(const ORVStoredResources &) = delete;

    [[nodiscard]] ORVContentState stateOfContent(std::string_view name) override;
    [[nodiscard]] ORVScriptState stateOfScript(std::string_view name) override;

private:
    [[nodiscard]] ORVContentState _lookUpContent(const std::string &path);
    [[nodiscard]] ORVScriptState _stateOfInterpreterLine(std::string_view head);

    FileSystem &_fileSystem;
    FinderInformation &_finderInformation;
    std::string _supportPath;
    HeadReader _readHead;
    std::unordered_map<std::string, ORVContentState> _contents; ///< answers so far by name
    std::size_t _sourcesHeld = 0;
};

/// What a script's first bytes say: `Usable` for a program of this system (ELF), the interpreter's path after "#!" in
/// `interpreter` for a script.
[[nodiscard]] ORVScriptState ORVScriptStateOfHead(std::string_view head, std::string &interpreter);

} // namespace orvane
