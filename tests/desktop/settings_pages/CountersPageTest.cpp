// The page on counters, under real keys.

#include "SettingsPagesDesk.h"

#include "window/CountersPage.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

namespace orvane::test {
namespace {

class CountersPageTest : public SettingsPagesTest {
protected:
    void open() {
        counters = show<CountersPage>()->findChild<QTreeView *>(QStringLiteral("counters"));
        counters->setFocus();
    }
    void countersOnDisk(PresetMaker::Entries entries) {
        const PropertyListValue preset = make.preset("{AutoJob} {Client}");
        onDisk({{"ORVPresets", make.list({preset})},
                {"ORVShowMenubar", PropertyListValue::ofBoolean(true)},
                {"ORVAutomaticVars", make.dictionary(entries)}});
    }
    [[nodiscard]] std::string cell(int row, int column) const {
        return counters->model()->index(row, column).data().toString().toStdString();
    }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (int row = 0; row < counters->model()->rowCount(); ++row) {
            all.push_back(cell(row, CounterTableModel::Name));
        }
        return all;
    }
    void select(int row) {
        counters->setCurrentIndex(counters->model()->index(row, CounterTableModel::Value));
        counters->setFocus();
    }
    [[nodiscard]] QLineEdit *field() const { return counters->findChild<QLineEdit *>(QStringLiteral("counterValue")); }
    [[nodiscard]] bool fieldOpens() {
        return waitUntil([&] { return field() != nullptr && field()->hasFocus(); });
    }
    [[nodiscard]] std::string message() const { return child<InlineMessage>("counterMessage")->text().toStdString(); }

