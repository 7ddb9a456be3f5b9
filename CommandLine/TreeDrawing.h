#pragma once

#include "JSONWriter.h"
#include "PresetTree.h"
#include "Terminal.h"

#include <span>
#include <string>

namespace orvane {

/// The tree as lines of text: one item a line, folders with a "/" at the end, then label, mode and content file, then
/// what is wrong with it. Lines end in line feeds. Branches deeper than 200 levels are drawn at that level and
/// tell theirs.
[[nodiscard]] std::string drawTree(std::span<const TreeItem> tree, const TextStyle &style);

/// The tree as one nested JSON object, or null for an empty one.
void writeTree(JSONWriter &writer, std::span<const TreeItem> tree);

/// "3 folders, 1 file".
[[nodiscard]] std::string countOfTree(std::span<const TreeItem> tree);

} // namespace orvane
