// German and French texts in letters of twice the size: none is cut off or left out on any page, and none is left in English. And the
// letters that are pressed with Alt: none leads to two places.

#include "SettingsWindowDesk.h"

#include "platform/qt/QtTranslations.h"
#include "window/CountersPage.h"
#include "window/GeneralPage.h"
#include "window/HotKeyField.h"
#include "window/Icons.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QFont>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QMap>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QRegularExpression>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QTranslator>
#include <QTreeWidget>

#include <array>
#include <cmath>
#include <filesystem>

namespace orvane::test {
namespace {

/// Letters that are pressed with Alt, with what has each of them.
class AccessKeys {
public:
    void take(const QString &text) {
        if (const QKeySequence key = QKeySequence::mnemonic(text); !key.isEmpty()) {
            _owners[key.toString()].append(text);
        }
    }
    /// Whatever can be seen there, whether it can be used at the moment or not.
    void takeVisible(const QWidget &shown) {
        for (const QWidget *each : shown.findChildren<QWidget *>()) {
            if (!each->isVisible() || each->window() != &shown) {
                continue;
            }
            if (const auto *label = qobject_cast<const QLabel *>(each); label != nullptr && label->buddy() != nullptr) {
                take(label->text());
            } else if (const auto *button = qobject_cast<const QAbstractButton *>(each)) {
                take(button->text());
            } else if (const auto *tabs = qobject_cast<const QTabBar *>(each)) {
                for (int i = 0; i < tabs->count(); ++i) {
                    take(tabs->tabText(i));
                }
            } else if (const auto *menus = qobject_cast<const QMenuBar *>(each)) {
                takeActions(menus->actions());
            }
        }
    }
    void takeActions(const QList<QAction *> &actions) {
        for (const QAction *action : actions) {
            take(action->text());
        }
    }
    void expectNoneTwice(const std::string &where) const {
        EXPECT_FALSE(_owners.isEmpty()) << where << " has no access keys at all";
        for (auto owners = _owners.begin(); owners != _owners.end(); ++owners) {
            EXPECT_EQ(owners.value().size(), 1)
                << where << ", " << owners.key().toStdString() << ": " << owners.value().join(u", ").toStdString();
        }
    }

private:
    QMap<QString, QStringList> _owners;
};

struct Letters {
    const char *language; ///< null for English
    double size;          ///< of the usual one
};

class TextsFit : public SettingsWindowTest, public testing::WithParamInterface<Letters> {
protected:
    TextsFit() : _usual(QApplication::font()) {
        QFont font = _usual;
        font.setPointSizeF(font.pointSizeF() * GetParam().size);
        QApplication::setFont(font);
        if (GetParam().language != nullptr) {
            EXPECT_TRUE(
                QtInstallTranslations(environment("ORVANE_TEST_BUILT_RESOURCES"), QLocale(QString::fromLatin1(GetParam().language))));
        }
    }
    ~TextsFit() override {
        crash();
        for (QTranslator *translator : qApp->findChildren<QTranslator *>()) {
            QCoreApplication::removeTranslator(translator);
            delete translator;
        }
        QApplication::setFont(_usual);
    }

    void showFilm() {
        start();
        window->openPaths({QtTextOf(paths.resourceFolder + "/presets/film-production/film-production.orvpreset")});
        ASSERT_GT(context().presets.numberOfPresets(), 0U);
        ASSERT_TRUE(waitUntil([this] { return !widget<QTreeWidget>("variableTree")->topLevelItem(0)->text(0).isEmpty(); }));
        tree().selectItems({context().presets.childAt(item(""), 0)});
    }
    void check(const std::string &what) {
        QApplication::processEvents();
        QApplication::processEvents(); // what was laid out may have asked for more room
        EXPECT_TRUE(takePicture(*window, "fit-" + what + "-" + (GetParam().language == nullptr ? "en" : GetParam().language) + "-" +
                                             std::to_string(std::lround(GetParam().size * 100))));
        checkWindow(*window, what);
    }
    static void checkWindow(const QWidget &shown, const std::string &what) {
        SCOPED_TRACE(what);
        for (const QWidget *each : shown.findChildren<QWidget *>()) {
            if (each->isVisible() && each->window() == &shown) {
                checkText(*each);
                checkPlace(*each);
            }
        }
    }

private:
    static std::string name(const QWidget &widget, const QString &text = {}) {
        return std::string(widget.metaObject()->className()) + " " + widget.objectName().toStdString() + " '" + text.toStdString() + "' " +
               std::to_string(widget.width()) + "x" + std::to_string(widget.height());
    }
    /// What shows more than it has room for says the rest in its tool tip, on purpose: names that users give.
    static bool isForNames(const QWidget &widget) { return widget.objectName() == u"nameHint" || widget.objectName() == u"scriptName"; }

