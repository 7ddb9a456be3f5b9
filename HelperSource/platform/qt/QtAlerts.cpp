#include "platform/qt/QtAlerts.h"

#include "platform/qt/QtText.h"

#include <algorithm>

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QWindow>

namespace orvane {

namespace {

// Widths of the text in average characters: what is short stays in a window that looks like an alert, what is long in one that
// still reads well.
constexpr int LeastCharacters = 34;
constexpr int MostCharacters = 62;
/// The text's greatest share of the screen's height; what is longer scrolls.
constexpr double MostOfScreen = 0.5;

/// Text that can be read, selected and scrolled, title in bold above the message.
class AlertText final : public QTextEdit {
public:
    explicit AlertText(QWidget *parent) : QTextEdit(parent) {
        setReadOnly(true);
        setFrameStyle(QFrame::NoFrame);
        setTabChangesFocus(true);
        setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        viewport()->setAutoFillBackground(false);
        document()->setDocumentMargin(0);
    }

    void setTexts(const QString &title, const QString &message) {
        QTextCursor cursor(document());
        QTextCharFormat bold;
        bold.setFontWeight(QFont::DemiBold);
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

private:
    void _fit(const QTextCharFormat &title) {
        const int character = fontMetrics().averageCharWidth();
        QFont bold = font();
        bold.setWeight(static_cast<QFont::Weight>(title.fontWeight()));
        const QFontMetrics metrics(bold); // the wider ones
        int ideal = 0;
        for (const QString &line : toPlainText().split(QLatin1Char('\n'))) {
            ideal = std::max(ideal, metrics.horizontalAdvance(line.left(MostCharacters * 2)) + 1);
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
};

class AlertDialog final : public QDialog {
public:
    AlertDialog(const QString &title, const QString &message) {
        setObjectName(QStringLiteral("alert"));
        setWindowTitle(QCoreApplication::applicationName());
        setModal(true);
        auto *const icon = new QLabel(this);
        const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
        icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this).pixmap(QSize(size, size), devicePixelRatio()));
        icon->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
        auto *const text = new AlertText(this);
        text->setObjectName(QStringLiteral("alertText"));
        text->setTexts(title, message);
        text->setAccessibleName(QCoreApplication::translate("Orvane", "Message"));
        auto *const buttons = new QDialogButtonBox(this);
        _button = buttons->addButton(QCoreApplication::translate("Orvane", "OK"), QDialogButtonBox::AcceptRole);
        _button->setObjectName(QStringLiteral("alertButton"));
        _button->setDefault(true);
        connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        _layOut(*icon, *text, *buttons);
        // A screen reader says both when the alert appears.
        setAccessibleName(title.isEmpty() ? message : title);
        setAccessibleDescription(title.isEmpty() ? QString() : message);
        _button->setFocus();
    }

private:
    void _layOut(QLabel &icon, QTextEdit &text, QDialogButtonBox &buttons) {
        auto *const layout = new QGridLayout(this);
        const int character = fontMetrics().averageCharWidth();
        layout->setContentsMargins(3 * character, 3 * character, 3 * character, 2 * character);
        layout->setHorizontalSpacing(3 * character);
        layout->setVerticalSpacing(3 * character);
        layout->addWidget(&icon, 0, 0, Qt::AlignTop);
        layout->addWidget(&text, 0, 1, Qt::AlignVCenter);
        layout->addWidget(&buttons, 1, 0, 1, 2);
        layout->setSizeConstraint(QLayout::SetFixedSize);
    }

    QPushButton *_button = nullptr;
};

} // namespace

void QtAlerts::runAlertPanel(const std::optional<std::string> &title, const std::optional<std::string> &message) {
    const QtMainThread::Pause pause(_mainThread);
    while (_present != nullptr && !_application.isQuitting()) {
        QEventLoop dismissal;
        QObject::connect(_present, &QDialog::finished, &dismissal, &QEventLoop::quit);
        dismissal.exec();
    }
    if (_application.isQuitting()) {
        return;
    }
    AlertDialog alert(QtTextOf(title.value_or(std::string())), QtTextOf(message.value_or(std::string())));
    if (const QWidget *asking = QtApplication::modalWindow()) {
        static_cast<void>(alert.winId());
        alert.windowHandle()->setTransientParent(asking->windowHandle()); // stays above it
    }
    _present = &alert;
    QObject::connect(&alert, &QDialog::finished, &alert, [this] { _present = nullptr; });
    _application.bringToFront(alert);
    QAccessibleEvent announcement(&alert, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
    alert.exec();
    _present = nullptr;
}

} // namespace orvane
