#include "window/Icons.h"

#include "window/Page.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <array>
#include <cstddef>

// Drawn icons are paths on a square of 16 by 16 units, in the colour that text has on a button.

namespace orvane {

namespace {

constexpr qreal Units = 16;

QPainterPath folderPath() {
    QPainterPath path;
    path.moveTo(1.5, 12.5);
    path.lineTo(1.5, 4);
    path.quadTo(1.5, 3, 2.5, 3);
    path.lineTo(6, 3);
    path.lineTo(7.5, 4.8);
    path.lineTo(13.5, 4.8);
    path.quadTo(14.5, 4.8, 14.5, 5.8);
    path.lineTo(14.5, 12.5);
    path.quadTo(14.5, 13.5, 13.5, 13.5);
    path.lineTo(2.5, 13.5);
    path.quadTo(1.5, 13.5, 1.5, 12.5);
    path.closeSubpath();
    return path;
}

QPainterPath filePath() {
    QPainterPath path;
    path.moveTo(3.5, 1.5);
    path.lineTo(9.5, 1.5);
    path.lineTo(12.5, 4.5);
    path.lineTo(12.5, 14.5);
    path.lineTo(3.5, 14.5);
    path.closeSubpath();
    path.moveTo(9.5, 1.5);
    path.lineTo(9.5, 4.5);
    path.lineTo(12.5, 4.5);
    return path;
}

void addPlus(QPainterPath &path, QPointF centre, qreal arm) {
    path.moveTo(centre.x() - arm, centre.y());
    path.lineTo(centre.x() + arm, centre.y());
    path.moveTo(centre.x(), centre.y() - arm);
    path.lineTo(centre.x(), centre.y() + arm);
}

QPainterPath presetsPath() {
    QPainterPath path;
    path.addRoundedRect(QRectF(1.5, 1.5, 5, 4), 1, 1);
    path.addRoundedRect(QRectF(9.5, 5.5, 5, 3.5), 1, 1);
    path.addRoundedRect(QRectF(9.5, 11, 5, 3.5), 1, 1);
    path.moveTo(4, 5.5);
    path.lineTo(4, 12.75);
    path.lineTo(9.5, 12.75);
    path.moveTo(4, 7.25);
    path.lineTo(9.5, 7.25);
    return path;
}

QPainterPath countersPath() {
    QPainterPath path;
    path.addRoundedRect(QRectF(1.5, 3.5, 13, 9), 1.5, 1.5);
    path.moveTo(8, 3.5);
    path.lineTo(8, 12.5);
    path.addEllipse(QRectF(3.5, 5.75, 2.5, 4.5));
    path.moveTo(10, 7);
    path.lineTo(11.4, 5.9);
    path.lineTo(11.4, 10.3);
    return path;
}

QPainterPath generalPath() {
    QPainterPath path;
    const std::array<qreal, 3> knobs{10.5, 5.5, 9};
    for (std::size_t row = 0; row < knobs.size(); ++row) {
        const qreal y = 3.5 + 4.5 * static_cast<qreal>(row);
        path.moveTo(1.5, y);
        path.lineTo(knobs.at(row) - 1.7, y);
        path.addEllipse(QPointF(knobs.at(row), y), 1.7, 1.7);
        path.moveTo(knobs.at(row) + 1.7, y);
        path.lineTo(14.5, y);
    }
    return path;
}

QPainterPath arrowPath(bool isMirrored) {
    QPainterPath path;
    path.moveTo(5.5, 2.5);
    path.lineTo(2, 6);
    path.lineTo(5.5, 9.5);
    path.moveTo(2, 6);
    path.lineTo(10, 6);
    path.quadTo(14, 6, 14, 10);
    path.quadTo(14, 13.5, 10, 13.5);
    path.lineTo(6, 13.5);
    return isMirrored ? QTransform(-1, 0, 0, 1, Units, 0).map(path) : path;
}

QPainterPath duplicatePath() {
    QPainterPath path;
    path.addRoundedRect(QRectF(5.5, 5.5, 9, 9), 1.5, 1.5);
    path.moveTo(10.5, 3.5);
    path.lineTo(10.5, 3);
    path.quadTo(10.5, 1.5, 9, 1.5);
    path.lineTo(3, 1.5);
    path.quadTo(1.5, 1.5, 1.5, 3);
    path.lineTo(1.5, 9);
    path.quadTo(1.5, 10.5, 3, 10.5);
    path.lineTo(3.5, 10.5);
    return path;
}

QPainterPath deletePath() {
    QPainterPath path;
    path.moveTo(2.5, 4);
    path.lineTo(13.5, 4);
    path.moveTo(6, 4);
    path.lineTo(6, 2);
    path.lineTo(10, 2);
    path.lineTo(10, 4);
    path.moveTo(4, 4);
    path.lineTo(4.7, 14.2);
    path.lineTo(11.3, 14.2);
    path.lineTo(12, 4);
    path.moveTo(6.8, 6.5);
    path.lineTo(6.8, 11.7);
    path.moveTo(9.2, 6.5);
    path.lineTo(9.2, 11.7);
    return path;
}

QPainterPath addFromPath() {
    QPainterPath path;
    path.moveTo(8, 1.5);
    path.lineTo(8, 9.5);
    path.moveTo(4.8, 6.5);
    path.lineTo(8, 9.7);
    path.lineTo(11.2, 6.5);
    path.moveTo(2, 10);
    path.lineTo(2, 14);
    path.lineTo(14, 14);
    path.lineTo(14, 10);
    return path;
}

QPainterPath openPath() {
    QPainterPath path;
    path.moveTo(7, 3);
    path.lineTo(2.5, 3);
    path.lineTo(2.5, 13.5);
    path.lineTo(13, 13.5);
    path.lineTo(13, 9);
    path.moveTo(7.5, 8.5);
    path.lineTo(14, 2);
    path.moveTo(9.7, 2);
    path.lineTo(14, 2);
    path.lineTo(14, 6.3);
    return path;
}

QPainterPath signPath(Icon icon) {
    QPainterPath path;
    if (icon == Icon::Warning) {
        path.moveTo(8, 1.5);
        path.lineTo(15, 14);
        path.lineTo(1, 14);
        path.closeSubpath();
        path.moveTo(8, 6);
        path.lineTo(8, 10);
        path.moveTo(8, 11.8);
        path.lineTo(8, 12.2);
        return path;
    }
    path.addEllipse(QRectF(1.5, 1.5, 13, 13));
    const bool isNote = icon == Icon::Note;
    path.moveTo(8, isNote ? 7.5 : 4.5);
    path.lineTo(8, isNote ? 11.5 : 8.7);
    path.moveTo(8, isNote ? 4.6 : 11.2);
    path.lineTo(8, isNote ? 5 : 11.6);
    return path;
}

QPainterPath pathOf(Icon icon) {
    QPainterPath path;
    switch (icon) {
    case Icon::Presets:
        return presetsPath();
    case Icon::Counters:
        return countersPath();
    case Icon::General:
        return generalPath();
    case Icon::Folder:
        return folderPath();
    case Icon::File:
        return filePath();
    case Icon::NewFolder:
        path = folderPath();
        addPlus(path, QPointF(8, 9.2), 2.4);
        return path;
    case Icon::NewFile:
        path = filePath();
        addPlus(path, QPointF(8, 9.5), 2.4);
        return path;
    case Icon::Add:
        addPlus(path, QPointF(8, 8), 5.5);
        return path;
    case Icon::AddFrom:
        return addFromPath();
    case Icon::Duplicate:
        return duplicatePath();
    case Icon::Delete:
        return deletePath();
    case Icon::Undo:
    case Icon::Redo:
        return arrowPath(icon == Icon::Redo);
    case Icon::Play:
        path.moveTo(4, 2.5);
        path.lineTo(13, 8);
        path.lineTo(4, 13.5);
        path.closeSubpath();
        return path;
    case Icon::Open:
        return openPath();
    case Icon::Close:
        path.moveTo(4, 4);
        path.lineTo(12, 12);
        path.moveTo(12, 4);
        path.lineTo(4, 12);
        return path;
    case Icon::Note:
    case Icon::Warning:
    case Icon::Error:
        return signPath(icon);
    }
    return path;
}

QColor penOf(Icon icon, const QPalette &palette, QIcon::Mode mode) {
    if (mode == QIcon::Selected) {
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    }
    if (icon == Icon::Error) {
        return errorColor(palette);
    }
    if (icon == Icon::Warning) {
        return warningColor(palette);
    }
    return palette.color(mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active, QPalette::ButtonText);
}

/// Draws a path at the size that is asked for, in the colours of that moment.
class DrawnIcon final : public QIconEngine {
public:
    explicit DrawnIcon(Icon icon) : _icon(icon) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const qreal side = qMin(rect.width(), rect.height());
        painter->translate(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
        painter->scale(side / Units, side / Units);
        const QColor color = penOf(_icon, QApplication::palette(), mode);
        painter->setPen(QPen(color, 1.15, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        if (_icon == Icon::Folder) {
            QColor fill = QApplication::palette().color(QPalette::Highlight);
            fill.setAlphaF(mode == QIcon::Selected ? 0.0F : 0.28F);
            painter->setBrush(fill);
        }
        painter->drawPath(pathOf(_icon));
        painter->restore();
    }
    [[nodiscard]] QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    [[nodiscard]] QIconEngine *clone() const override { return new DrawnIcon(_icon); }

private:
    Icon _icon;
};

/// A dot or ring of a label.
class LabelIcon final : public QIconEngine {
public:
    explicit LabelIcon(const QColor &color) : _color(color) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const qreal side = qMin(rect.width(), rect.height()) * 0.72;
        QRectF circle(0, 0, side, side);
        circle.moveCenter(QRectF(rect).center());
        const QPalette palette = QApplication::palette();
        QColor edge = palette.color(mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::Text);
        edge.setAlphaF(_color.isValid() ? 0.35F : 0.55F);
        painter->setPen(QPen(edge, 1));
        painter->setBrush(_color.isValid() ? QBrush(_color) : QBrush(Qt::NoBrush));
        painter->drawEllipse(circle);
        painter->restore();
    }
    [[nodiscard]] QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    [[nodiscard]] QIconEngine *clone() const override { return new LabelIcon(_color); }

private:
    QColor _color;
};

/// Name in icon themes (freedesktop.org, Icon Naming 0.8.90); null where none fits.
const char *themeNameOf(Icon icon) {
    switch (icon) {
    case Icon::NewFolder:
        return "folder-new";
    case Icon::NewFile:
        return "document-new";
    case Icon::Add:
        return "list-add";
    case Icon::AddFrom:
        return "document-import";
    case Icon::Duplicate:
        return "edit-copy";
    case Icon::Delete:
        return "edit-delete";
    case Icon::Undo:
        return "edit-undo";
    case Icon::Redo:
        return "edit-redo";
    case Icon::Play:
        return "media-playback-start";
    case Icon::Open:
        return "document-open";
    case Icon::Close:
        return "window-close";
    case Icon::Folder:
        return "folder";
    case Icon::File:
        return "text-x-generic";
    case Icon::Note:
        return "dialog-information";
    case Icon::Warning:
        return "dialog-warning";
    case Icon::Error:
        return "dialog-error";
    default:
        return nullptr;
    }
}

struct Label {
    std::string_view name;
    const char *title;
    QRgb color;
};
/// In the order in which people know them.
constexpr std::array<Label, 7> Labels{{{"red", QT_TRANSLATE_NOOP("Orvane", "Red"), 0xE0483E},
                                       {"orange", QT_TRANSLATE_NOOP("Orvane", "Orange"), 0xEE8A2C},
                                       {"yellow", QT_TRANSLATE_NOOP("Orvane", "Yellow"), 0xE8C12F},
                                       {"green", QT_TRANSLATE_NOOP("Orvane", "Green"), 0x57A84A},
                                       {"blue", QT_TRANSLATE_NOOP("Orvane", "Blue"), 0x3D85D8},
                                       {"purple", QT_TRANSLATE_NOOP("Orvane", "Purple"), 0x9A5CC4},
                                       {"gray", QT_TRANSLATE_NOOP("Orvane", "Gray"), 0x8C8F94}}};

} // namespace

QIcon iconFor(Icon icon) {
    const char *name = themeNameOf(icon);
    const QIcon drawn(new DrawnIcon(icon));
    return name == nullptr ? drawn : QIcon::fromTheme(QLatin1String(name), drawn);
}

QColor labelColor(std::string_view name) {
    for (const Label &label : Labels) {
        if (label.name == name) {
            return {label.color};
        }
    }
    return {};
}

QIcon labelIcon(std::string_view name) {
    return QIcon(new LabelIcon(labelColor(name)));
}

QString labelTitle(std::string_view name) {
    for (const Label &label : Labels) {
        if (label.name == name) {
            return translated(label.title);
        }
    }
    return name.empty() ? translated("No Label") : QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

bool isDark(const QPalette &palette) {
    return palette.color(QPalette::Base).lightnessF() < 0.5F;
}

QColor errorColor(const QPalette &palette) {
    return isDark(palette) ? QColor(0xFF8A80) : QColor(0xB3261E);
}

QColor warningColor(const QPalette &palette) {
    return isDark(palette) ? QColor(0xF2C14E) : QColor(0x8A5A00);
}

} // namespace orvane
