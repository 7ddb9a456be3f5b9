#pragma once

#include "PresetDocument.h"
#include "PropertyListTextForm.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

// Subtrees as text that stands by itself, for the clipboard and for drag and drop between windows. It holds the nodes whole, unknown
// keys included; content files by their names.

namespace orvane {

/// Media type of the text.
inline constexpr const char *NodeTextMediaType = "application/x-orvane-nodes+xml";

/// Nothing when there are no nodes, or the form cannot hold one of them.
[[nodiscard]] std::optional<std::string> textOfNodes(const PresetDocument &document, std::span<const ItemID> nodes,
                                                     PropertyListTextForm &form);
/// The array of nodes in a text, for `PresetDocument::insertNodes`; nothing for any other text.
[[nodiscard]] std::optional<PropertyList> nodesOfText(std::string_view text, PropertyListTextForm &form);

} // namespace orvane
