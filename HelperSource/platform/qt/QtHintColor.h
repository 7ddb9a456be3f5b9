#pragma once

#include <QColor>
#include <QPalette>

namespace orvane {

/// A quieter colour than a text's for what only explains: between that of the text and that of its background, with a contrast of at least
/// 4.5 to 1 wherever the text itself has that (WCAG 2.1, success criterion 1.4.3). Not the palette's own for placeholders, which some
/// themes leave as it is in light colours.
[[nodiscard]] QColor QtHintColor(const QPalette &palette, QPalette::ColorRole text = QPalette::WindowText,
                                 QPalette::ColorRole background = QPalette::Window);

/// Contrast of two opaque colours, from 1 to 21 (WCAG 2.1, "contrast ratio").
[[nodiscard]] double QtContrast(const QColor &one, const QColor &other);

} // namespace orvane
