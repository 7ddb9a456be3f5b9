// How large a folder is that becomes a preset, and the question about a large one.

#include "desktop/qt/QtTestSupport.h"

#include "window/FolderContents.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QWidget>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

class FolderContentsTest : public testing::Test {
protected:
    FolderContentsTest() { application(); }

    [[nodiscard]] QString path(const QString &name = {}) const { return QDir::cleanPath(folder.path() + QStringLiteral("/Shoot/") + name); }
    /// A file of that size, which takes no room.
    void put(const QString &name, qint64 bytes) {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(bytes)) << path(name).toStdString();
    }
    void put(int files, qint64 bytes) {
        for (int i = 0; i < files; ++i) {
            put(QString::number(i % 10) + QLatin1Char('/') + QString::number(i), bytes);
        }
    }
    /// What the question says; empty when there was none.
    [[nodiscard]] QString question() {
        QWidget window;
        QString said;
        User user;
        user.when([] { return isActive("folderQuestion"); },
                  [&] {
                      auto *const box = qobject_cast<QMessageBox *>(shownWindow("folderQuestion"));
                      said = box->text();
                      box->button(QMessageBox::Cancel)->click();
                  },
                  "the question");
        EXPECT_EQ(takingOfFolder(path(), &window), FolderTaking::Nothing);
        EXPECT_TRUE(user.hasFinished());
        return said;
    }

    QTemporaryDir folder{QStringLiteral("/dev/shm/orvane-folder-XXXXXX")};
};

TEST_F(FolderContentsTest, FilesOfASmallFolderAreAllCounted) {
    put(QStringLiteral("notes.txt"), 3);
    put(QStringLiteral(".hidden/deep/plan.txt"), 40);
    ASSERT_TRUE(QFile::link(QStringLiteral("/"), path(QStringLiteral("link"))));
    const FolderAmount amount = amountOfFolder(path(), 0ms);
    EXPECT_EQ(amount.files, 2);
    EXPECT_EQ(amount.bytes, 43);
    EXPECT_TRUE(amount.isWhole) << "however long it takes: whether to ask is not clear before";
}

TEST_F(FolderContentsTest, ManySmallFilesAreAllCounted) {
    put(MostEntriesCounted + 10, 1);
    const FolderAmount amount = amountOfFolder(path(), 0ms);
    EXPECT_EQ(amount.files, MostEntriesCounted + 10);
    EXPECT_TRUE(amount.isWhole);
}

TEST_F(FolderContentsTest, SmallFilesWithoutEndAreAskedForToo) {
    put(MostEntriesBeforeQuestion + 500, 0);
    const FolderAmount amount = amountOfFolder(path(), 1h);
    EXPECT_FALSE(amount.isWhole);
    EXPECT_TRUE(question().contains(QStringLiteral(": at least ")));
}

TEST_F(FolderContentsTest, CountingEndsWithManyEntriesOnceTheQuestionIsClear) {
    constexpr qint64 Bytes = 2000;
    put(MostEntriesCounted + 500, Bytes);
    const FolderAmount amount = amountOfFolder(path(), 1h);
    EXPECT_LT(amount.files, MostEntriesCounted) << "its folders are entries, too";
    EXPECT_GE(amount.files, MostEntriesCounted - 10);
    EXPECT_EQ(amount.bytes, amount.files * Bytes);
    EXPECT_FALSE(amount.isWhole);
}

TEST_F(FolderContentsTest, CountingEndsAfterAWhileOnceTheQuestionIsClear) {
    put(5, MostBytesUnasked / 2);
    const FolderAmount amount = amountOfFolder(path(), 0ms);
    EXPECT_EQ(amount.files, 3);
    EXPECT_GT(amount.bytes, MostBytesUnasked);
    EXPECT_FALSE(amount.isWhole);
}

TEST_F(FolderContentsTest, TheQuestionAboutAFolderThatWasCountedSaysHowMuchItIs) {
    put(2, 10'600'000);
    EXPECT_TRUE(question().endsWith(QStringLiteral(": 2, with 21 MB in all.")));
}

TEST_F(FolderContentsTest, TheQuestionAboutAFolderThatWasNotCountedToItsEndPromisesNoMore) {
    put(MostEntriesCounted + 10, 1'040);
    const QString said = question();
    EXPECT_TRUE(said.contains(QStringLiteral(": at least "))) << said.toStdString();
    EXPECT_TRUE(said.endsWith(QStringLiteral(", with at least 20 MB in all."))) << said.toStdString();
}

} // namespace
} // namespace orvane::test
