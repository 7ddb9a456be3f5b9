// The menu at the pointer: placed where it was asked for, used with the keyboard, the other program still active.

#include "QtTestSupport.h"

#include "platform/qt/QtMenuView.h"
#include "platform/qt/QtPopUpMenus.h"
#include "platform/qt/QtReferenceWindow.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QMenu>
#include <QScreen>

namespace orvane::test {
namespace {

QMenu *shownMenu() {
    return dynamic_cast<QMenu *>(QApplication::activePopupWidget());
}
bool isHighlighted(const char *text) {
    return shownMenu() != nullptr && shownMenu()->activeAction() != nullptr && shownMenu()->activeAction()->text() == QLatin1String(text);
}

class PopUp : public testing::Test {
public:
    void add(const std::string &title, int tag = 9) {
        MenuItem item = makeItem(title, tag, [this](const MenuItem &chosen) {
            performed.push_back(chosen.title);
            menuWasGone = QApplication::activePopupWidget() == nullptr;
        });
        menu.insertItemAtIndex(std::move(item), menu.numberOfItems());
    }
    void addFruit() {
        for (const char *title : {"Apple", "Apricot", "Banana", "Cherry"}) {
            add(title);
        }
    }
    void popUp(QPoint place = {400, 300}) { menus.popUpContextMenu(menu, {.location = QtScreenPointOf(place)}, window); }
    PopUp &whenUp(std::function<void()> acts) {
        user.when([] { return shownMenu() != nullptr && shownMenu()->windowHandle()->isExposed(); }, std::move(acts), "the menu");
        return *this;
    }
    void whenHighlighted(const char *text, const std::string &keys) {
        user.when([text] { return isHighlighted(text); }, [keys] { xdotool("key " + keys); }, text);
    }

