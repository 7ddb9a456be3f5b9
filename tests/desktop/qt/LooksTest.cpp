// Pictures of every window, light and dark, and what makes them look right: nothing is cut off, all stands on the screen, texts can be
// read against what lies below them. Run at 100 % and at 200 %.

#include "QtPromptDesk.h"

#include "platform/qt/QtAlerts.h"
#include "platform/qt/QtMenuView.h"
#include "platform/qt/QtOpenPanel.h"
#include "platform/qt/QtProgressWindow.h"

#include <cmath>

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QHash>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTranslator>

namespace orvane::test {
namespace {

QPalette darkPalette() {
    QPalette dark;
    for (const auto &[role, colour] : std::initializer_list<std::pair<QPalette::ColorRole, QColor>>{
             {QPalette::Window, QColor(43, 43, 46)},
             {QPalette::WindowText, QColor(230, 230, 232)},
             {QPalette::Base, QColor(30, 30, 32)},
             {QPalette::AlternateBase, QColor(38, 38, 40)},
             {QPalette::Text, QColor(230, 230, 232)},
             {QPalette::Button, QColor(56, 56, 60)},
             {QPalette::ButtonText, QColor(230, 230, 232)},
             {QPalette::Highlight, QColor(61, 132, 224)},
             {QPalette::HighlightedText, Qt::white},
             {QPalette::ToolTipBase, QColor(56, 56, 60)},
             {QPalette::ToolTipText, QColor(230, 230, 232)},
             {QPalette::PlaceholderText, QColor(150, 150, 154)},
         }) {
        dark.setColor(role, colour);
    }
    return dark;
}

/// Texts of another language, longer than the English ones.
class German final : public QTranslator {
public:
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char *context, const char *source, const char * /*note*/, int /*number*/) const override {
        static const QHash<QString, QString> texts = {
            {QStringLiteral("New Folder from Preset"), QStringLiteral("Neuer Ordner nach einer Vorlage")},
            {QStringLiteral("An item of this name already exists."), QStringLiteral("Ein Objekt dieses Namens ist bereits vorhanden.")},
            {QStringLiteral("Creating the new folder…"), QStringLiteral("Der neue Ordner wird angelegt …")},
            {QStringLiteral("Items so far: %1"), QStringLiteral("Bisher angelegte Objekte: %1")},
            {QStringLiteral("&Cancel"), QStringLiteral("&Abbrechen")},
            {QStringLiteral("Cancel"), QStringLiteral("Abbrechen")},
        };
        static_cast<void>(context);
        return texts.value(QString::fromUtf8(source));
    }
};

/// Relative luminance and contrast (WCAG 2.1).
double luminance(const QColor &colour) {
    const auto linear = [](double value) { return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}
double contrast(const QColor &one, const QColor &other) {
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}
QColor over(const QColor &below, QColor tint, int alpha) {
    const double share = alpha / 255.0;
    return QColor::fromRgbF(static_cast<float>(below.redF() * (1 - share) + tint.redF() * share),
                            static_cast<float>(below.greenF() * (1 - share) + tint.greenF() * share),
                            static_cast<float>(below.blueF() * (1 - share) + tint.blueF() * share));
}

/// Every label and button has the room that its text needs, and the window stands on the screen.
void expectNothingIsCut(const QWidget &window) {
    EXPECT_TRUE(window.screen()->availableGeometry().contains(window.geometry()));
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        EXPECT_TRUE(!label->isVisible() || (label->width() >= label->sizeHint().width() || label->wordWrap()))
            << label->text().toStdString();
        EXPECT_TRUE(!label->isVisible() || label->height() >= label->fontMetrics().height() || label->text().isEmpty());
    }
    for (const QAbstractButton *button : window.findChildren<QAbstractButton *>()) {
        EXPECT_TRUE(!button->isVisible() || button->width() >= button->minimumSizeHint().width()) << button->text().toStdString();
    }
}

class Looks : public testing::TestWithParam<bool> {
protected:
    Looks() : _before(QApplication::palette()) {
        if (GetParam()) {
            QApplication::setPalette(darkPalette());
        }
    }
    ~Looks() override { QApplication::setPalette(_before); }

