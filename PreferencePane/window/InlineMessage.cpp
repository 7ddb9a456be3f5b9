#include "window/InlineMessage.h"

#include "window/Hints.h"
#include "window/Icons.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>

#include <algorithm>

namespace orvane {

namespace {

Icon iconOf(InlineMessage::Kind kind) {
    switch (kind) {
    case InlineMessage::Kind::Error:
        return Icon::Error;
    case InlineMessage::Kind::Warning:
        return Icon::Warning;
    default:
        return Icon::Note;
    }
}

} // namespace

InlineMessage::InlineMessage(const QString &name, QWidget *parent)
    : QWidget(parent), _ui_icon(new QLabel(this)), _ui_text(new QLabel(this)) {
    setObjectName(name);
    _ui_text->setTextFormat(Qt::PlainText);
    _ui_text->setWordWrap(true);
    _ui_text->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    _ui_icon->setAlignment(Qt::AlignCenter);
    _ui_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(_ui_icon, 0, Qt::AlignTop);
    row->addWidget(_ui_text, 1);
    hide();
}

void InlineMessage::say(Kind kind, const QString &text) {
    if (kind == _kind && text == _text) {
        return;
    }
    _kind = kind;
    _text = text;
    _show();
    setAccessibleName(text);
    if (!text.isEmpty()) {
        QAccessibleEvent announcement(this, kind == Kind::Hint || kind == Kind::Note ? QAccessible::NameChanged : QAccessible::Alert);
        QAccessible::updateAccessibility(&announcement);
    }
}

void InlineMessage::_show() {
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    const bool hasIcon = _kind != Kind::Hint && !_text.isEmpty();
    _ui_icon->setVisible(hasIcon);
    _ui_icon->setFixedSize(size, std::max(size, _ui_text->fontMetrics().height())); // beside the first line
    _ui_icon->setPixmap(hasIcon ? iconFor(iconOf(_kind)).pixmap(QSize(size, size), devicePixelRatio()) : QPixmap());
    // A hint steps back behind what it is about.
    showAsHint(*_ui_text, _kind == Kind::Hint);
    _ui_text->setText(_text);
    setVisible(!_text.isEmpty());
}

QSize InlineMessage::minimumSizeHint() const {
    constexpr int FewestCharacters = 20;
    const QFontMetrics metrics = _ui_text->fontMetrics();
    return {FewestCharacters * metrics.averageCharWidth(), _ui_text->text().isEmpty() ? 0 : metrics.height()};
}

QSize InlineMessage::sizeHint() const {
    constexpr int MostCharacters = 60;
    const QFontMetrics metrics = _ui_text->fontMetrics();
    const int width = std::min(QWidget::sizeHint().width(), MostCharacters * metrics.averageCharWidth());
    return {std::max(width, minimumSizeHint().width()), minimumSizeHint().height()};
}

void InlineMessage::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        _show();
    }
}

} // namespace orvane
