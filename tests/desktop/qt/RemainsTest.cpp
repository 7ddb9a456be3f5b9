// The offer to remove what creations left that were ended half-way, with real keys, pointer and window manager.

#include "QtTestSupport.h"

#include "platform/qt/QtAlerts.h"
#include "platform/qt/QtRemainsOffer.h"

#include <optional>

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QMenu>
#include <QPushButton>
#include <QTextEdit>

namespace orvane::test {
namespace {

class RemainsTest : public testing::Test {
protected:
    ~RemainsTest() override {
        if (QWidget *const shown = shownWindow("remains")) {
            shown->close();
            EXPECT_TRUE(waitUntil([] { return shownWindow("remains") == nullptr; }));
        }
    }
    void offerOne(std::vector<std::string> changed = {}) {
        offer.offer({{"/home/me/Jobs/Acme", "0", 12, std::move(changed)}}, [this](bool remove) { answers.push_back(remove); });
    }
    static bool isUp() { return shownWindow("remains") != nullptr && shownWindow("remains")->windowHandle()->isExposed(); }
    static QString text() { return child<QTextEdit>("remains", "remainsText")->toPlainText(); }
    static QPushButton *button(const char *name) { return child<QPushButton>("remains", name); }
    /// Up, and so long that the user can have seen it.
    static bool isSeen() {
        if (!waitUntil(isUp)) {
            return false;
        }
        QElapsedTimer time;
        time.start();
        return waitUntil([&] { return time.hasExpired(QtRemainsWindow::TimeToSeeIt.count() + 50); });
    }
    /// As a user does who wants it to have the keys.
    static void give(const std::string &keys) {
        ASSERT_TRUE(isSeen());
        clickAt(*shownWindow("remains"), {4, 4});
        ASSERT_TRUE(waitUntil([] { return isActive("remains"); }));
        xdotool("key " + keys);
    }
    static void clickAt(const QWidget &widget, const QPoint &place) {
        const QPoint at = widget.mapToGlobal(place);
        xdotool("mousemove " + std::to_string(at.x()) + " " + std::to_string(at.y()) + " click 1");
    }
    bool isGone() {
        return waitUntil([] { return shownWindow("remains") == nullptr; });
    }

