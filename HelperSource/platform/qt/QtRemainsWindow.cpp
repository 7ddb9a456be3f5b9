#include "platform/qt/QtRemainsWindow.h"

#include "platform/qt/QtAlertText.h"
#include "platform/qt/QtText.h"

#include <algorithm>
#include <utility>

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QStringList>
#include <QStyle>

namespace orvane {

namespace {

/// Paths that are shown of one kind before the others are only counted.
constexpr std::size_t MostPaths = 12;

QString shownPath(const std::string &path) {
    return QtIsolated(QtSingleLine(QtTextOf(path)));
}

QString shownName(const std::string &path) {
    return shownPath(path.substr(path.rfind('/') + 1));
}

QString shownNumber(std::size_t number) {
    return QLocale().toString(static_cast<qulonglong>(number));
}

QString counted(std::size_t items) {
    return items == 1 ? QCoreApplication::translate("Orvane", "1 file or folder can be removed.")
                      : QCoreApplication::translate("Orvane", "%1 files and folders can be removed.").arg(shownNumber(items));
}

QStringList listed(const std::vector<std::string> &paths) {
    QStringList lines;
    for (std::size_t i = 0; i < std::min(paths.size(), MostPaths); ++i) {
        lines += shownPath(paths[i]);
    }
    if (paths.size() > MostPaths) {
        lines += QCoreApplication::translate("Orvane", "and %1 more").arg(shownNumber(paths.size() - MostPaths));
    }
    return lines;
}

/// One folder: where it is, how much can go, what stays.
QString described(const CreationRemains &remains) {
    QStringList lines{shownPath(remains.topPath), counted(remains.items)};
    if (!remains.changed.empty()) {
        lines += QCoreApplication::translate("Orvane", "Changed since, and never removed:");
        lines += listed(remains.changed);
    }
    return lines.join(u'\n');
}

QString titleOf(const std::vector<CreationRemains> &remains) {
    return remains.size() == 1
               ? QCoreApplication::translate("Orvane", "The folder “%1” was not finished.").arg(shownName(remains.front().topPath))
               : QCoreApplication::translate("Orvane", "%1 folders were not finished.").arg(shownNumber(remains.size()));
}

QString messageOf(const std::vector<CreationRemains> &remains) {
    QStringList paragraphs{
        remains.size() == 1 ? QCoreApplication::translate("Orvane", "Orvane was ended while it was making the folder. What it made can be "
                                                                    "removed again. What was changed since stays.")
                            : QCoreApplication::translate("Orvane", "Orvane was ended while it was making the folders. What it made can "
                                                                    "be removed again. What was changed since stays.")};
    for (const CreationRemains &each : remains) {
        paragraphs += described(each);
    }
    paragraphs += QCoreApplication::translate("Orvane", "If you just close this window, you will be asked again at the next start.");
    return paragraphs.join(QStringLiteral("\n\n"));
}

QString titleOf(const RemainsRemoval &removal) {
    if (removal.removed == 0) {
        return QCoreApplication::translate("Orvane", "Nothing was removed.");
    }
    return removal.removed == 1
               ? QCoreApplication::translate("Orvane", "1 file or folder was removed.")
               : QCoreApplication::translate("Orvane", "%1 files and folders were removed.").arg(shownNumber(removal.removed));
}

QString messageOf(const RemainsRemoval &removal) {
    QStringList paragraphs;
    if (!removal.changed.empty()) {
        paragraphs += QCoreApplication::translate("Orvane", "Changed since, and so still there with the folders around it:") + u'\n' +
                      listed(removal.changed).join(u'\n');
    }
    if (!removal.left.empty()) {
        paragraphs +=
            QCoreApplication::translate("Orvane", "Not everything could be removed from:") + u'\n' + listed(removal.left).join(u'\n');
    }
    if (removal.removed == 0 && paragraphs.isEmpty()) {
        paragraphs += QCoreApplication::translate("Orvane", "This had been dealt with already.");
    }
    return paragraphs.join(QStringLiteral("\n\n"));
}

} // namespace

QtRemainsWindow::QtRemainsWindow(const std::vector<CreationRemains> &remains, std::function<void(bool)> answered)
    : _answered(std::move(answered)), _text(new QtAlertText(this)), _buttons(new QDialogButtonBox(this)) {
    setObjectName(QStringLiteral("remains"));
    setWindowTitle(QCoreApplication::translate("Orvane", "Orvane: Unfinished Folder"));
    _text->setObjectName(QStringLiteral("remainsText"));
    _text->setAccessibleName(QCoreApplication::translate("Orvane", "Message"));
    _keep = _buttons->addButton(QCoreApplication::translate("Orvane", "&Keep"), QDialogButtonBox::AcceptRole);
    _keep->setObjectName(QStringLiteral("remainsKeep"));
    _keep->setToolTip(QCoreApplication::translate("Orvane", "Everything stays as it is, and you will not be asked again."));
    _keep->setDefault(true);
    _remove = _buttons->addButton(QCoreApplication::translate("Orvane", "&Remove What Was Made"), QDialogButtonBox::DestructiveRole);
    _remove->setObjectName(QStringLiteral("remainsRemove"));
    connect(_keep, &QPushButton::clicked, this, [this] { _answer(false); });
    connect(_remove, &QPushButton::clicked, this, [this] { _answer(true); });
    _layOut();
    _showTexts(titleOf(remains), messageOf(remains));
    _keep->setFocus();
}

void QtRemainsWindow::showRemoval(const RemainsRemoval &removal) {
    unsetCursor();
    _buttons->clear();
    QPushButton *const close = _buttons->addButton(QCoreApplication::translate("Orvane", "&Close"), QDialogButtonBox::AcceptRole);
    close->setObjectName(QStringLiteral("remainsClose"));
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    _showTexts(titleOf(removal), messageOf(removal));
    close->setFocus();
}

void QtRemainsWindow::showEvent(QShowEvent *event) {
    QDialog::showEvent(event);
    _sinceShown.start();
}

void QtRemainsWindow::_answer(bool remove) {
    if (!_sinceShown.hasExpired(TimeToSeeIt.count())) {
        return;
    }
    const auto answered = std::exchange(_answered, nullptr);
    if (!answered) {
        return;
    }
    if (remove) {
        _keep->setEnabled(false);
        _remove->setEnabled(false);
        setCursor(Qt::BusyCursor); // until it is known what came of it
    } else {
        accept();
    }
    answered(remove);
}

void QtRemainsWindow::_showTexts(const QString &title, const QString &message) {
    _text->setTexts(title, message);
    // A screen reader says both.
    setAccessibleName(title);
    setAccessibleDescription(message);
}

void QtRemainsWindow::_layOut() {
    auto *const icon = new QLabel(this);
    const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxInformation, nullptr, this).pixmap(QSize(size, size), devicePixelRatio()));
    QtLayOutMessage(*this, *icon, *_text, *_buttons);
}

} // namespace orvane
