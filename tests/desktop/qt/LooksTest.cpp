// Pictures of every window, light and dark, and what makes them look right: nothing is cut off, all stands on the screen, texts can be
// read against what lies below them, the keyboard and a screen reader reach everything. Run at 100 % and at 200 %, and on a small screen.

#include "LooksSupport.h"
#include "QtPromptDesk.h"

#include "platform/qt/QtAlerts.h"
#include "platform/qt/QtMenuView.h"
#include "platform/qt/QtOpenPanel.h"
#include "platform/qt/QtProgressWindow.h"
#include "platform/qt/QtRemainsWindow.h"
#include "platform/qt/QtTranslations.h"

#include <cmath>

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTranslator>

namespace orvane::test {
namespace {

/// How a desktop is set.
enum class Setting { Light, Dark, RightToLeft };

std::string nameOf(Setting setting) {
    return setting == Setting::Light ? "light" : setting == Setting::Dark ? "dark" : "right-to-left";
}

class Looks : public testing::TestWithParam<Setting> {
protected:
    Looks() : _before(QApplication::palette()) {
        if (GetParam() == Setting::Dark) {
            QApplication::setPalette(darkPalette());
        } else if (GetParam() == Setting::RightToLeft) {
            QApplication::setLayoutDirection(Qt::RightToLeft);
        }
    }
    ~Looks() override {
        QApplication::setPalette(_before);
        QApplication::setLayoutDirection(Qt::LeftToRight);
    }

    /// What is in the picture, the setting, the scale or the screen when they are unusual.
    [[nodiscard]] static std::string picture(const std::string &what) {
        const QScreen *const screen = QGuiApplication::primaryScreen();
        const int percent = static_cast<int>(std::lround(screen->devicePixelRatio() * 100));
        const bool isSmall = screen->geometry().width() < 800;
        return what + "-" + nameOf(GetParam()) + (percent == 100 ? "" : "-" + std::to_string(percent)) + (isSmall ? "-small" : "");
    }
    static void take(const char *window, const std::string &what) {
        ASSERT_NE(shownWindow(window), nullptr);
        expectNothingIsCut(*shownWindow(window));
        expectEverythingHasAName(*shownWindow(window));
        // What was painted last may be on its way to the screen.
        EXPECT_TRUE(waitUntil([&] { return takePicture(*shownWindow(window), picture(what)); }));
    }
    /// Shown, and where the window manager puts it.
    static bool isPainted(const char *window) {
        return isActive(window) && shownWindow(window)->windowHandle()->isExposed() &&
               shownWindow(window)->screen()->availableGeometry().contains(frameOf(*shownWindow(window)));
    }
    static bool saysProblem(const char *part) {
        return child<QLabel>(PromptWindowName, "problem")->text().contains(QString::fromUtf8(part));
    }

