#pragma once

#include <QString>
#include <QtGlobal>

class QWidget;

namespace orvane {

/// What is to be taken of a folder that becomes a preset.
enum class FolderTaking { WithContents, NamesOnly, Nothing };

/// The ordinary files in a folder and below, those that an import would copy.
struct FolderAmount {
    qint64 files = 0;
    qint64 bytes = 0;
};
[[nodiscard]] FolderAmount amountOfFolder(const QString &folder);

/// Folders with more in their files are not copied without a question, in bytes.
inline constexpr qint64 MostBytesUnasked = 20'000'000;

/// With the contents; where that is a lot, what the user wants, who is asked over `parent`, which returns when that is answered.
[[nodiscard]] FolderTaking takingOfFolder(const QString &folder, QWidget *parent);

} // namespace orvane
