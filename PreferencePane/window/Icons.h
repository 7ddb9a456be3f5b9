#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QString>

#include <string_view>

namespace orvane {

/// What an icon stands for.
enum class Icon {
    Presets,
    Counters,
    General,
    Folder,
    File,
    NewFolder,
    NewFile,
    Add,
    AddFrom,
    Duplicate,
    Delete,
    Undo,
    Redo,
    Play,
    Open,
    Close,
    Note,
    Warning,
    Error
};

/// The icon of the desktop's theme, or one drawn in the palette's colours where the theme has none. Sharp at any size. The three
/// sections of the window always are drawn: no theme has them.
[[nodiscard]] QIcon iconFor(Icon icon);

/// A label colour as people see it, for `color` as it stands in presets ("red", …); not valid for "" and unknown names.
[[nodiscard]] QColor labelColor(std::string_view name);
/// A dot of a label's colour; a ring for none.
[[nodiscard]] QIcon labelIcon(std::string_view name);
/// The label's name in the user's language, and its number in a menu.
[[nodiscard]] QString labelTitle(std::string_view name);

/// Whether texts of the palette are light on dark.
[[nodiscard]] bool isDark(const QPalette &palette);
/// A colour for problems and the like that can be read on the palette's base.
[[nodiscard]] QColor errorColor(const QPalette &palette);
[[nodiscard]] QColor warningColor(const QPalette &palette);

} // namespace orvane