    static void checkText(const QWidget &widget) {
        if (const auto *label = qobject_cast<const QLabel *>(&widget);
            label != nullptr && !label->text().isEmpty() && !isForNames(widget)) {
            if (label->wordWrap()) {
                EXPECT_GE(label->height(), label->heightForWidth(label->width())) << name(widget, label->text());
                EXPECT_GE(label->width(), widestWord(*label)) << name(widget, label->text());
            } else {
                EXPECT_GE(label->width(), label->minimumSizeHint().width()) << name(widget, label->text());
                EXPECT_GE(label->height(), label->fontMetrics().height()) << name(widget, label->text());
            }
        } else if (const auto *button = qobject_cast<const QAbstractButton *>(&widget)) {
            const auto *const tool = qobject_cast<const QToolButton *>(&widget);
            const bool showsText = !button->text().isEmpty() && (tool == nullptr || tool->toolButtonStyle() != Qt::ToolButtonIconOnly);
            EXPECT_GE(button->width(), tool != nullptr ? tool->sizeHint().width() : button->minimumSizeHint().width())
                << name(widget, button->text());
            EXPECT_GE(button->height(), showsText ? button->fontMetrics().height() : 8) << name(widget, button->text());
        } else if (const auto *combo = qobject_cast<const QComboBox *>(&widget)) {
            EXPECT_GE(combo->width(), combo->minimumSizeHint().width()) << name(widget, combo->currentText());
        } else if (const auto *field = qobject_cast<const QLineEdit *>(&widget)) {
            QStyleOptionFrame option;
            option.initFrom(field);
            option.lineWidth = field->hasFrame() ? field->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, field) : 0;
            const int room = field->style()->subElementRect(QStyle::SE_LineEditContents, &option, field).width() - 4;
            EXPECT_GE(room, field->fontMetrics().horizontalAdvance(field->placeholderText())) << name(widget, field->placeholderText());
            EXPECT_GE(field->height(), field->fontMetrics().height()) << name(widget);
        } else if (const auto *tabs = qobject_cast<const QTabBar *>(&widget)) {
            for (int i = 0; i < tabs->count(); ++i) {
                EXPECT_GE(tabs->tabRect(i).width(), tabs->fontMetrics().horizontalAdvance(tabs->tabText(i).remove(u'&')))
                    << name(widget, tabs->tabText(i));
                EXPECT_TRUE(tabs->rect().contains(tabs->tabRect(i))) << name(widget, tabs->tabText(i)) << " is out of sight";
            }
        } else if (const auto *header = qobject_cast<const QHeaderView *>(&widget)) {
            for (int i = 0; i < header->count(); ++i) {
                if (!header->isSectionHidden(i)) {
                    const QString title = header->model()->headerData(i, header->orientation()).toString();
                    EXPECT_GE(header->sectionSize(i), header->fontMetrics().horizontalAdvance(title) + 4) << name(widget, title);
                }
            }
        }
    }
    static int widestWord(const QLabel &label) {
        int widest = 0;
        for (const QString &word : label.text().split(QRegularExpression(QStringLiteral("[\\s/-]+")))) {
            widest = std::max(widest, label.fontMetrics().horizontalAdvance(word));
        }
        return widest;
    }
    /// Nothing lies outside of what it stands in, except where that can be scrolled to.
    static void checkPlace(const QWidget &widget) {
        const QWidget *const parent = widget.parentWidget();
        if (parent == nullptr || qobject_cast<const QAbstractScrollArea *>(parent->parentWidget()) != nullptr || widget.isWindow()) {
            return;
        }
        const bool isText = qobject_cast<const QLabel *>(&widget) != nullptr || qobject_cast<const QAbstractButton *>(&widget) != nullptr ||
                            qobject_cast<const QLineEdit *>(&widget) != nullptr;
        EXPECT_TRUE(!isText || qobject_cast<const QTabBar *>(parent) != nullptr || parent->rect().contains(widget.geometry()))
            << name(widget) << " sticks out of " << name(*parent);
    }