    QtRemainsOffer offer{application()};
    std::vector<bool> answers;
    User user;
};

TEST_F(RemainsTest, SaysWhichFolderItIsHowMuchCanGoAndWhatStays) {
    offerOne({"/home/me/Jobs/Acme/Docs/Notes"});
    ASSERT_TRUE(waitUntil(isUp));
    const QString said = text();
    EXPECT_TRUE(said.startsWith(QStringLiteral("The folder “Acme” was not finished.\n"))) << said.toStdString();
    for (const char *part : {"\n/home/me/Jobs/Acme\n", "12 files and folders can be removed.",
                             "Changed since, and never removed:\n/home/me/Jobs/Acme/Docs/Notes\n", "asked again at the next start"}) {
        EXPECT_TRUE(said.contains(QString::fromUtf8(part))) << part << " in " << said.toStdString();
    }
}

TEST_F(RemainsTest, SeveralFoldersStandInOneWindow) {
    offer.offer({{"/jobs/One", "0", 1, {}}, {"/jobs/Two", "1", 1234, {}}}, {});
    ASSERT_TRUE(waitUntil(isUp));
    EXPECT_TRUE(text().startsWith(QStringLiteral("2 folders were not finished.\n")));
    EXPECT_TRUE(text().contains(QStringLiteral("/jobs/One\n1 file or folder can be removed.\n\n/jobs/Two\n"))) << text().toStdString();
}

TEST_F(RemainsTest, TheUsersOtherWorkKeepsTheKeyboard) {
    const OtherProgram other;
    ASSERT_TRUE(waitUntil([&] { return other.isActive(); }));
    offerOne();
    ASSERT_TRUE(waitUntil(isUp));
    EXPECT_TRUE(other.isActive());
    xdotool("key Return");
    EXPECT_TRUE(other.isActive());
    application().activateIgnoringOtherApps(true); // what each creation does
    QApplication::processEvents();
    EXPECT_TRUE(other.isActive());
    EXPECT_TRUE(answers.empty());
}

TEST_F(RemainsTest, ReturnKeeps) {
    offerOne();
    ASSERT_TRUE(waitUntil(isUp));
    EXPECT_TRUE(button("remainsKeep")->isDefault());
    EXPECT_FALSE(button("remainsRemove")->isDefault());
    give("Return");
    ASSERT_TRUE(isGone());
    EXPECT_EQ(answers, std::vector<bool>{false});
}

TEST_F(RemainsTest, WhatWasTypedAsItCameUpIsNoAnswer) {
    offerOne();
    ASSERT_TRUE(waitUntil(isUp));
    button("remainsKeep")->click();
    button("remainsRemove")->click();
    EXPECT_TRUE(answers.empty());
    EXPECT_TRUE(isUp());
    give("Return");
    ASSERT_TRUE(isGone());
    EXPECT_EQ(answers, std::vector<bool>{false});
}

TEST_F(RemainsTest, ClosingIsNoAnswer) {
    for (const char *key : {"Escape", "alt+F4"}) {
        offerOne();
        give(key);
        ASSERT_TRUE(isGone()) << key;
    }
    EXPECT_TRUE(answers.empty());
}

TEST_F(RemainsTest, RemovingTellsWhatCameOfItInTheSameWindow) {
    offerOne();
    ASSERT_TRUE(isSeen());
    const QPushButton *const remove = button("remainsRemove");
    clickAt(*remove, remove->rect().center());
    ASSERT_TRUE(waitUntil([this] { return !answers.empty(); }));
    EXPECT_EQ(answers, std::vector<bool>{true});
    EXPECT_FALSE(button("remainsRemove")->isEnabled());
    EXPECT_FALSE(button("remainsKeep")->isEnabled());
    offer.showRemoval({11, {"/home/me/Jobs/Acme/Notes"}, {}});
    EXPECT_EQ(text(), QStringLiteral("11 files and folders were removed.\n"
                                     "Changed since, and so still there with the folders around it:\n/home/me/Jobs/Acme/Notes"));
    EXPECT_EQ(button("remainsRemove"), nullptr);
    ASSERT_TRUE(waitUntil([] { return isActive("remains") && button("remainsClose")->hasFocus(); }));
    xdotool("key Return");
    ASSERT_TRUE(isGone());
    EXPECT_EQ(answers.size(), 1U);
}

TEST_F(RemainsTest, WhatCameOfRemovingIsSaidForEachCase) {
    offerOne();
    ASSERT_TRUE(waitUntil(isUp));
    offer.showRemoval({1, {}, {}});
    EXPECT_EQ(text(), QStringLiteral("1 file or folder was removed."));
    offer.showRemoval({0, {}, {}});
    EXPECT_EQ(text(), QStringLiteral("Nothing was removed.\nThis had been dealt with already."));
    offer.showRemoval({0, {}, {"/jobs/One"}});
    EXPECT_EQ(text(), QStringLiteral("Nothing was removed.\nNot everything could be removed from:\n/jobs/One"));
    offer.showRemoval({0, std::vector<std::string>(40, "/jobs/One/mine"), {}});
    EXPECT_TRUE(text().endsWith(QStringLiteral("/jobs/One/mine\nand 28 more"))) << text().toStdString();
}

TEST_F(RemainsTest, AResultAfterTheWindowWasClosedIsNotShown) {
    offerOne();
    give("alt+r");
    ASSERT_TRUE(waitUntil([this] { return !answers.empty(); }));
    xdotool("key Escape");
    ASSERT_TRUE(isGone());
    offer.showRemoval({12, {}, {}});
    QApplication::processEvents();
    EXPECT_EQ(shownWindow("remains"), nullptr);
}

TEST_F(RemainsTest, ItIsOutOfSightWhileAnotherWindowAsks) {
    offerOne();
    ASSERT_TRUE(waitUntil(isUp));
    QtMainThread mainThread;
    QtAlerts alerts(application(), mainThread);
    user.when([] { return isActive("alert") && shownWindow("remains") == nullptr; }, [] { xdotool("key Return"); }, "the alert alone");
    alerts.runAlertPanel("A title", "A message.");
    EXPECT_TRUE(waitUntil(isUp)) << "it comes back";
    give("alt+k");
    ASSERT_TRUE(isGone());
    EXPECT_EQ(answers, std::vector<bool>{false});
}

TEST_F(RemainsTest, ItComesOnceAnEarlierQuestionHasItsAnswer) {
    QtMainThread mainThread;
    QtAlerts alerts(application(), mainThread);
    user.when([] { return isActive("alert"); }, [this] { offerOne(); }, "the alert");
    user.then([] {
        EXPECT_EQ(shownWindow("remains"), nullptr);
        xdotool("key Return");
    });
    alerts.runAlertPanel("A title", "A message.");
    EXPECT_TRUE(waitUntil(isUp));
}

TEST_F(RemainsTest, ItComesOnceAMenuIsGone) {
    QMenu menu;
    menu.addAction(QStringLiteral("Film"));
    menu.popup({300, 300});
    ASSERT_TRUE(waitUntil([&] { return menu.isVisible() && menu.windowHandle()->isExposed(); }));
    offerOne();
    QApplication::processEvents();
    EXPECT_EQ(shownWindow("remains"), nullptr);
    menu.close();
    EXPECT_TRUE(waitUntil(isUp));
}

TEST_F(RemainsTest, NamesAreShownAsTextInOneLine) {
    offer.offer({{"/jobs/<b>A\nB", "0", 2, {}}}, {});
    ASSERT_TRUE(waitUntil(isUp));
    EXPECT_TRUE(text().contains(QStringLiteral("“<b>A B”"))) << text().toStdString();
}

} // namespace
} // namespace orvane::test
