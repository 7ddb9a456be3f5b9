#pragma once

#include "ports/PropertyList.h"
#include "presets/ORVPresetManager.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace orvane::bench {

/// Shape of a hierarchy: 30 % folders and a file system's usual depth, a fifth of the names with variables.
struct TreeShape {
    std::size_t nodes = 0;
    bool hasContents = false; ///< half of the files name a content file, else all are empty
};

/// A root node with so many nodes below it, the same for every call with the same shape.
[[nodiscard]] PropertyList treeOfShape(TreeShape shape);
/// Preferences with `count` presets, each with a tree of that shape.
[[nodiscard]] PropertyList preferencesWithPresets(std::size_t count, TreeShape shape);
/// Rows for the variables that those trees use.
[[nodiscard]] std::vector<PromptValueRow> rowsOfTrees();
/// Name of the content file that those trees use.
inline constexpr const char *ContentName = "Content.txt";

/// A folder in memory (/dev/shm) that goes, with everything in it, when this does.
class ScratchFolder {
public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder &) = delete;
    ScratchFolder &operator=(const ScratchFolder &) = delete;
    ~ScratchFolder();
    [[nodiscard]] const std::string &path() const { return _path; }

private:
    std::string _path;
};

/// A manager over a real file system and over surroundings that do nothing: what is measured is the engine and the disk.
class Engine {
public:
    /// `supportFolder` becomes the home of the support folder; the file system is the caller's.
    Engine(FileSystem &fileSystem, std::string supportFolder);
    Engine(const Engine &) = delete;
    Engine &operator=(const Engine &) = delete;
    ~Engine();
    [[nodiscard]] ORVPresetManager &manager() const { return *_manager; }

private:
    struct Surroundings;
    std::unique_ptr<Surroundings> _surroundings;
    std::unique_ptr<ORVPresetManager> _manager;
};

} // namespace orvane::bench