    QFont _usual;
};

TEST_P(TextsFit, WithoutPresets) {
    start();
    check("empty");
    for (const auto page : {SettingsWindow::Counters, SettingsWindow::General}) {
        window->showPage(page);
        check("empty-page-" + std::to_string(page));
    }
}

TEST_P(TextsFit, OnEveryTabAndPage) {
    showFilm();
    auto *const tabs = widget<QTabWidget>("presetTabs");
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        check("tab-" + std::to_string(tab));
    }
    context().counters.setValue("AutoProduction", "41");
    for (const auto page : {SettingsWindow::Counters, SettingsWindow::General}) {
        window->showPage(page);
        check("page-" + std::to_string(page));
    }
}

TEST_P(TextsFit, InMessages) {
    writePresets({"One"});
    start();
    context().showMessage(QCoreApplication::translate("Orvane", "%1 cannot be added: %2")
                              .arg(QStringLiteral("/home/somebody/Some folder/Some file.orvpreset"),
                                   QCoreApplication::translate("Orvane", "it was made by a later version of Orvane")),
                          true);
    context().presets.renamePreset(context().presets.presetAt(0), "Mine");
    changeOnDisk(">One<", ">Theirs<");
    ASSERT_TRUE(waitUntil([this] { return bar("conflictBar").isVisible(); }));
    check("conflict");
    ASSERT_TRUE(waitUntil([this] { return std::filesystem::exists(paths.stateFolder + "/unsaved"); }));
    crash();
    writePresets({"One"});
    start();
    ASSERT_TRUE(bar("recoveryBar").isVisible());
    check("recovery");
    crash();
    writeFile(preferencesFile(), "damaged");
    start();
    ASSERT_TRUE(bar("fileBar").isVisible());
    check("unreadable");
}

/// As on a desktop that gives no hot keys, with everything that page can say.
TEST_P(TextsFit, WhereTheDesktopGivesNoHotKeys) {
    start();
    window->showPage(SettingsWindow::Presets);
    for (const char *desktop : {"sway", "KDE", "GNOME", ""}) {
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        GeneralPage page(context(), HotKeyField::Way::CommandOnly, nullptr);
        page.resize(window->size().boundedTo(QSize(900, 700) * GetParam().size));
        application().bringToFront(page);
        ASSERT_TRUE(waitUntil([&] { return page.windowHandle()->isExposed(); }));
        context().general.setShowsMenubar(false);
        QApplication::processEvents();
        AccessKeys keys;
        keys.takeVisible(page);
        keys.takeActions(window->menuBar()->actions());
        keys.expectNoneTwice(desktop);
        EXPECT_TRUE(takePicture(page, std::string("fit-no-hot-keys-") + desktop + "-" +
                                          (GetParam().language == nullptr ? "en" : GetParam().language) + "-" +
                                          std::to_string(std::lround(GetParam().size * 100))));
        checkWindow(page, desktop);
    }
}

/// At the size that the window has from the start, and beside the longest names of colours.
TEST_P(TextsFit, TheNamesOfLabelsStandWholeInTheTree) {
    showFilm();
    const ItemID folder = context().presets.childAt(item(""), 0);
    tree().setColumnHidden(PresetTreeModel::Label, false);
    for (const char *name : {"red", "orange", "yellow", "green", "blue", "purple", "gray"}) {
        context().presets.setColor(std::array{folder}, name);
        const QModelIndex index = tree().presetModel().indexOfItem(folder, PresetTreeModel::Label);
        QStyleOptionViewItem option;
        option.initFrom(&tree());
        option.widget = &tree();
        option.font = tree().font();
        option.rect = tree().visualRect(index);
        option.features = QStyleOptionViewItem::HasDisplay | QStyleOptionViewItem::HasDecoration;
        option.text = index.data().toString();
        option.icon = labelIcon(name);
        const int side = tree().style()->pixelMetric(QStyle::PM_SmallIconSize);
        option.decorationSize = {side, side};
        const int margin = tree().style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &tree()) + 1;
        const int room = tree().style()->subElementRect(QStyle::SE_ItemViewItemText, &option, &tree()).width() - 2 * margin;
        EXPECT_FALSE(option.text.isEmpty());
        EXPECT_GE(room, option.fontMetrics.horizontalAdvance(option.text)) << option.text.toStdString();
    }
    check("labels");
}

