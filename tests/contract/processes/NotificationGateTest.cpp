// What becomes of notifications while a program is suspended.

#include "platform/dbus/NotificationGate.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane {
namespace {

using Suspension = DistributedNotifications::Suspension;
using Journal = std::vector<std::string>;

class NotificationGateTest : public testing::Test {
protected:
    void observe(std::string_view name, Suspension behavior, const std::string &entry) {
        gate.addObserver(this, name, behavior, [this, entry] { journal.push_back(entry); });
    }
    NotificationGate gate;
    Journal journal;
};

TEST_F(NotificationGateTest, EveryBehaviourDeliversAtOnceWhileNotSuspended) {
    observe("A", Suspension::Drop, "drop");
    observe("A", Suspension::Coalesce, "coalesce");
    observe("A", Suspension::Hold, "hold");
    observe("A", Suspension::DeliverImmediately, "immediately");
    gate.arrive("A");
    EXPECT_EQ(journal, (Journal{"drop", "coalesce", "hold", "immediately"}));
}

TEST_F(NotificationGateTest, SuspendedBehaviours) {
    observe("A", Suspension::Drop, "drop");
    observe("A", Suspension::Coalesce, "coalesce");
    observe("A", Suspension::Hold, "hold");
    observe("A", Suspension::DeliverImmediately, "immediately");
    gate.suspend();
    EXPECT_TRUE(gate.isSuspended());
    gate.arrive("A");
    gate.arrive("A");
    gate.arrive("A");
    EXPECT_EQ(journal, (Journal{"immediately", "immediately", "immediately"}));
    journal.clear();
    gate.resume();
    EXPECT_FALSE(gate.isSuspended());
    EXPECT_EQ(journal, (Journal{"hold", "hold", "coalesce", "hold"})); // the last of the coalesced ones counts
}

TEST_F(NotificationGateTest, NothingIsDeliveredTwice) {
    observe("A", Suspension::Hold, "a");
    gate.suspend();
    gate.arrive("A");
    gate.resume();
    gate.resume();
    gate.suspend();
    gate.resume();
    EXPECT_EQ(journal, Journal{"a"});
}

TEST_F(NotificationGateTest, OneThatOthersFollowIsNotForThoseWhoWantThemCoalesced) {
    observe("A", Suspension::Drop, "drop");
    observe("A", Suspension::Coalesce, "coalesce");
    observe("A", Suspension::Hold, "hold");
    gate.arrive("A", true);
    EXPECT_EQ(journal, (Journal{"drop", "hold"}));
    gate.arrive("A");
    EXPECT_EQ(journal, (Journal{"drop", "hold", "drop", "coalesce", "hold"}));
}

TEST_F(NotificationGateTest, CoalescingIsForEachNameAndEachObserver) {
    observe("A", Suspension::Coalesce, "a1");
    observe("A", Suspension::Coalesce, "a2");
    observe("B", Suspension::Coalesce, "b");
    gate.suspend();
    gate.arrive("A");
    gate.arrive("B");
    gate.arrive("B");
    gate.resume();
    EXPECT_EQ(journal, (Journal{"a1", "a2", "b"}));
}

TEST_F(NotificationGateTest, ObserverRemovedWhileSuspendedGetsNothingOnResume) {
    observe("A", Suspension::Hold, "a");
    gate.suspend();
    gate.arrive("A");
    gate.removeObserver(this, "A");
    EXPECT_FALSE(gate.hasObservers());
    observe("A", Suspension::Hold, "new"); // same observer and name, another registration
    gate.resume();
    EXPECT_EQ(journal, Journal{});
}

TEST_F(NotificationGateTest, ObserverRemovedByAnEarlierHandlerIsNotCalledAnyMore) {
    const int other = 0;
    gate.addObserver(&other, "A", Suspension::Drop, [&] { gate.removeObserver(this, "A"); });
    observe("A", Suspension::Drop, "removed");
    gate.arrive("A");
    EXPECT_EQ(journal, Journal{});
}

TEST_F(NotificationGateTest, ObserverAddedByAHandlerWaitsForTheNextNotification) {
    gate.addObserver(&gate, "A", Suspension::Drop, [&] {
        gate.removeObserver(&gate, "A");
        observe("A", Suspension::Drop, "added");
    });
    gate.arrive("A");
    EXPECT_EQ(journal, Journal{});
    gate.arrive("A");
    EXPECT_EQ(journal, Journal{"added"});
}

TEST_F(NotificationGateTest, HandlerThatSuspendsAgainKeepsTheRestWaiting) {
    gate.addObserver(&gate, "A", Suspension::Hold, [&] {
        journal.push_back("suspends");
        gate.suspend();
    });
    observe("B", Suspension::Hold, "b");
    gate.suspend();
    gate.arrive("A");
    gate.arrive("B");
    gate.resume();
    EXPECT_EQ(journal, Journal{"suspends"});
    gate.resume();
    EXPECT_EQ(journal, (Journal{"suspends", "b"}));
}

} // namespace
} // namespace orvane