    QTreeView *counters = nullptr;
};

TEST_F(CountersPageTest, ShowsEveryCounterWithWhatComesNextAndWhoUsesIt) {
    countersOnDisk({{"AutoJob", make.text("41")}, {"autoinvoice", PropertyListValue::ofInteger(7)}});
    open();
    EXPECT_EQ(names(), (std::vector<std::string>{"autoinvoice", "AutoJob"}));
    EXPECT_EQ(cell(0, CounterTableModel::Value), "7");
    EXPECT_EQ(cell(0, CounterTableModel::Next), "8");
    EXPECT_EQ(cell(0, CounterTableModel::Users), "none");
    EXPECT_EQ(cell(1, CounterTableModel::Next), "42");
    EXPECT_EQ(cell(1, CounterTableModel::Users), "Label");
}

TEST_F(CountersPageTest, ReturnOpensTheValueAndStoresIt) {
    countersOnDisk({{"AutoJob", make.text("41")}});
    open();
    select(0);
    xdotool("key Return");
    ASSERT_TRUE(fieldOpens());
    xdotool("key ctrl+a type 99");
    ASSERT_TRUE(waitUntil([&] { return field()->text() == QStringLiteral("99"); }));
    xdotool("key Return");
    EXPECT_TRUE(waitUntil([&] { return run->counters.value("AutoJob") == "99"; }));
    EXPECT_EQ(cell(0, CounterTableModel::Next), "100");
    EXPECT_STREQ(run->history.undoName(), "Change Counter");
    run->history.undo();
    EXPECT_EQ(cell(0, CounterTableModel::Value), "41");
}

TEST_F(CountersPageTest, EscapeKeepsTheValue) {
    countersOnDisk({{"AutoJob", make.text("41")}});
    open();
    select(0);
    xdotool("key F2");
    ASSERT_TRUE(fieldOpens());
    xdotool("type 5");
    ASSERT_TRUE(waitUntil([&] { return field()->text() == QStringLiteral("5"); }));
    xdotool("key Escape");
    ASSERT_TRUE(waitUntil([&] { return field() == nullptr || !field()->isVisible(); }));
    EXPECT_EQ(run->counters.value("AutoJob"), "41");
    EXPECT_FALSE(run->store.isModified());
}

TEST_F(CountersPageTest, AValueThatTheFileCannotHoldIsRefusedInline) {
    countersOnDisk({{"AutoJob", make.text("41")}});
    open();
    select(0);
    xdotool("key F2");
    ASSERT_TRUE(fieldOpens());
    field()->setText(QStringLiteral("4") + QChar(0));
    EXPECT_EQ(message(), "The preferences cannot hold one of these characters.");
    xdotool("key Return Home");
    EXPECT_TRUE(waitUntil([&] { return field()->cursorPosition() == 0; })) << "the field is still open";
    EXPECT_EQ(run->counters.value("AutoJob"), "41");
    xdotool("key ctrl+a type 42");
    ASSERT_TRUE(waitUntil([&] { return field()->text() == QStringLiteral("42"); }));
    EXPECT_EQ(message(), "");
    xdotool("key Return");
    EXPECT_TRUE(waitUntil([&] { return run->counters.value("AutoJob") == "42"; }));
}

TEST_F(CountersPageTest, AFieldThatIsLeftWithSuchAValueSaysThatItWasNotStored) {
    countersOnDisk({{"AutoJob", make.text("41")}});
    open();
    select(0);
    xdotool("key F2");
    ASSERT_TRUE(fieldOpens());
    field()->setText(QString(QChar(0)));
    child<QPushButton>("resetCounter")->setFocus();
    EXPECT_TRUE(waitUntil([&] { return message().find("“AutoJob” was not stored") != std::string::npos; })) << message();
    EXPECT_EQ(run->counters.value("AutoJob"), "41");
}

TEST_F(CountersPageTest, ResetIsOneStepForAllThatAreSelected) {
    countersOnDisk({{"AutoJob", make.text("41")}, {"AutoShot", make.text("3")}});
    open();
    counters->setFocus();
    xdotool("key ctrl+a");
    ASSERT_TRUE(waitUntil([&] { return counters->selectionModel()->selectedRows().size() == 2; }));
    click(*child<QPushButton>("resetCounter"));
    ASSERT_TRUE(waitUntil([&] { return run->counters.value("AutoJob").empty() && run->counters.value("AutoShot").empty(); }));
    EXPECT_EQ(cell(0, CounterTableModel::Next), "0");
    run->history.undo();
    EXPECT_EQ(run->counters.value("AutoJob"), "41");
    EXPECT_EQ(run->counters.value("AutoShot"), "3");
    EXPECT_FALSE(run->history.canUndo());
}

TEST_F(CountersPageTest, DeleteTakesTheSelectedOnesAwayAndUndoBringsThemBack) {
    countersOnDisk({{"AutoA", make.text("1")}, {"AutoB", make.text("2")}, {"AutoC", make.text("3")}});
    open();
    select(1);
    xdotool("key Delete");
    ASSERT_TRUE(waitUntil([&] { return names() == std::vector<std::string>{"AutoA", "AutoC"}; }));
    EXPECT_EQ(counters->currentIndex().row(), 1) << "the next one is selected";
    xdotool("key Delete");
    ASSERT_TRUE(waitUntil([&] { return names() == std::vector<std::string>{"AutoA"}; }));
    run->history.undo();
    run->history.undo();
    EXPECT_EQ(names(), (std::vector<std::string>{"AutoA", "AutoB", "AutoC"}));
}

TEST_F(CountersPageTest, WithoutCountersItSaysHowTheyComeAbout) {
    countersOnDisk({{"AutoJob", make.text("41")}});
    open();
    EXPECT_FALSE(child<QLabel>("noCounters")->isVisible());
    select(0);
    xdotool("key Delete");
    EXPECT_TRUE(waitUntil([&] { return child<QLabel>("noCounters")->isVisible(); }));
    EXPECT_FALSE(child<QPushButton>("deleteCounter")->isEnabled());
    run->history.undo();
    EXPECT_FALSE(child<QLabel>("noCounters")->isVisible());
}

TEST_F(CountersPageTest, TheFieldStaysOpenWhileTheHelperCountsOn) {
    countersOnDisk({{"AutoJob", make.text("41")}, {"AutoShot", make.text("3")}});
    open();
    select(0);
    xdotool("key F2");
    ASSERT_TRUE(fieldOpens());
    xdotool("type 7");
    ASSERT_TRUE(waitUntil([&] { return field()->text() == QStringLiteral("7"); }));
    changeOnDisk("ORVAutomaticVars",
                 make.dictionary({{"AutoJob", make.text("41")}, {"AutoShot", make.text("4")}, {"AutoAnother", make.text("0")}}));
    static_cast<void>(run->store.reload());
    EXPECT_EQ(names(), (std::vector<std::string>{"AutoAnother", "AutoJob", "AutoShot"}));
    EXPECT_EQ(cell(2, CounterTableModel::Value), "4");
    ASSERT_NE(field(), nullptr);
    EXPECT_EQ(field()->text(), QStringLiteral("7"));
    xdotool("key Return");
    EXPECT_TRUE(waitUntil([&] { return run->counters.value("AutoJob") == "7"; }));
}

} // namespace
} // namespace orvane::test
