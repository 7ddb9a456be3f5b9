#include "window/ElidedLabel.h"

#include <algorithm>

#include <QPainter>
#include <QStyle>

namespace orvane {

namespace {

/// In average characters.
constexpr int FewestCharacters = 16;

} // namespace

ElidedLabel::ElidedLabel(QWidget *parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize ElidedLabel::sizeHint() const {
    const QSize whole = QLabel::sizeHint();
    return {std::min(whole.width(), FewestCharacters * fontMetrics().averageCharWidth()), whole.height()};
}

void ElidedLabel::paintEvent(QPaintEvent *event) {
    const QRect room = contentsRect();
    if (fontMetrics().horizontalAdvance(text()) <= room.width()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    const Qt::Alignment alignment = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, room.width());
    style()->drawItemText(&painter, room, static_cast<int>(alignment) | Qt::TextSingleLine, palette(), isEnabled(), shown,
                          foregroundRole());
}

} // namespace orvane
