// German and French texts in letters of twice the size: none is cut off or left out on any page, and none is left in English.

#include "SettingsWindowDesk.h"

#include "platform/qt/QtTranslations.h"
#include "window/CountersPage.h"
#include "window/GeneralPage.h"
#include "window/HotKeyField.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFont>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QTranslator>
#include <QTreeWidget>

#include <cmath>
#include <filesystem>

namespace orvane::test {
namespace {

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
        EXPECT_TRUE(takePicture(page, std::string("fit-no-hot-keys-") + desktop + "-" +
                                          (GetParam().language == nullptr ? "en" : GetParam().language) + "-" +
                                          std::to_string(std::lround(GetParam().size * 100))));
        checkWindow(page, desktop);
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, TextsFit,
                         testing::Values(Letters{nullptr, 1}, Letters{nullptr, 2}, Letters{"de", 1}, Letters{"de", 2}, Letters{"fr", 1},
                                         Letters{"fr", 2}),
                         [](const auto &instance) {
                             return std::string(instance.param.language == nullptr ? "English" : instance.param.language) +
                                    std::to_string(std::lround(instance.param.size * 100));
                         });

} // namespace
} // namespace orvane::test