// Access keys ---------------------------------------------------------------------------------------------------------------

class AccessKeysDiffer : public TextsFit {
protected:
    /// With the window's bars of messages, as they are now, beside every page and tab.
    void expectOnEveryPage(const std::string &when) {
        auto *const tabs = widget<QTabWidget>("presetTabs");
        for (const auto page : {SettingsWindow::Presets, SettingsWindow::Counters, SettingsWindow::General}) {
            window->showPage(page);
            for (int tab = 0; tab < (page == SettingsWindow::Presets ? tabs->count() : 1); ++tab) {
                tabs->setCurrentIndex(tab);
                QApplication::processEvents();
                AccessKeys keys;
                keys.takeVisible(*window);
                keys.expectNoneTwice(when + ", page " + std::to_string(page) + ", tab " + std::to_string(tab));
            }
        }
        window->showPage(SettingsWindow::Presets);
    }
};

TEST_P(AccessKeysDiffer, WithoutPresets) {
    start();
    expectOnEveryPage("without presets");
}

TEST_P(AccessKeysDiffer, BesideAPresetWithProblemsAndAScript) {
    writePresets({"One"});
    writeFile(paths.supportFolder + "/Scripts/idle.sh", "#!/bin/sh\nread line\n"); // not executable, which there is a button for
    start();
    context().counters.setValue("AutoProduction", "41");
    const ItemID preset = context().presets.presetAt(0);
    context().presets.setScript(preset, "idle.sh");
    context().presets.renameNode(item("B"), "A");
    tree().selectItems({item("c.txt")});
    ASSERT_TRUE(waitUntil([this] { return widget<QListWidget>("problemList")->count() > 1; }));
    expectOnEveryPage("a preset");
    widget<QTabWidget>("presetTabs")->setCurrentIndex(3);
    EXPECT_TRUE(widget<QPushButton>("makeScriptExecutable")->isVisible());
    // While a test runs there is another text on its button, and afterwards another button.
    std::filesystem::permissions(paths.supportFolder + "/Scripts/idle.sh", std::filesystem::perms::owner_all);
    writeFile(paths.supportFolder + "/Scripts/idle.sh", "#!/bin/sh\nsleep 60\n");
    QTest::mouseClick(widget<QPushButton>("makeScriptExecutable"), Qt::LeftButton);
    auto *const test = widget<QPushButton>("testScript");
    const QString idle = test->text();
    ASSERT_TRUE(waitUntil([&] { return test->isEnabled(); }));
    QTest::mouseClick(test, Qt::LeftButton);
    EXPECT_NE(test->text(), idle);
    AccessKeys running;
    running.takeVisible(*window);
    running.expectNoneTwice("while a test runs");
    QTest::mouseClick(test, Qt::LeftButton);
    ASSERT_TRUE(waitUntil([this] { return widget<QPushButton>("showTestFolder")->isVisible(); }));
    AccessKeys after;
    after.takeVisible(*window);
    after.expectNoneTwice("after a test");
}

