#include "window/MessageBar.h"

#include "window/Icons.h"
#include "window/Page.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

#include <utility>

namespace orvane {

namespace {

Icon iconOf(MessageBar::Kind kind) {
    switch (kind) {
    case MessageBar::Kind::Note:
        return Icon::Note;
    case MessageBar::Kind::Warning:
        return Icon::Warning;
    case MessageBar::Kind::Error:
        break;
    }
    return Icon::Error;
}

QColor colorOf(MessageBar::Kind kind, const QPalette &palette) {
    switch (kind) {
    case MessageBar::Kind::Note:
        return palette.color(QPalette::Highlight);
    case MessageBar::Kind::Warning:
        return warningColor(palette);
    case MessageBar::Kind::Error:
        break;
    }
    return errorColor(palette);
}

} // namespace

MessageBar::MessageBar(QWidget *parent)
    : QFrame(parent), _ui_icon(new QLabel(this)), _ui_text(new QLabel(this)), _ui_buttons(new QHBoxLayout),
      _ui_close(new QToolButton(this)) {
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(PageMargin, 8, 8, 8);
    row->setSpacing(8);
    _ui_text->setWordWrap(true);
    _ui_text->setTextFormat(Qt::PlainText);
    _ui_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    _ui_text->setFocusPolicy(Qt::NoFocus);
    _ui_close->setAutoRaise(true);
    _ui_close->setIcon(iconFor(Icon::Close));
    _ui_close->setAccessibleName(translated("Close message"));
    _ui_close->setToolTip(translated("Close message"));
    row->addWidget(_ui_icon, 0, Qt::AlignVCenter);
    row->addWidget(_ui_text, 1);
    row->addLayout(_ui_buttons);
    row->addWidget(_ui_close, 0, Qt::AlignVCenter);
    connect(_ui_close, &QToolButton::clicked, this, [this] {
        const auto closed = std::exchange(_closed, {});
        clear();
        if (closed) {
            closed();
        }
    });
    hide();
}

void MessageBar::_removeButtons() {
    for (QPushButton *button : std::exchange(_buttons, {})) {
        button->hide();
        button->deleteLater(); // it may be the one that was pressed
    }
}

void MessageBar::say(Kind kind, const QString &text, std::vector<Choice> choices, bool isClosable, std::function<void()> closed) {
    _kind = kind;
    _closed = std::move(closed);
    _removeButtons();
    for (Choice &choice : choices) {
        auto *const button = new QPushButton(choice.title, this);
        button->setObjectName(QLatin1String(choice.name));
        connect(button, &QPushButton::clicked, this, [chosen = std::move(choice.chosen)] { chosen(); });
        _ui_buttons->addWidget(button);
        button->show();
        _buttons.push_back(button);
    }
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
    _ui_icon->setPixmap(iconFor(iconOf(kind)).pixmap(QSize(side, side), devicePixelRatioF()));
    _ui_text->setText(text);
    _ui_close->setVisible(isClosable);
    setAccessibleName(text);
    show();
    update();
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void MessageBar::clear() {
    hide();
    _removeButtons();
    _ui_text->clear();
    setAccessibleName({});
}

QString MessageBar::text() const {
    return isHidden() ? QString() : _ui_text->text();
}

void MessageBar::changeEvent(QEvent *event) {
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !isHidden()) {
        const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
        _ui_icon->setPixmap(iconFor(iconOf(_kind)).pixmap(QSize(side, side), devicePixelRatioF()));
    }
}

void MessageBar::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    QColor fill = colorOf(_kind, palette());
    fill.setAlphaF(isDark(palette()) ? 0.20F : 0.12F);
    painter.fillRect(rect(), fill);
    painter.fillRect(QRect(0, 0, 3, height()), colorOf(_kind, palette()));
    QFrame::paintEvent(event);
}

} // namespace orvane
