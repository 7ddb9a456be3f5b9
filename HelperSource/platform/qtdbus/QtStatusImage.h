#pragma once

#include <QColor>
#include <QImage>
#include <QList>

#include <string>
#include <string_view>

namespace orvane {

/// A one-coloured picture for the status bar: only its shape counts, the colour is the panel's business. Read from the resource folder
/// at its own size and, where there is one beside it with "@2x" in its name, at twice that size.
class QtStatusImage {
public:
    QtStatusImage() = default;
    /// Empty when the file cannot be read.
    QtStatusImage(const std::string &resourceFolder, std::string_view name);

    [[nodiscard]] bool isEmpty() const { return _shapes.isEmpty(); }
    /// A square picture with `size` pixels a side.
    [[nodiscard]] QImage image(int size, const QColor &color) const;
    /// The same with a thin rim in `rim`, so that it can be told from any background.
    [[nodiscard]] QImage imageWithRim(int size, const QColor &color, const QColor &rim) const;

    /// The colour for panels that do not tell theirs: white on GNOME, whose bar is always dark, else that of the text in windows.
    [[nodiscard]] static QColor likelyColor();

private:
    QList<QImage> _shapes; ///< from small to large
};

} // namespace orvane
