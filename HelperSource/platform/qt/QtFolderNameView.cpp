#include "platform/qt/QtFolderNameView.h"

#include "platform/qt/QtHintColor.h"
#include "platform/qt/QtText.h"

#include <algorithm>

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QTextOption>

namespace orvane {

namespace {

constexpr int Lines = 2;
constexpr QChar Ellipsis(0x2026);
// How strongly the palette's highlight lies below a variable's value, of 255.
constexpr int TintOfValue = 56;
constexpr int TintOfEditedValue = 120;

QFont emphasised(QFont font) {
    font.setWeight(QFont::DemiBold);
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * 1.15);
    }
    return font;
}

} // namespace

QtFolderNameView::QtFolderNameView(QWidget *parent) : QWidget(parent) {
    setFont(emphasised(font()));
    _icon = QIcon::fromTheme(QStringLiteral("folder"), style()->standardIcon(QStyle::SP_DirIcon, nullptr, this));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void QtFolderNameView::setName(const QString &name, const QList<QtNamePart> &parts) {
    if (name == _name && parts == _parts) {
        return;
    }
    _name = name;
    _parts = parts;
    _describe();
}

void QtFolderNameView::setPlace(const QString &path) {
    const QString home = QDir::homePath();
    const bool isAtHome = path == home || path.startsWith(home + QLatin1Char('/'));
    const QString shown = isAtHome ? QLatin1Char('~') + path.mid(home.size()) : path;
    _place = path.isEmpty() ? QString() : QCoreApplication::translate("Orvane", "in %1").arg(QtIsolated(QtSingleLine(shown)));
    updateGeometry();
    _describe();
}

void QtFolderNameView::_describe() {
    const QString place = _place.isEmpty() ? QString() : QStringLiteral("<p>%1</p>").arg(_place.toHtmlEscaped());
    setToolTip(QStringLiteral("<p>%1</p>").arg(_name.toHtmlEscaped()) + place);
    setAccessibleName(QCoreApplication::translate("Orvane", "Folder name: %1").arg(_name));
    setAccessibleDescription(_place);
    update();
}

QFont QtFolderNameView::_placeFont() const {
    QFont plain = parentWidget() == nullptr ? QFont() : parentWidget()->font();
    plain.setWeight(plain.weight()); // said outright: a painter takes what is not from the name's font
    if (plain.pointSizeF() > 0) {
        plain.setPointSizeF(plain.pointSizeF());
    }
    return plain;
}

int QtFolderNameView::_placeHeight() const {
    return _place.isEmpty() ? 0 : QFontMetrics(_placeFont()).lineSpacing() + 1;
}

QSize QtFolderNameView::sizeHint() const {
    const int icon = style()->pixelMetric(QStyle::PM_LargeIconSize, nullptr, this);
    return {icon + fontMetrics().averageCharWidth() * 40, std::max(icon, Lines * fontMetrics().lineSpacing() + _placeHeight()) + 2};
}

QSize QtFolderNameView::minimumSizeHint() const {
    return {sizeHint().width() / 3, sizeHint().height()};
}

QRect QtFolderNameView::_textRect() const {
    const int icon = style()->pixelMetric(QStyle::PM_LargeIconSize, nullptr, this);
    return rect().adjusted(icon + fontMetrics().averageCharWidth(), 0, 0, 0);
}

QList<QTextLayout::FormatRange> QtFolderNameView::_formats(const QList<QtNamePart> &parts) const {
    QList<QTextLayout::FormatRange> formats;
    for (const QtNamePart &part : parts) {
        QTextLayout::FormatRange range;
        range.start = static_cast<int>(part.start);
        range.length = static_cast<int>(part.length);
        QColor tint = palette().color(QPalette::Highlight);
        tint.setAlpha(part.isEdited ? TintOfEditedValue : TintOfValue);
        range.format.setBackground(tint);
        formats.append(range);
    }
    return formats;
}

int QtFolderNameView::_layOut(QTextLayout &layout, const QString &text, const QList<QtNamePart> &parts) const {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    option.setAlignment(layoutDirection() == Qt::RightToLeft ? Qt::AlignRight | Qt::AlignAbsolute : Qt::AlignLeft | Qt::AlignAbsolute);
    layout.setText(text);
    layout.setFont(font());
    layout.setTextOption(option);
    layout.setFormats(_formats(parts));
    layout.beginLayout();
    qreal y = 0;
    int lines = 0;
    for (QTextLine line = layout.createLine(); line.isValid() && lines <= Lines; line = layout.createLine()) {
        line.setLineWidth(_textRect().width());
        line.setPosition({0, y});
        y += line.height();
        ++lines;
    }
    layout.endLayout();
    return lines;
}

void QtFolderNameView::_shorten(qsizetype kept, QString &text, QList<QtNamePart> &parts) const {
    const qsizetype head = kept - kept / 2;
    const qsizetype tail = _name.size() - kept / 2;
    text = _name.left(head) + Ellipsis + _name.mid(tail);
    const qsizetype shift = tail - head - 1;
    const auto moved = [&](qsizetype place) {
        if (place <= head) {
            return place;
        }
        return place >= tail ? place - shift : head + 1;
    };
    parts.clear();
    for (const QtNamePart &part : _parts) {
        const qsizetype start = moved(part.start);
        parts.append({start, moved(part.start + part.length) - start, part.isEdited});
    }
}

void QtFolderNameView::paintEvent(QPaintEvent * /*event*/) {
    QTextLayout layout;
    QString text = QString(_name).replace(QLatin1Char('\n'), QLatin1Char(' '));
    QList<QtNamePart> parts = _parts;
    if (_layOut(layout, text, parts) > Lines) {
        qsizetype fits = 0;
        for (qsizetype tooMany = _name.size(); tooMany - fits > 1;) {
            const qsizetype middle = fits + (tooMany - fits) / 2;
            _shorten(middle, text, parts);
            (_layOut(layout, text, parts) > Lines ? tooMany : fits) = middle;
        }
        _shorten(fits, text, parts);
        static_cast<void>(_layOut(layout, text, parts));
    }
    QPainter painter(this);
    const int size = style()->pixelMetric(QStyle::PM_LargeIconSize, nullptr, this);
    const QRect icon = QStyle::alignedRect(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter, QSize(size, size), rect());
    _icon.paint(&painter, icon);
    const QRect area = QStyle::visualRect(layoutDirection(), rect(), _textRect());
    painter.setPen(palette().color(QPalette::WindowText));
    const int below = _placeHeight();
    const int top = area.y() + static_cast<int>(area.height() - layout.boundingRect().height() - below) / 2;
    layout.draw(&painter, QPointF(area.x(), top));
    if (below > 0) {
        painter.setPen(QtHintColor(palette()));
        painter.setFont(_placeFont());
        const QRect line(area.x(), top + static_cast<int>(layout.boundingRect().height()) + 1, area.width(), below);
        const QString shown = painter.fontMetrics().elidedText(_place, Qt::ElideMiddle, line.width());
        const int direction = _place.isRightToLeft() ? Qt::TextForceRightToLeft : Qt::TextForceLeftToRight;
        painter.drawText(line, static_cast<int>(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft) | Qt::AlignTop) | direction,
                         shown);
    }
}

void QtFolderNameView::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        update();
    }
}

} // namespace orvane
