// Alerts with real keys and a real window manager.

#include "QtTestSupport.h"

#include "platform/qt/QtAlerts.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTextEdit>

namespace orvane::test {
namespace {

class AlertsTest : public testing::Test {
protected:
    static bool isUp() { return isActive("alert") && child<QPushButton>("alert", "alertButton")->hasFocus(); }
    static QString text() { return child<QTextEdit>("alert", "alertText")->toPlainText(); }
    void dismissBy(
        const std::string &keys, std::function<void()> looks = [] {}) {
        user.when(
            isUp,
            [keys, looks = std::move(looks)] {
                looks();
                xdotool("key " + keys);
            },
            "the alert");
    }

    QtMainThread mainThread;
    QtAlerts alerts{application(), mainThread};
    User user;
};

TEST_F(AlertsTest, ShowsBothTextsAndIsDismissedByReturn) {
    dismissBy("Return", [] { EXPECT_EQ(text(), QLatin1String("A title\nA message.")); });
    alerts.runAlertPanel("A title", "A message.");
    EXPECT_EQ(shownWindow("alert"), nullptr);
}

TEST_F(AlertsTest, IsDismissedByEscapeBlankAndClosing) {
    for (const char *key : {"Escape", "space", "alt+F4"}) {
        dismissBy(key);
        alerts.runAlertPanel("A title", "A message.");
        EXPECT_EQ(shownWindow("alert"), nullptr) << key;
    }
}

TEST_F(AlertsTest, AbsentTextsLeaveTheirPlacesEmpty) {
    dismissBy("Return", [] { EXPECT_EQ(text(), QLatin1String("only the message")); });
    alerts.runAlertPanel(std::nullopt, "only the message");
    dismissBy("Return", [] { EXPECT_EQ(text(), QLatin1String("only the title")); });
    alerts.runAlertPanel("only the title", std::nullopt);
    dismissBy("Return", [] { EXPECT_EQ(text(), QString()); });
    alerts.runAlertPanel(std::nullopt, std::nullopt);
}

TEST_F(AlertsTest, TextIsNeverRichAndCanBeSelected) {
    const std::string markup = "<b>bold</b> &amp; <img src='x'> %1 %@";
    dismissBy("Return", [&] {
        EXPECT_EQ(text(), QString::fromStdString(markup + "\n" + markup));
        child<QTextEdit>("alert", "alertText")->selectAll();
        EXPECT_EQ(child<QTextEdit>("alert", "alertText")->textCursor().selectedText().size(), text().size());
    });
    alerts.runAlertPanel(markup, markup);
}

TEST_F(AlertsTest, AbsurdlyLongTextsStayOnTheScreenAndScroll) {
    const std::vector<std::string> texts = {std::string(20000, 'x'), [] {
                                                std::string lines;
                                                for (int i = 0; i < 500; ++i) {
                                                    lines += "line " + std::to_string(i) + "\n";
                                                }
                                                return lines;
                                            }()};
    for (const std::string &message : texts) {
        dismissBy("Return", [] {
            const QWidget *const alert = shownWindow("alert");
            EXPECT_TRUE(alert->screen()->availableGeometry().contains(alert->geometry()));
            EXPECT_GT(child<QTextEdit>("alert", "alertText")->verticalScrollBar()->maximum(), 0);
            EXPECT_EQ(child<QTextEdit>("alert", "alertText")->horizontalScrollBar()->maximum(), 0);
        });
        alerts.runAlertPanel("A title", message);
    }
}

TEST_F(AlertsTest, ComesToTheFrontWhileTheUserWorksInAnotherProgramAndGivesTheKeyboardBack) {
    const OtherProgram other;
    dismissBy("Return");
    alerts.runAlertPanel("A title", "A message.");
    EXPECT_TRUE(waitUntil([&] { return other.isActive(); }));
}

TEST_F(AlertsTest, OtherThreadWaitsUntilItsAlertIsDismissed) {
    std::atomic<bool> wasDismissed = false;
    std::atomic<bool> hasReturned = false;
    dismissBy("Return", [&] { EXPECT_FALSE(hasReturned); });
    std::thread script([&] {
        mainThread.performAndWait([&] {
            alerts.runAlertPanel("Script", "failed");
            wasDismissed = true;
        });
        hasReturned = true;
    });
    EXPECT_TRUE(waitUntil([&] { return hasReturned.load(); }));
    EXPECT_TRUE(wasDismissed);
    script.join();
}

TEST_F(AlertsTest, AlertsOfManyThreadsComeOneAfterTheOther) {
    std::vector<QString> seen;
    int most = 0;
    for (int i = 0; i < 3; ++i) {
        user.when([&, i] { return isUp() && (i == 0 || text() != seen.back()); },
                  [&] {
                      seen.push_back(text());
                      int open = 0;
                      for (const QWidget *window : QApplication::topLevelWidgets()) {
                          open += window->isVisible() && window->objectName() == QLatin1String("alert") ? 1 : 0;
                      }
                      most = std::max(most, open);
                      xdotool("key Return");
                  },
                  "alert " + std::to_string(i));
    }
    std::atomic<int> over = 0;
    std::vector<std::thread> scripts;
    for (int i = 0; i < 3; ++i) {
        scripts.emplace_back([&, i] {
            mainThread.performAndWait([&, i] { alerts.runAlertPanel("Script " + std::to_string(i), std::nullopt); });
            ++over;
        });
    }
    EXPECT_TRUE(waitUntil([&] { return over == 3; }));
    for (std::thread &script : scripts) {
        script.join();
    }
    EXPECT_EQ(seen.size(), 3U);
    EXPECT_EQ(most, 1);
}

TEST_F(AlertsTest, AlertOfTheMainThreadItselfWaitsForTheOneThatIsUp) {
    user.when(
        isUp, [&] { QTimer::singleShot(0, [&] { alerts.runAlertPanel("second", std::nullopt); }); }, "the first alert");
    bool secondWaits = false;
    user.then([&] {
        secondWaits = text() == QLatin1String("first");
        xdotool("key Return");
    });
    user.when([] { return isUp() && text() == QLatin1String("second"); }, [] { xdotool("key Return"); }, "the second alert");
    alerts.runAlertPanel("first", std::nullopt);
    EXPECT_TRUE(secondWaits);
    EXPECT_EQ(shownWindow("alert"), nullptr);
}

} // namespace
} // namespace orvane::test
