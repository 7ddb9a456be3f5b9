#include "platform/qt/QtAlerts.h"

#include "platform/qt/QtAlertText.h"
#include "platform/qt/QtText.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QWindow>

namespace orvane {

namespace {

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
        auto *const text = new QtAlertText(this);
        text->setObjectName(QStringLiteral("alertText"));
        text->setTexts(title, message);
        text->setAccessibleName(QCoreApplication::translate("Orvane", "Message"));
        auto *const buttons = new QDialogButtonBox(this);
        _button = buttons->addButton(QCoreApplication::translate("Orvane", "OK"), QDialogButtonBox::AcceptRole);
        _button->setObjectName(QStringLiteral("alertButton"));
        _button->setDefault(true);
        connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        QtLayOutMessage(*this, *icon, *text, *buttons);
        // A screen reader says both when the alert appears.
        setAccessibleName(title.isEmpty() ? message : title);
        setAccessibleDescription(title.isEmpty() ? QString() : message);
        _button->setFocus();
    }

private:
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
