#include "platform/qt/QtAlertText.h"

#include <algorithm>

#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QTextCursor>
#include <QTextDocument>

namespace orvane {

namespace {

// Widths of the text in average characters: what is short stays in a window that looks like an alert, what is long in one that
// still reads well.
constexpr int LeastCharacters = 34;
constexpr int MostCharacters = 62;
/// The text's greatest share of the screen's height; what is longer scrolls.
constexpr double MostOfScreen = 0.5;

} // namespace

QtAlertText::QtAlertText(QWidget *parent) : QTextEdit(parent) {
    setReadOnly(true);
    setFrameStyle(QFrame::NoFrame);
    setTabChangesFocus(true);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
}

void QtAlertText::setTexts(const QString &title, const QString &message) {
    clear();
    QTextCursor cursor(document());
    QTextCharFormat bold;
    bold.setFontWeight(QFont::DemiBold);
    cursor.setBlockFormat(QTextBlockFormat());
    cursor.insertText(title, bold);
    if (!title.isEmpty() && !message.isEmpty()) {
        QTextBlockFormat below;
        below.setTopMargin(fontMetrics().height() * 0.5);
        cursor.insertBlock(below, QTextCharFormat());
    }
    // One paragraph, whatever it holds: the room above stands between title and message only.
    cursor.insertText(QString(message).replace(QLatin1Char('\n'), QChar::LineSeparator), QTextCharFormat());
    _fit(bold);
    setTextCursor(QTextCursor(document())); // long texts are read from their beginning
}

void QtAlertText::_fit(const QTextCharFormat &title) {
    const int character = fontMetrics().averageCharWidth();
    QFont bold = font();
    bold.setWeight(static_cast<QFont::Weight>(title.fontWeight()));
    const QFontMetrics metrics(bold); // the wider ones
    int ideal = 0;
    for (const QString &line : toPlainText().split(QLatin1Char('\n'))) {
        ideal = std::max(ideal, metrics.horizontalAdvance(line.left(qsizetype{MostCharacters} * 2)) + 1);
    }
    document()->setTextWidth(-1);
    const int width = std::clamp(ideal, LeastCharacters * character, MostCharacters * character);
    document()->setTextWidth(width);
    const int height = static_cast<int>(document()->size().height()) + 1;
    const int most = static_cast<int>(MostOfScreen * QGuiApplication::primaryScreen()->availableGeometry().height());
    const bool scrolls = height > most;
    setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    setFocusPolicy(scrolls ? Qt::StrongFocus : Qt::ClickFocus);
    setFixedSize(width + (scrolls ? verticalScrollBar()->sizeHint().width() + character : 0), std::min(height, most));
}

void QtLayOutMessage(QWidget &window, QLabel &icon, QtAlertText &text, QDialogButtonBox &buttons) {
    auto *const layout = new QGridLayout(&window);
    const int character = window.fontMetrics().averageCharWidth();
    layout->setContentsMargins(3 * character, 3 * character, 3 * character, 2 * character);
    layout->setHorizontalSpacing(3 * character);
    layout->setVerticalSpacing(3 * character);
    layout->addWidget(&icon, 0, 0, Qt::AlignTop);
    layout->addWidget(&text, 0, 1, Qt::AlignVCenter);
    layout->addWidget(&buttons, 1, 0, 1, 2);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

} // namespace orvane
