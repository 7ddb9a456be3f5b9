#include "NodeText.h"

#include <array>

namespace orvane {

namespace {

constexpr std::string_view VersionKey = "ORVNodesVersion";
constexpr std::string_view NodesKey = "ORVNodes";
constexpr std::int64_t Version = 1;

} // namespace

std::optional<std::string> textOfNodes(const PresetDocument &document, std::span<const ItemID> nodes, PropertyListTextForm &form) {
    const PropertyList list = document.nodes(nodes);
    if (list.root().array().empty()) {
        return std::nullopt;
    }
    PropertyListBuilder builder;
    const std::array<PropertyListEntry, 2> root{{{VersionKey, PropertyListValue::ofInteger(Version)}, {NodesKey, builder.adopt(list)}}};
    return form.textOf(builder.finish(builder.dictionary(root)));
}

std::optional<PropertyList> nodesOfText(std::string_view text, PropertyListTextForm &form) {
    const auto document = form.read(text);
    const PropertyListValue *version = document ? document->root().find(VersionKey) : nullptr;
    const PropertyListValue *nodes = document ? document->root().find(NodesKey) : nullptr;
    if (version == nullptr || nodes == nullptr || version->integer() != Version || !nodes->isArray()) {
        return std::nullopt;
    }
    return document->at(*nodes);
}

} // namespace orvane