TEST_P(AccessKeysDiffer, BesideEveryMessageThatAsks) {
    writePresets({"One", "Two"});
    start();
    context().presets.renamePreset(context().presets.presetAt(0), "Mine");
    changeOnDisk(">One<", ">Theirs<");
    ASSERT_TRUE(waitUntil([this] { return bar("conflictBar").isVisible(); }));
    ASSERT_TRUE(waitUntil([this] { return std::filesystem::exists(paths.stateFolder + "/unsaved"); }));
    expectOnEveryPage("a conflict");
    crash();
    start();
    ASSERT_TRUE(bar("recoveryBar").isVisible());
    context().presets.setDirectoryName(context().presets.presetAt(1), "\x01"); // which no preferences can hold
    ASSERT_TRUE(waitUntil([this] { return bar("fileBar").isVisible(); }));
    context().presets.renameNode(item("B"), "A");
    ASSERT_TRUE(waitUntil([this] { return widget<QListWidget>("problemList")->isVisible(); }));
    expectOnEveryPage("unsaved edits");
    context().presets.removePresets(std::array{context().presets.presetAt(0), context().presets.presetAt(1)});
    QApplication::processEvents();
    expectOnEveryPage("unsaved edits without presets");
    // Questions about the same preset come while edits of an earlier run are offered, too.
    QTest::mouseClick(widget<QPushButton>("restoreEdits"), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([this] { return bar("conflictBar").isVisible(); }));
    expectOnEveryPage("all of them");
    crash();
    writeFile(preferencesFile(), "damaged");
    start();
    ASSERT_TRUE(bar("fileBar").isVisible());
    expectOnEveryPage("an unreadable file");
}

TEST_P(AccessKeysDiffer, InEveryMenu) {
    writePresets({"One"});
    start();
    context().presets.renameNode(item("A"), "Alpha"); // so that there is something to undo
    int menus = 0;
    for (QMenu *const menu : window->findChildren<QMenu *>()) {
        Q_EMIT menu->aboutToShow();
        AccessKeys keys;
        keys.takeActions(menu->actions());
        if (menu != tree().labelMenu()) { // colours have none
            keys.expectNoneTwice("menu " + menu->title().toStdString());
            ++menus;
        }
    }
    EXPECT_GE(menus, 4);
    AccessKeys ofList;
    ofList.takeActions(list().actions());
    ofList.expectNoneTwice("the list's menu");
    AccessKeys ofCounters;
    ofCounters.takeActions(widget<QWidget>("counters")->actions());
    ofCounters.expectNoneTwice("the counters' menu");
    for (const char *chosen : {"Alpha", "c.txt"}) {
        tree().selectItems({item(chosen)});
        const auto opened = [] { return qobject_cast<QMenu *>(QApplication::activePopupWidget()); };
        User user;
        user.when([&] { return opened() != nullptr; },
                  [&] {
                      AccessKeys keys;
                      keys.takeActions(opened()->actions());
                      keys.expectNoneTwice("the tree's menu");
                      opened()->close();
                  },
                  "the tree's menu");
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(20, 20), tree().viewport()->mapToGlobal(QPoint(20, 20)));
        QApplication::sendEvent(tree().viewport(), &event);
        EXPECT_TRUE(user.hasFinished());
    }
}

TEST_P(AccessKeysDiffer, InTheQuestionAboutALargeFolder) {
    writeFile(path("/in/Shoot/clip.mov"), "");
    std::filesystem::resize_file(path("/in/Shoot/clip.mov"), 21'000'000);
    start();
    User user;
    user.when([] { return isActive("folderQuestion"); },
              [] {
                  auto *const box = qobject_cast<QMessageBox *>(shownWindow("folderQuestion"));
                  AccessKeys keys;
                  keys.takeVisible(*box);
                  keys.expectNoneTwice("the question");
                  EXPECT_TRUE(
                      takePicture(*box, std::string("fit-folder-") + (GetParam().language == nullptr ? "en" : GetParam().language)));
                  box->reject();
              },
              "the question");
    window->openPaths({QtTextOf(path("/in/Shoot"))});
    EXPECT_TRUE(user.hasFinished());
}

INSTANTIATE_TEST_SUITE_P(Languages, AccessKeysDiffer, testing::Values(Letters{nullptr, 1}, Letters{"de", 1}, Letters{"fr", 1}),
                         [](const auto &instance) {
                             return std::string(instance.param.language == nullptr ? "English" : instance.param.language);
                         });

INSTANTIATE_TEST_SUITE_P(Languages, TextsFit,
                         testing::Values(Letters{nullptr, 1}, Letters{nullptr, 2}, Letters{"de", 1}, Letters{"de", 2}, Letters{"fr", 1},
                                         Letters{"fr", 2}),
                         [](const auto &instance) {
                             return std::string(instance.param.language == nullptr ? "English" : instance.param.language) +
                                    std::to_string(std::lround(instance.param.size * 100));
                         });

} // namespace
} // namespace orvane::test
