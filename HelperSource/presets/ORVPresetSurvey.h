#pragma once

#include "ports/PropertyList.h"

#include <cstddef>
#include <memory_resource>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

// One look at everything in a preset, before anything is made: what its names ask for, and how large its parts are.

namespace orvane {

/// What a walk through nodes finds.
class ORVTreeSurvey {
public:
    /// Names of variables are appended to the list, unless already there.
    explicit ORVTreeSurvey(std::vector<std::string> &variableNames) : _names(variableNames) {}

    /// Walks through the nodes and all below them, depth first and without recursion; to its end, or to the first template
    /// whose scan for variables never ends. Once.
    void walk(std::span<const PropertyListValue> nodes);

    /// Folders and files seen; those of a list that stands in several places as often as it does, up to the largest number.
    [[nodiscard]] std::size_t nodes() const { return _nodes; }
    /// The cleaned name that ended the walk.
    [[nodiscard]] const std::optional<std::string> &endless() const { return _endless; }

    /// How many nodes lie in a folder with these children, at any depth; 0 for less than `LeastLarge`.
    [[nodiscard]] std::size_t sizeOf(std::span<const PropertyListValue> children) const;
    static constexpr std::size_t LeastLarge = 6;

private:
    /// A folder that is walked through.
    struct Pending {
        std::span<const PropertyListValue> left;
        const void *children;
        std::size_t nodesBefore;
    };
    void _count(std::size_t nodes);
    void _look(std::string_view filename);
    void _add(std::string name);
    [[nodiscard]] bool _contains(const std::string &name);

    std::vector<std::string> &_names;
    std::unordered_set<std::string> _index; ///< of the names, once there are many
    std::size_t _nodes = 0;
    std::optional<std::string> _endless;
    std::pmr::monotonic_buffer_resource _memory; ///< of `_large`, which only grows
    /// Nodes in the large folders by the address of their children. A list that several folders share (binary property lists can
    /// double a tree with every level in that way) is walked through once.
    std::pmr::unordered_map<const void *, std::size_t> _large{&_memory};
};

/// What a whole preset says. The preset must outlive it.
struct ORVPresetSurvey {
    explicit ORVPresetSurvey(const PropertyListValue &preset);
    ORVPresetSurvey(const ORVPresetSurvey &) = delete;
    ORVPresetSurvey &operator=(const ORVPresetSurvey &) = delete;

    /// The names that the prompt asks for: those of the folder name with duplicates, then new ones of the tree. Incomplete when
    /// a scan never ends.
    std::vector<std::string> variableNames;
    ORVTreeSurvey tree{variableNames};
    /// The folder name, when its scan never ends.
    std::optional<std::string> endlessDirectoryName;

    /// The first template whose scan never ends.
    [[nodiscard]] const std::optional<std::string> &endless() const { return endlessDirectoryName ? endlessDirectoryName : tree.endless(); }
};

} // namespace orvane