    /// What is in the picture, light or dark, the scale.
    [[nodiscard]] static std::string picture(const std::string &what) {
        const int percent = static_cast<int>(std::lround(QGuiApplication::primaryScreen()->devicePixelRatio() * 100));
        return what + (GetParam() ? "-dark" : "-light") + (percent == 100 ? "" : "-" + std::to_string(percent));
    }
    static void take(const char *window, const std::string &what) {
        ASSERT_NE(shownWindow(window), nullptr);
        expectNothingIsCut(*shownWindow(window));
        EXPECT_TRUE(takePicture(*shownWindow(window), picture(what)));
    }
    static bool isPainted(const char *window) { return isActive(window) && shownWindow(window)->windowHandle()->isExposed(); }

    User user;

private:
    QPalette _before;
};

TEST_P(Looks, Prompt) {
    PromptDesk desk;
    user.when([] { return isPainted(PromptWindowName); }, [] { xdotool("type --delay 2 --args 1 'Acme & Söhne' key Tab"); }, "the prompt");
    user.when([] { return promptTable()->editedRow() == 1; }, [] { xdotool("type --delay 2 --args 1 'Winter'"); }, "the second row");
    user.when([] { return promptField()->text() == QLatin1String("Winter"); }, [] {}, "the text");
    user.then([] { take(PromptWindowName, "prompt"); });
    user.then([] { xdotool("key Escape Escape"); });
    EXPECT_FALSE(desk.createFolder("{Client} – {Project} {auto number}"));
}

TEST_P(Looks, PromptWithAProblemInGerman) {
    German german;
    QCoreApplication::installTranslator(&german);
    {
        PromptDesk desk;
        desk.fileSystem.addFolder("/jobs/Frühjahr");
        user.when([] { return isPainted(PromptWindowName); }, [] { promptField()->setText(QStringLiteral("Frühjahr")); }, "the prompt");
        user.when([] { return !child<QLabel>(PromptWindowName, "problem")->text().isEmpty(); }, [] {}, "the problem");
        user.then([] { take(PromptWindowName, "prompt-problem"); });
        user.then([] { xdotool("key Escape Escape"); });
        EXPECT_FALSE(desk.createFolder("{Projektbezeichnung des Auftraggebers}"));
    }
    QCoreApplication::removeTranslator(&german);
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
    user.when([] { return promptField()->text().size() == 300; }, [] {}, "the text");
    user.then([] { take(PromptWindowName, "prompt-many"); });
    user.then([] { xdotool("key Escape Escape"); });
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
    user.when([] { return isPainted("alert"); }, [] {}, "the alert");
    user.then([] { take("alert", "alert"); });
    user.then([] { xdotool("key Return"); });
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
    user.when([] { return isPainted("alert"); }, [] {}, "the alert");
    user.then([] { take("alert", "alert-long"); });
    user.then([] { xdotool("key Return"); });
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
    user.when([] { return QApplication::focusWidget() != nullptr; }, [] {}, "the folder");
    user.then([] { take("openPanel", "panel"); });
    user.then([] { xdotool("key Escape"); });
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
    German german;
    QCoreApplication::installTranslator(&german);
    {
        QtProgressWindow window;
        window.setNodes(12345);
        window.show();
        ASSERT_TRUE(waitUntil([&] { return window.windowHandle()->isExposed(); }));
        user.then([&] { take("progressWindow", "progress"); });
        EXPECT_TRUE(waitUntil([&] { return user.hasFinished(); }));
    }
    QCoreApplication::removeTranslator(&german);
}

INSTANTIATE_TEST_SUITE_P(Colours, Looks, testing::Bool(), [](const auto &instance) { return instance.param ? "Dark" : "Light"; });

} // namespace
} // namespace orvane::test
