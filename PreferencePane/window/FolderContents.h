#pragma once

#include <QString>
#include <QtGlobal>

#include <chrono>

class QWidget;

namespace orvane {

/// What is to be taken of a folder that becomes a preset.
enum class FolderTaking { WithContents, NamesOnly, Nothing };

/// Folders with more in their files are not copied without a question, in bytes.
inline constexpr qint64 MostBytesUnasked = 20'000'000;
/// Once a folder is known to have more than that, no more of its files and folders are looked at; before, these many are.
inline constexpr int MostEntriesCounted = 20'000;
inline constexpr int MostEntriesBeforeQuestion = 100'000;

/// The ordinary files in a folder and below, those that an import would copy.
struct FolderAmount {
    qint64 files = 0;
    qint64 bytes = 0;
    bool isWhole = true; ///< else there may be more: counting was given up
};
/// Gives up after `longest`, or after many entries; later, at 2.5 s, while the folder is not known to have more than
/// `MostBytesUnasked`.
[[nodiscard]] FolderAmount amountOfFolder(const QString &folder, std::chrono::milliseconds longest = std::chrono::milliseconds(500));

/// With the contents; where that is a lot, or nobody knows how much, what the user wants, who is asked over `parent`, which returns when
/// that is answered.
[[nodiscard]] FolderTaking takingOfFolder(const QString &folder, QWidget *parent);

} // namespace orvane
