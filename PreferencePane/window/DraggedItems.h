#pragma once

#include "model/PresetDocument.h"

#include <QByteArray>

#include <vector>

namespace orvane {

/// Items of a document on their way within this process: its number and their ids.
[[nodiscard]] QByteArray bytesOfItems(const std::vector<ItemID> &items);

/// Those of them that are there still and are of a kind, such as `&PresetDocument::isNode`; none for what comes from another process.
[[nodiscard]] std::vector<ItemID> itemsOfBytes(const QByteArray &bytes, const PresetDocument &document,
                                               bool (PresetDocument::*isOfKind)(ItemID) const);

} // namespace orvane
