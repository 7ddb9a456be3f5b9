#include "window/FolderContents.h"

#include "window/Page.h"

#include "platform/qt/QtText.h"

#include <QApplication>
#include <QDirIterator>
#include <QFileInfo>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>

namespace orvane {

FolderAmount amountOfFolder(const QString &folder) {
    FolderAmount amount;
    QDirIterator files(folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        ++amount.files;
        amount.bytes += files.fileInfo().size();
    }
    return amount;
}

FolderTaking takingOfFolder(const QString &folder, QWidget *parent) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const FolderAmount amount = amountOfFolder(folder);
    QApplication::restoreOverrideCursor();
    if (amount.bytes <= MostBytesUnasked) {
        return FolderTaking::WithContents;
    }
    const QLocale locale;
    constexpr double Megabyte = 1e6;
    QMessageBox question(parent);
    question.setObjectName(QStringLiteral("folderQuestion"));
    question.setIcon(QMessageBox::Question);
    question.setWindowTitle(translated("Import Folder"));
    question.setTextFormat(Qt::PlainText);
    question.setText(translated("Files in “%1”: %2, with %3 MB in all.")
                         .arg(QtIsolated(QtSingleLine(QFileInfo(folder).fileName())), locale.toString(amount.files),
                              locale.toString(static_cast<double>(amount.bytes) / Megabyte, 'f', 0)));
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