    Menu menu;
    QtPopUpMenus menus{application()};
    QtReferenceWindow window;
    User user;
    std::vector<std::string> performed;
    bool menuWasGone = false;
};

TEST_F(PopUp, StandsWithItsUpperLeftCornerAtTheLocation) {
    addFruit();
    QPoint place;
    whenUp([&] {
        place = shownMenu()->pos();
        xdotool("key Escape");
    });
    popUp({400, 300});
    EXPECT_EQ(place, QPoint(400, 300));
    EXPECT_TRUE(performed.empty());
}

TEST_F(PopUp, LocationsCountFromTheLowerLeftCorner) {
    const int height = QGuiApplication::primaryScreen()->geometry().height();
    EXPECT_EQ(QtPointOf({490, 290}), QPoint(490, height - 290));
    EXPECT_EQ(QtScreenPointOf({490, height - 290}), (ScreenPoint{490, 290}));
    QCursor::setPos(320, 240);
    ASSERT_TRUE(waitUntil([] { return QCursor::pos() == QPoint(320, 240); }));
    EXPECT_EQ(menus.mouseLocation(), (ScreenPoint{320, static_cast<double>(height - 240)}));
}

TEST_F(PopUp, StaysInsideTheScreen) {
    addFruit();
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    for (const QPoint place : {screen.bottomRight(), screen.topRight(), QPoint(-10, screen.height() + 10), QPoint(-50, -50)}) {
        QRect shown;
        whenUp([&] {
            shown = shownMenu()->geometry();
            xdotool("key Escape");
        });
        popUp(place);
        EXPECT_TRUE(screen.contains(shown)) << place.x() << ',' << place.y();
    }
}

TEST_F(PopUp, IsUsedWithArrowsAndReturnWhileTheOtherProgramStaysActive) {
    addFruit();
    const OtherProgram other;
    bool otherWasActive = false;
    whenUp([] { xdotool("key Down"); });
    whenHighlighted("Apple", "Down");
    user.when([] { return isHighlighted("Apricot"); },
              [&] {
                  otherWasActive = other.isActive();
                  xdotool("key Return");
              },
              "Apricot");
    popUp();
    EXPECT_EQ(performed, std::vector<std::string>{"Apricot"});
    EXPECT_TRUE(menuWasGone);
    EXPECT_TRUE(otherWasActive);
    EXPECT_TRUE(other.isActive());
}

TEST_F(PopUp, FirstLettersSelectAndAgainTheSameLetterGoesOn) {
    addFruit();
    add("Über");
    whenUp([] { xdotool("key a"); });
    whenHighlighted("Apple", "a");
    whenHighlighted("Apricot", "a");
    whenHighlighted("Apple", "p r");
    user.when([] { return isHighlighted("Apple"); }, [] { shownMenu()->close(); }, "no other item");
    popUp();
    whenUp([] { xdotool("key a p r"); });
    whenHighlighted("Apricot", "Return");
    popUp();
    EXPECT_EQ(performed, std::vector<std::string>{"Apricot"});
}

TEST_F(PopUp, ClickChoosesAndClickElsewhereCloses) {
    addFruit();
    whenUp([] {
        const QPoint place = shownMenu()->mapToGlobal(shownMenu()->actionGeometry(shownMenu()->actions().at(2)).center());
        xdotool("mousemove --sync " + std::to_string(place.x()) + " " + std::to_string(place.y()) + " click 1");
    });
    popUp();
    EXPECT_EQ(performed, std::vector<std::string>{"Banana"});
    whenUp([] { xdotool("mousemove --sync 20 20 click 1"); });
    popUp();
    EXPECT_EQ(performed.size(), 1U);
}

TEST_F(PopUp, SecondRequestWhileAMenuIsUpDoesNothing) {
    addFruit();
    bool returnedAtOnce = false;
    whenUp([&] {
        const QMenu *const first = shownMenu();
        popUp({10, 10});
        returnedAtOnce = shownMenu() == first;
        xdotool("key Escape");
    });
    popUp();
    EXPECT_TRUE(returnedAtOnce);
    EXPECT_EQ(shownMenu(), nullptr);
}

TEST_F(PopUp, RequestWhileAWindowWaitsForAnAnswerBringsThatWindowUp) {
    addFruit();
    QDialog asking;
    asking.setObjectName(QStringLiteral("asking"));
    asking.setModal(true);
    asking.show();
    ASSERT_TRUE(waitUntil([] { return isActive("asking"); })); // else it may come up after the other program
    const OtherProgram other;
    popUp();
    EXPECT_EQ(shownMenu(), nullptr);
    EXPECT_TRUE(waitUntil([] { return isActive("asking"); }));
}

TEST_F(PopUp, TitlesAreShownAsTheyAre) {
    const std::vector<std::string> titles = {"Bed & Breakfast",       "&File",    "a\tb",      "two\nlines",
                                             "\xF0\x9F\x8E\xAC Film", "שלום {x}", " <b>x</b> "};
    for (const std::string &title : titles) {
        add(title);
    }
    const QtMenuView view(menu);
    QStringList shown;
    whenUp([&] {
        for (const QAction *action : shownMenu()->actions()) {
            shown.append(action->text());
        }
        xdotool("key Escape");
    });
    popUp();
    EXPECT_EQ(shown,
              (QStringList{QStringLiteral("Bed && Breakfast"), QStringLiteral("&&File"), QStringLiteral("a b"), QStringLiteral("two lines"),
                           QStringLiteral("🎬 Film"), QStringLiteral("\u2068שלום {x}\u2069"), QStringLiteral("<b>x</b>")}));
}

TEST_F(PopUp, LongTitleLosesItsMiddleAndStandsWholeInTheToolTip) {
    const std::string title = "begin " + std::string(300, 'm') + " end";
    add(title);
    whenUp([&] {
        const QAction *const action = shownMenu()->actions().front();
        EXPECT_TRUE(action->text().startsWith(QLatin1String("begin m")) && action->text().endsWith(QLatin1String("m end")));
        EXPECT_LT(action->text().size(), 100);
        EXPECT_TRUE(action->toolTip().contains(QString::fromStdString(title)));
        EXPECT_LT(shownMenu()->width(), shownMenu()->screen()->geometry().width() / 2);
        xdotool("key Down Return");
    });
    popUp();
    EXPECT_EQ(performed, std::vector<std::string>{title});
}

TEST_F(PopUp, DisabledItemsAndSeparatorsCannotBeChosenAndEnablingIsAskedEachTime) {
    addFruit();
    menu.insertItemAtIndex(makeSeparator(), 1);
    bool isAllowed = false;
    MenuItem item = makeItem("Maybe", 9, [this](const MenuItem &chosen) { performed.push_back(chosen.title); });
    item.validate = [&](const MenuItem &) { return isAllowed; };
    menu.insertItemAtIndex(std::move(item), 0);
    whenUp([] {
        EXPECT_FALSE(shownMenu()->actions().at(0)->isEnabled());
        EXPECT_TRUE(shownMenu()->actions().at(2)->isSeparator());
        xdotool("key m Escape");
    });
    popUp();
    EXPECT_TRUE(performed.empty());
    isAllowed = true;
    whenUp([] { xdotool("key m"); });
    whenHighlighted("Maybe", "Return");
    popUp();
    EXPECT_EQ(performed, std::vector<std::string>{"Maybe"});
}

TEST_F(PopUp, ThousandItemsScrollAndTheLastOneIsReachable) {
    for (int i = 0; i < 1000; ++i) {
        add("Preset " + std::to_string(i));
    }
    whenUp([] {
        EXPECT_LE(shownMenu()->height(), shownMenu()->screen()->geometry().height());
        EXPECT_LT(shownMenu()->width(), 300); // one column
        xdotool("key Up");
    });
    whenHighlighted("Preset 999", "Return");
    popUp();
    EXPECT_EQ(performed, std::vector<std::string>{"Preset 999"});
}

TEST_F(PopUp, ChangesShowWhileTheMenuIsOpen) {
    addFruit();
    whenUp([&] {
        menu.removeItemAtIndex(0);
        add("Date");
    });
    user.when([] { return shownMenu()->actions().back()->text() == QLatin1String("Date"); }, [] { xdotool("key d"); }, "the new item");
    whenHighlighted("Date", "Return");
    popUp();
    EXPECT_EQ(performed, std::vector<std::string>{"Date"});
}

TEST_F(PopUp, ActionMayChangeTheMenuThatItCameFrom) {
    MenuItem item = makeItem("Clear", 9, [this](const MenuItem &chosen) {
        menu.removeItemAtIndex(0);
        performed.push_back(chosen.title);
    });
    menu.insertItemAtIndex(std::move(item), 0);
    whenUp([] { xdotool("key Down Return"); });
    popUp();
    EXPECT_EQ(performed, std::vector<std::string>{"Clear"});
    EXPECT_EQ(menu.numberOfItems(), 0U);
}

TEST_F(PopUp, ViewOfATrayPerformsWhatIsChosenOnceItsEventIsOver) {
    addFruit();
    QtMenuView view(menu);
    view.menu().popup({100, 100});
    whenUp([] { xdotool("key c"); });
    whenHighlighted("Cherry", "Return");
    EXPECT_TRUE(waitUntil([&] { return !performed.empty(); }));
    EXPECT_EQ(performed, std::vector<std::string>{"Cherry"});
    EXPECT_TRUE(menuWasGone);
}

TEST(ReferenceWindows, HasANumberAndIsNeverShown) {
    QtReferenceWindow window;
    EXPECT_NE(window.windowNumber(), 0);
    EXPECT_EQ(window.windowNumber(), window.windowNumber());
    EXPECT_NE(outputOf("xwininfo -id " + std::to_string(window.windowNumber())).find("IsUnMapped"), std::string::npos);
}

} // namespace
} // namespace orvane::test