    User user;

private:
    QPalette _before;
};

TEST_P(Looks, Prompt) {
    PromptDesk desk;
    user.when([] { return isPainted(PromptWindowName); },
              [] {
                  promptField()->insert(QStringLiteral("Acme & Söhne"));
                  xdotool("key Tab");
              },
              "the prompt");
    user.when([] { return promptTable()->editedRow() == 1; }, [] { promptField()->insert(QStringLiteral("Winter")); }, "the second row");
    user.when([] { return promptField()->text() == QLatin1String("Winter") && !saysProblem("name"); },
              [] {
                  take(PromptWindowName, "prompt");
                  EXPECT_TRUE(promptField()->hasFocus());
                  const auto *const buttons = child<QDialogButtonBox>(PromptWindowName, "buttonBox");
                  EXPECT_TRUE(buttons->button(QDialogButtonBox::Ok)->isDefault());
                  EXPECT_FALSE(buttons->button(QDialogButtonBox::Cancel)->isDefault());
                  xdotool("key Escape");
              },
              "the text");
    user.when([] { return promptTable()->editedRow() < 0; },
              [] {
                  expectTabReachesEverything(*shownWindow(PromptWindowName));
                  xdotool("key Escape");
              },
              "the end of typing");
    EXPECT_FALSE(desk.createFolder("{Client} – {Project} {auto number}"));
}

TEST_P(Looks, PromptWithAProblemInGerman) {
    const German german;
    PromptDesk desk;
    desk.fileSystem.addFolder("/jobs/Frühjahr");
    user.when([] { return isPainted(PromptWindowName); }, [] { promptField()->setText(QStringLiteral("Frühjahr")); }, "the prompt");
    user.when([] { return saysProblem("bereits vorhanden"); },
              [] {
                  take(PromptWindowName, "prompt-problem");
                  promptField()->setText(QString(400, QLatin1Char('x')));
              },
              "the problem");
    user.when([] { return saysProblem("zulässige Länge"); },
              [] {
                  expectNothingIsCut(*shownWindow(PromptWindowName));
                  xdotool("key Escape Escape");
              },
              "the next problem");
    EXPECT_FALSE(desk.createFolder("{Projektbezeichnung des Auftraggebers}"));
}

TEST_P(Looks, PromptWithManyRowsAndLongAndRightToLeftTexts) {
    PromptDesk desk;
    std::string name = "{A very long variable name that nobody would ever type twice in a row}{שם הלקוח}";
    for (int i = 3; i <= 200; ++i) {
        name += "{Variable " + std::to_string(i) + "}";
    }
    user.when([] { return isPainted(PromptWindowName); },
              [] {
                  promptField()->setText(
                      QStringLiteral("A value that is much longer than the field in which it stands, so that it does not fit"));
                  xdotool("key Return");
              },
              "the prompt");
    user.when([] { return promptTable()->editedRow() == 1; },
              [] {
                  promptField()->setText(QStringLiteral("שלום (עולם) 2024"));
                  xdotool("key Return");
              },
              "the second row");
    user.when([] { return promptTable()->editedRow() == 2; }, [] { promptField()->setText(QString(300, QLatin1Char('w'))); },
              "the third row");
    user.when([] { return saysProblem("too long"); },
              [] {
                  take(PromptWindowName, "prompt-many");
                  // What does not fit stands whole in the tool tip.
                  const QAbstractItemModel &rows = *promptTable()->model();
                  EXPECT_TRUE(rows.index(0, 0).data(Qt::ToolTipRole).toString().contains(QLatin1String("ever type twice in a row")));
                  EXPECT_TRUE(rows.index(0, 1).data(Qt::ToolTipRole).toString().contains(QLatin1String("so that it does not fit")));
                  xdotool("key Escape Escape");
              },
              "the problem");
    EXPECT_FALSE(desk.createFolder(name));
}

TEST_P(Looks, TextsCanBeReadOnTheirGround) {
    const QPalette palette = QApplication::palette();
    const QColor text = palette.color(QPalette::WindowText);
    const QColor window = palette.color(QPalette::Window);
    EXPECT_GE(contrast(text, window), 7);
    for (const int alpha : {56, 120}) { // of the values in the folder's name
        EXPECT_GE(contrast(text, over(window, palette.color(QPalette::Highlight), alpha)), 4.5) << alpha;
    }
}

TEST_P(Looks, Alert) {
    QtMainThread mainThread;
    QtAlerts alerts(application(), mainThread);
    user.when([] { return isPainted("alert"); },
              [] {
                  take("alert", "alert");
                  EXPECT_TRUE(child<QPushButton>("alert", "alertButton")->isDefault());
                  EXPECT_TRUE(child<QPushButton>("alert", "alertButton")->hasFocus());
                  expectTabReachesEverything(*shownWindow("alert"));
                  const auto *const text = child<QTextEdit>("alert", "alertText");
                  EXPECT_LE(std::abs(text->height() - text->document()->size().height()), 2) << "no more room than the text takes";
                  xdotool("key Return");
              },
              "the alert");
    alerts.runAlertPanel(
        "Unable to create “Acme & Söhne – Winter 7”",
        "The folder “/home/user/Jobs/2024/Film” cannot be written to: the disk is full. What had been made was removed again.");
}

TEST_P(Looks, LongAlert) {
    QtMainThread mainThread;
    QtAlerts alerts(application(), mainThread);
    std::string message;
    for (int i = 0; i < 200; ++i) {
        message += "Line " + std::to_string(i) + " of what a script wrote: /a/path/without/any/blank/" + std::string(60, 'x') + "\n";
    }
    user.when([] { return isPainted("alert"); },
              [] {
                  take("alert", "alert-long");
                  EXPECT_EQ(child<QTextEdit>("alert", "alertText")->verticalScrollBar()->value(), 0) << "it is read from its beginning";
                  expectTabReachesEverything(*shownWindow("alert"));
                  child<QPushButton>("alert", "alertButton")->setFocus();
                  xdotool("key Return");
              },
              "the alert");
    alerts.runAlertPanel("The script failed", message);
}

TEST_P(Looks, OpenPanel) {
    const QTemporaryDir home;
    for (const char *folder : {"Film", "Jobs 2024", "Präsentationen", "שלום"}) {
        QDir(home.path()).mkdir(QString::fromUtf8(folder));
    }
    QDir::setCurrent(home.path());
    QtOpenPanel panel(application(), {});
    user.when([] { return isPainted("openPanel"); },
              [&] { dynamic_cast<QFileDialog *>(shownWindow("openPanel"))->setDirectory(home.path()); }, "the panel");
    user.when([] { return QApplication::focusWidget() != nullptr; },
              [] {
                  take("openPanel", "panel");
                  EXPECT_TRUE(child<QDialogButtonBox>("openPanel", "buttonBox")->button(QDialogButtonBox::Open)->isDefault());
                  expectTabReachesEverything(*shownWindow("openPanel"));
                  xdotool("key Escape");
              },
              "the folder");
    EXPECT_FALSE(panel
                     .runModal({.title = "Orvane: Choose Parent Folder",
                                .prompt = "Choose",
                                .canChooseFiles = false,
                                .canChooseDirectories = true,
                                .canCreateDirectories = true})
                     .has_value());
    QDir::setCurrent(QDir::rootPath());
}

TEST_P(Looks, MenuOfPresets) {
    Menu menu;
    for (const char *title : {"Film production", "Bed & Breakfast", "🎬 Commercial", "שלום {x}!", "A\ttab and\na line break"}) {
        menu.insertItemAtIndex(makeItem(title, 9), menu.numberOfItems());
    }
    menu.insertItemAtIndex(makeItem("A preset whose label goes on and on " + std::string(250, 'm') + " until its end", 9),
                           menu.numberOfItems());
    menu.insertItemAtIndex(makeSeparator(), menu.numberOfItems());
    menu.insertItemAtIndex(makeItem("Preferences…"), menu.numberOfItems());
    MenuItem quit = makeItem("Quit Orvane");
    quit.validate = [](const MenuItem &) { return false; };
    menu.insertItemAtIndex(std::move(quit), menu.numberOfItems());
    QtMenuView view(menu);
    view.menu().setObjectName(QStringLiteral("presets"));
    view.menu().popup({60, 60});
    ASSERT_TRUE(waitUntil([&] { return view.menu().isVisible() && view.menu().windowHandle()->isExposed(); }));
    xdotool("key Down");
    ASSERT_TRUE(waitUntil([&] { return view.menu().activeAction() != nullptr; }));
    user.then([&] { EXPECT_TRUE(takePicture(view.menu(), picture("menu"))); });
    EXPECT_TRUE(waitUntil([&] { return user.hasFinished(); }));
    for (const QAction *action : view.menu().actions()) {
        EXPECT_TRUE(action->isSeparator() || view.menu().rect().contains(view.menu().actionGeometry(const_cast<QAction *>(action))));
    }
    view.menu().close();
}

TEST_P(Looks, Progress) {
    const German german;
    QtProgressWindow window;
    window.setNodes(12345);
    window.show();
    ASSERT_TRUE(waitUntil([&] { return window.windowHandle()->isExposed(); }));
    user.then([&] {
        expectNothingIsCut(window);
        EXPECT_EQ(QAccessible::queryAccessibleInterface(window.findChild<QProgressBar *>())->text(QAccessible::Name),
                  QStringLiteral("Der neue Ordner wird angelegt …"));
        EXPECT_TRUE(takePicture(window, picture("progress")));
    });
    EXPECT_TRUE(waitUntil([&] { return user.hasFinished(); }));
}

TEST_P(Looks, RemainsInEachLanguage) {
    for (const char *language : {"en", "de", "fr"}) {
        static_cast<void>(QtInstallTranslations(environment("ORVANE_TEST_BUILT_RESOURCES"), QLocale(QLatin1String(language))));
        QtRemainsWindow window({{"/home/user/Jobs/2024/Film/Acme & Söhne – Winter 7", "0", 1234, {}},
                                {"/home/user/Jobs/שלום (עולם)", "1", 1, {"/home/user/Jobs/שלום (עולם)/Docs/Notes to keep.txt"}}},
                               {});
        application().bringToFront(window);
        ASSERT_TRUE(waitUntil([] { return isPainted("remains"); })) << language;
        take("remains", std::string("remains-") + language);
        EXPECT_TRUE(child<QPushButton>("remains", "remainsKeep")->hasFocus());
        expectTabReachesEverything(window);
        window.showRemoval({1233, {"/home/user/Jobs/שלום (עולם)/Docs/Notes to keep.txt"}, {"/home/user/Jobs/2024/Film"}});
        ASSERT_TRUE(waitUntil([&] { return isPainted("remains") && window.size() == window.sizeHint(); })) << language;
        EXPECT_TRUE(child<QPushButton>("remains", "remainsClose")->hasFocus());
        window.repaint();
        take("remains", std::string("remains-done-") + language);
        window.close();
        for (QTranslator *translator : qApp->findChildren<QTranslator *>()) {
            QCoreApplication::removeTranslator(translator);
            delete translator;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Settings, Looks, testing::Values(Setting::Light, Setting::Dark, Setting::RightToLeft), [](const auto &instance) {
    return std::string(instance.param == Setting::Light ? "Light" : instance.param == Setting::Dark ? "Dark" : "RightToLeft");
});

} // namespace
} // namespace orvane::test
