// Pictures of each page, light and dark, at 100 % and 200 %, narrow, with long paths; nothing is cut off, everything is reached.

#include "SettingsPagesDesk.h"

#include "desktop/qt/LooksSupport.h"
#include "window/CountersPage.h"
#include "window/GeneralPage.h"
#include "window/ScriptPanel.h"

#include <QCheckBox>
#include <QImage>
#include <QLineEdit>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTreeView>

#include <cmath>

namespace orvane::test {
namespace {

class PagesLooks : public SettingsPagesTest, public testing::WithParamInterface<bool> {
protected:
    PagesLooks() : _before(QApplication::palette()) {
        if (GetParam()) {
            QApplication::setPalette(darkPalette());
        }
    }
    ~PagesLooks() override {
        window.reset();
        QApplication::setPalette(_before);
    }
    void take(const std::string &what, int width, int height) {
        window->move(window->screen()->availableGeometry().topLeft());
        window->setFixedSize(width, height);
        ASSERT_TRUE(waitUntil([&] {
            return window->windowHandle()->size() == QSize(width, height) && window->size() == QSize(width, height) &&
                   window->windowHandle()->isExposed();
        }));
        ASSERT_TRUE(waitUntil([&] {
            QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest); // what came up or went has its place now
            return window->screen()->availableGeometry().contains(frameOf(*window)) && isPainted();
        }));
        expectNothingIsCut(*window);
        const int percent = static_cast<int>(std::lround(QGuiApplication::primaryScreen()->devicePixelRatio() * 100));
        const std::string name =
            "settings-" + what + (GetParam() ? "-dark" : "-light") + (percent == 100 ? "" : "-" + std::to_string(percent));
        EXPECT_TRUE(waitUntil([&] { return takePicture(*window, name); }));
    }
    /// What is on the screen along the window's left and lower edge is what the window paints there.
    [[nodiscard]] bool isPainted() const {
        const QImage painted = window->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const QImage shown = window->screen()->grabWindow(window->winId()).toImage().convertToFormat(QImage::Format_RGB32);
        const QRect all = painted.rect();
        const auto isSame = [&](const QRect &edge) { return shown.copy(edge) == painted.copy(edge); };
        return shown.size() == painted.size() && isSame({0, 0, 1, all.height()}) && isSame({0, all.height() - 1, all.width(), 1});
    }
    void general(HotKeyField::Way way = HotKeyField::Way::Direct) {
        onDisk({{"ORVShowMenubar", PropertyListValue::ofBoolean(true)},
                {"ORVHotKeyCode", PropertyListValue::ofInteger(0x28)},
                {"ORVHotKeyFlags", PropertyListValue::ofInteger(0x140000)}});
        writeFile(paths.stateFolder + "/log", "2026-11-21T10:02:11+0100 The hot key ⌘⌃K works.\n"
                                              "2026-11-21T10:07:45+0100 ORV script 'Film - Slate.sh' error: Script returned error code 1.\n"
                                              "2026-11-21T10:07:45+0100 Script stderr:\nSlate.txt is there already\n");
        show<GeneralPage>(way);
    }

private:
    QPalette _before;
};

TEST_P(PagesLooks, General) {
    general();
    take("general", 620, 480);
    expectEverythingHasAName(*window);
}

TEST_P(PagesLooks, GeneralNarrowWithLongPathsAndEverythingThatThereIsToSay) {
    paths.stateFolder = folder("/a folder with a long name/and another one in it/state/orvane");
    paths.preferencesFile = folder("/a folder with a long name/and another one in it/Library/Preferences/org.orvane.ORVPrefPane.plist");
    QDir().mkpath(QString::fromStdString(paths.stateFolder));
    workspace.opens = false;
    loginItem.refuses = true;
    general(HotKeyField::Way::CommandOnly);
    run->general.setShowsMenubar(false);
    click(*child<QCheckBox>("startAtLogin"));
    ASSERT_TRUE(waitUntil([&] { return !child<InlineMessage>("loginProblem")->text().isEmpty(); }));
    child<QPushButton>("scriptsShow")->click();
    take("general-narrow", 460, 640);
}

TEST_P(PagesLooks, GeneralWhileItRecords) {
    general();
    click(*child<HotKeyRecorder>("hotKeyRecorder"));
    ASSERT_TRUE(waitUntil([&] { return child<HotKeyRecorder>("hotKeyRecorder")->isRecording(); }));
    xdotool("key k keydown ctrl");
    ASSERT_TRUE(waitUntil([&] { return child<HotKeyRecorder>("hotKeyRecorder")->text() == QStringLiteral("⌃…"); }));
    take("general-recording", 620, 540);
    xdotool("keyup ctrl key Escape");
    ASSERT_TRUE(waitUntil([&] { return !child<HotKeyRecorder>("hotKeyRecorder")->isRecording(); }));
}

TEST_P(PagesLooks, Counters) {
    const PropertyListValue preset = make.preset("{AutoJob} {Client}");
    onDisk({{"ORVPresets", make.list({preset})},
            {"ORVShowMenubar", PropertyListValue::ofBoolean(true)},
            {"ORVAutomaticVars", make.dictionary({{"AutoJob", make.text("41")},
                                                  {"AutoCase", make.text("2026-17")},
                                                  {"autoinvoice", make.text("999")},
                                                  {"Automatic number of a name that goes on and on", make.text("7")}})}});
    auto *const table = show<CountersPage>()->findChild<QTreeView *>(QStringLiteral("counters"));
    table->setCurrentIndex(table->model()->index(2, CounterTableModel::Value));
    table->setFocus();
    xdotool("key F2");
    ASSERT_TRUE(waitUntil([&] { return table->findChild<QLineEdit *>(QStringLiteral("counterValue")) != nullptr; }));
    table->findChild<QLineEdit *>(QStringLiteral("counterValue"))->setText(QStringLiteral("41") + QChar(0));
    take("counters", 620, 380);
    expectEverythingHasAName(*window);
    xdotool("key Escape");
}

TEST_P(PagesLooks, NoCounters) {
    onDisk({{"ORVShowMenubar", PropertyListValue::ofBoolean(true)}});
    show<CountersPage>();
    take("no-counters", 460, 320);
}

TEST_P(PagesLooks, Script) {
    writeFile(folder("/share/Orvane/Scripts/Film - Slate.sh"),
              "#!/bin/sh\necho slate=Slate.txt\necho 'Slate.txt is there already' >&2\nexit 1\n", true);
    const PropertyListValue preset = make.preset("{AutoJob} {Client}", {}, {{"scriptFile", make.text("Film - Slate.sh")}});
    onDisk({{"ORVPresets", make.list({preset})}, {"ORVShowMenubar", PropertyListValue::ofBoolean(true)}});
    auto *const panel = show<ScriptPanel>();
    panel->setPreset(run->preset(0));
    child<QPushButton>("testScript")->click();
    ASSERT_TRUE(waitUntil([&] { return !panel->isTesting(); }));
    take("script", 560, 300);
    expectEverythingHasAName(*window);
}

TEST_P(PagesLooks, ScriptThatIsMissing) {
    const PropertyListValue preset =
        make.preset("{Client}", {}, {{"scriptFile", make.text("A script whose name is quite a bit longer than there is room for.sh")}});
    onDisk({{"ORVPresets", make.list({preset})}, {"ORVShowMenubar", PropertyListValue::ofBoolean(true)}});
    show<ScriptPanel>()->setPreset(run->preset(0));
    take("script-missing", 420, 200);
}

INSTANTIATE_TEST_SUITE_P(Colours, PagesLooks, testing::Bool(), [](const auto &instance) { return instance.param ? "Dark" : "Light"; });

} // namespace
} // namespace orvane::test
