#include "window/DraggedItems.h"

#include <QCoreApplication>
#include <QList>

#include <cstdint>

namespace orvane {

QByteArray bytesOfItems(const std::vector<ItemID> &items) {
    QByteArray bytes = QByteArray::number(QCoreApplication::applicationPid());
    for (const ItemID item : items) {
        bytes += ' ' + QByteArray::number(static_cast<std::uint32_t>(item));
    }
    return bytes;
}

std::vector<ItemID> itemsOfBytes(const QByteArray &bytes, const PresetDocument &document, bool (PresetDocument::*isOfKind)(ItemID) const) {
    const QList<QByteArray> words = bytes.split(' ');
    std::vector<ItemID> items;
    if (words.front().toLongLong() != QCoreApplication::applicationPid()) {
        return items;
    }
    for (const QByteArray &word : words.mid(1)) {
        const auto item = static_cast<ItemID>(word.toUInt());
        if (document.contains(item) && (document.*isOfKind)(item)) {
            items.push_back(item);
        }
    }
    return items;
}

} // namespace orvane
