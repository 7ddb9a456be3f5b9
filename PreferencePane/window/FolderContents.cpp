#include "window/FolderContents.h"

#include "window/Page.h"

#include "platform/qt/QtText.h"

#include <QApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvane {

namespace {

constexpr std::chrono::milliseconds LongestBeforeQuestion{2500};

} // namespace

FolderAmount amountOfFolder(const QString &folder, std::chrono::milliseconds longest) {
    FolderAmount amount;
    QElapsedTimer clock;
    clock.start();
    int entries = 0;
    QDirIterator all(folder, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden | QDir::NoSymLinks,
                     QDirIterator::Subdirectories);
    while (all.hasNext()) {
        const bool isClear = amount.bytes > MostBytesUnasked; // that there is a question, for which nobody waits longer than needed
        if (entries >= (isClear ? MostEntriesCounted : MostEntriesBeforeQuestion) ||
            clock.elapsed() >= (isClear ? longest : LongestBeforeQuestion).count()) {
            amount.isWhole = false;
            break;
        }
        all.next();
        ++entries;
        if (const QFileInfo entry = all.fileInfo(); entry.isFile()) {
            ++amount.files;
            amount.bytes += std::min(entry.size(), std::numeric_limits<qint64>::max() - amount.bytes);
        }
    }
    return amount;
}

FolderTaking takingOfFolder(const QString &folder, QWidget *parent) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const FolderAmount amount = amountOfFolder(folder);
    QApplication::restoreOverrideCursor();
    if (amount.isWhole && amount.bytes <= MostBytesUnasked) {
        return FolderTaking::WithContents;
    }
    const QLocale locale;
    constexpr double Megabyte = 1e6;
    QMessageBox question(parent);
    question.setObjectName(QStringLiteral("folderQuestion"));
    question.setIcon(QMessageBox::Question);
    question.setWindowTitle(translated("Import Folder"));
    question.setTextFormat(Qt::PlainText);
    const double megabytes = static_cast<double>(amount.bytes) / Megabyte;
    question.setText((amount.isWhole ? translated("Files in “%1”: %2, with %3 MB in all.")
                                     : translated("Files in “%1”: at least %2, with at least %3 MB in all."))
                         .arg(QtIsolated(QtSingleLine(QFileInfo(folder).fileName())), locale.toString(amount.files),
                              locale.toString(amount.isWhole ? megabytes : std::floor(megabytes), 'f', 0)));
    question.setInformativeText(
        translated("Their contents can be copied, so that new folders get them, too. With the names only, new files "
                   "are empty."));
    QPushButton *const copy = question.addButton(translated("Copy C&ontents"), QMessageBox::AcceptRole);
    copy->setObjectName(QStringLiteral("copyContents"));
    QPushButton *const names = question.addButton(translated("&Names Only"), QMessageBox::ActionRole);
    names->setObjectName(QStringLiteral("namesOnly"));
    question.addButton(QMessageBox::Cancel)->setIcon({}); // the others have none
    question.setDefaultButton(copy);
    question.exec();
    return question.clickedButton() == copy    ? FolderTaking::WithContents
           : question.clickedButton() == names ? FolderTaking::NamesOnly
                                               : FolderTaking::Nothing;
}

} // namespace orvane
