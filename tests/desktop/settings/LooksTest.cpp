// Pictures of the settings window in its states, light and dark, and what makes them look right. Run at 100 % and at 200 %.

#include "SettingsWindowDesk.h"

#include "platform/qt/QtHintColor.h"
#include "window/InlineMessage.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPalette>
#include <QTabWidget>
#include <QToolButton>

#include <algorithm>
#include <array>
#include <string_view>

namespace orvane::test {
namespace {

QPalette darkPalette() {
    QPalette dark;
    for (const auto &[role, colour] : std::initializer_list<std::pair<QPalette::ColorRole, QColor>>{
             {QPalette::Window, QColor(43, 43, 46)},
             {QPalette::WindowText, QColor(230, 230, 232)},
             {QPalette::Base, QColor(30, 30, 32)},
             {QPalette::AlternateBase, QColor(36, 36, 39)},
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

class SettingsLooks : public SettingsWindowTest {
protected:
    ~SettingsLooks() override { QApplication::setPalette(QPalette()); }

    void showFilm() {
        start();
        window->openPaths({QtTextOf(paths.resourceFolder + "/presets/film-production/film-production.orvpreset")});
        const PresetDocument &document = context().presets;
        ASSERT_GT(document.numberOfPresets(), 0U);
        QApplication::processEvents();
    }
    void picture(const std::string &name) {
        QApplication::processEvents();
        window->repaint();
        QApplication::processEvents();
        EXPECT_TRUE(waitUntil([&] { return takePicture(*window, "settings-" + name); }));
    }
    /// Everything that can be used has a name that is read out, and stands inside the window.
    void expectUsable() {
        for (const QWidget *each : window->findChildren<QWidget *>()) {
            const bool takesKeys = each->focusPolicy() != Qt::NoFocus && each->isVisible() && each->isEnabled();
            if (!takesKeys || qobject_cast<const QComboBox *>(each->parentWidget()) != nullptr) {
                continue;
            }
            const auto *const button = qobject_cast<const QAbstractButton *>(each);
            const bool hasText = button != nullptr && !button->text().isEmpty();
            const bool isInner = each->objectName().startsWith(QStringLiteral("qt_")) || qobject_cast<const QTabBar *>(each) != nullptr;
            EXPECT_TRUE(hasText || isInner || !each->accessibleName().isEmpty())
                << each->metaObject()->className() << " " << each->objectName().toStdString();
        }
    }
};

TEST_F(SettingsLooks, TheEmptyStateInvites) {
    start();
    expectUsable();
    picture("empty");
}

TEST_F(SettingsLooks, AFilmProduction) {
    showFilm();
    expectUsable();
    tree().selectItems({context().presets.childAt(item(""), 0)});
    picture("film");
    widget<QTabWidget>("presetTabs")->setCurrentIndex(1);
    picture("film-preview");
    widget<QTabWidget>("presetTabs")->setCurrentIndex(2);
    picture("film-variables");
    widget<QTabWidget>("presetTabs")->setCurrentIndex(3);
    picture("film-script");
    for (const auto page : {SettingsWindow::Counters, SettingsWindow::General}) {
        window->showPage(page);
        picture("page-" + std::to_string(page));
    }
}

TEST_F(SettingsLooks, Dark) {
    QApplication::setPalette(darkPalette());
    showFilm();
    tree().selectItems({context().presets.childAt(item(""), 0)});
    picture("film-dark");
    widget<QTabWidget>("presetTabs")->setCurrentIndex(2);
    picture("film-variables-dark");
}

/// A dark theme that leaves placeholders as dark as what they stand on.
QPalette darkPaletteWithoutPlaceholders() {
    QPalette dark = darkPalette();
    dark.setColor(QPalette::PlaceholderText, dark.color(QPalette::Base));
    return dark;
}

class Hints : public SettingsLooks, public testing::WithParamInterface<const char *> {
protected:
    static QPalette given() {
        const std::string_view name(GetParam());
        return name == "light" ? QPalette() : name == "dark" ? darkPalette() : darkPaletteWithoutPlaceholders();
    }
    void expectLabel(const char *name) {
        const auto *const label = widget<QLabel>(name);
        const QWidget *const behind = label->parentWidget();
        EXPECT_FALSE(label->text().isEmpty()) << name;
        EXPECT_EQ(label->foregroundRole(), QPalette::WindowText) << name;
        EXPECT_GE(QtContrast(label->palette().color(QPalette::WindowText), behind->palette().color(QPalette::Window)), 4.5) << name;
        EXPECT_NE(label->palette().color(QPalette::WindowText), behind->palette().color(QPalette::WindowText)) << name;
    }
    void expectAll() {
        for (const char *label : {"nameHint", "scriptName", "renamingHint"}) {
            expectLabel(label);
        }
        InlineMessage message(QStringLiteral("hint"), window.get());
        message.say(InlineMessage::Kind::Hint, QStringLiteral("A hint"));
        const QLabel *text = nullptr;
        for (const QLabel *label : message.findChildren<QLabel *>()) {
            text = label->text().isEmpty() ? text : label;
        }
        ASSERT_NE(text, nullptr);
        EXPECT_GE(QtContrast(text->palette().color(QPalette::WindowText), window->palette().color(QPalette::Window)), 4.5);
        message.say(InlineMessage::Kind::Note, QStringLiteral("A note"));
        EXPECT_EQ(text->palette().color(QPalette::WindowText), window->palette().color(QPalette::WindowText));
        const QPalette field = widget<QLineEdit>("itemPermissions")->palette();
        const auto color = [&](QPalette::ColorRole role) { return field.color(QPalette::Active, role); };
        EXPECT_GE(QtContrast(color(QPalette::PlaceholderText), color(QPalette::Base)), 4.5);
        EXPECT_NE(color(QPalette::PlaceholderText), color(QPalette::Text));
        // What the tree says without anything in it is drawn: some dots of it have the colour that is meant.
        const QImage drawn = tree().viewport()->grab().toImage();
        const QColor base = tree().palette().color(QPalette::Base);
        double most = 1;
        for (int y = drawn.height() / 3; y < drawn.height(); ++y) {
            for (int x = 0; x < drawn.width(); ++x) {
                most = std::max(most, QtContrast(drawn.pixelColor(x, y), base));
            }
        }
        EXPECT_GE(most, 4.0) << "letters that are smoothed hardly have all of it";
    }
};

TEST_P(Hints, CanBeRead) {
    QApplication::setPalette(given());
    writePresets({"One"});
    start();
    context().presets.removeNodes(std::array{item("A"), item("B"), item("c.txt")});
    QApplication::processEvents();
    expectAll();
    picture(std::string("hints-") + GetParam());
    widget<QTabWidget>("presetTabs")->setCurrentIndex(2);
    picture(std::string("hints-variables-") + GetParam());
}

TEST_P(Hints, CanBeReadAfterTheThemeHasBecomeAnother) {
    QApplication::setPalette(QPalette());
    writePresets({"One"});
    start();
    context().presets.removeNodes(std::array{item("A"), item("B"), item("c.txt")});
    for (const bool isGiven : {true, false, true}) {
        QApplication::setPalette(isGiven ? given() : QPalette());
        QApplication::processEvents();
        expectAll();
    }
}

INSTANTIATE_TEST_SUITE_P(Themes, Hints, testing::Values("light", "dark", "without"),
                         [](const auto &instance) { return std::string(instance.param); });

TEST_F(SettingsLooks, SmallWindowsAndLongNames) {
    writePresets({"One", "A label that is so long that nobody would think of it as a label any more, but somebody did"});
    start();
    window->resize(760, 480);
    EXPECT_LE(window->width(), 780);
    EXPECT_LE(window->height(), 500);
    list().setCurrentIndex(list().model()->index(1, 0));
    context().presets.setDirectoryName(context().presets.presetAt(1), "{Client} with a very long name {AutoNumber} and {Open at the end {");
    context().presets.renameNode(item("A"), std::string(120, 'x') + "{Variable at the end of a very long name}");
    context().presets.renameNode(item("B"), "{A:B} \\{kept\\} {Client}");
    auto *const problems = widget<QListWidget>("problemList");
    EXPECT_TRUE(waitUntil([&] { return problems->count() > 3; }));
    picture("small");
}

TEST_F(SettingsLooks, MessagesStandInTheWindow) {
    writePresets({"One"});
    start();
    context().presets.renamePreset(context().presets.presetAt(0), "Mine");
    changeOnDisk(">One<", ">Theirs<");
    ASSERT_TRUE(waitUntil([this] { return bar("conflictBar").isVisible(); }));
    picture("conflict");
    crash();
    writeFile(preferencesFile(), "damaged");
    start();
    picture("unreadable");
}

} // namespace
} // namespace orvane::test
