// What every notification centre promises, run on the fake and on the real one over a bus of the test's own.

#include "PrivateBus.h"
#include "ProcessTestTools.h"

#include "fakes/FakeDistributedNotifications.h"
#include "platform/dbus/SdBusNotifications.h"

#include <string>
#include <vector>

namespace orvane {
namespace {

using Suspension = DistributedNotifications::Suspension;
using Journal = std::vector<std::string>;

class FakeCentreHarness {
public:
    FakeDistributedNotifications &centre() { return _centre; }
    bool postFromElsewhere(std::string_view name) {
        _centre.arrive(name);
        return true;
    }
    void process() {}

private:
    FakeDistributedNotifications _centre;
};

class SdBusCentreHarness {
public:
    SdBusNotifications &centre() { return _centre; }
    bool postFromElsewhere(std::string_view name) { return SdBusNotifications(_bus.address()).post(name); }
    void process() {
        _centre.process();
        _centre.wait(std::chrono::milliseconds(1));
    }

private:
    test::PrivateBus _bus;
    SdBusNotifications _centre{_bus.address()};
};

template <typename Harness> class DistributedNotificationsContract : public testing::Test {
protected:
    DistributedNotificationsContract() {
        harness.centre().addObserver(&marks, "Mark", Suspension::DeliverImmediately, [this] { ++marks; });
    }
    void observe(const void *observer, std::string_view name, Suspension behavior, const std::string &entry) {
        harness.centre().addObserver(observer, name, behavior, [this, entry] { journal.push_back(entry); });
    }
    /// Everything posted before has arrived when this one has: the bus keeps the order.
    void settle() {
        const int before = marks;
        ASSERT_TRUE(harness.postFromElsewhere("Mark"));
        ASSERT_TRUE(test::eventually([&] {
            harness.process();
            return marks > before;
        }));
    }

    Harness harness;
    Journal journal;
    int marks = 0;
    int one = 1; ///< observers; only their addresses count
    int two = 2;
};

using Centres = testing::Types<FakeCentreHarness, SdBusCentreHarness>;
TYPED_TEST_SUITE(DistributedNotificationsContract, Centres);

TYPED_TEST(DistributedNotificationsContract, ObserverGetsEveryNotificationOfItsName) {
    this->observe(&this->one, "Changed", Suspension::Coalesce, "changed");
    EXPECT_TRUE(this->harness.centre().post("Changed"));
    EXPECT_TRUE(this->harness.centre().post("Changed"));
    this->settle();
    EXPECT_EQ(this->journal, (Journal{"changed", "changed"}));
}

TYPED_TEST(DistributedNotificationsContract, AnySenderWillDo) {
    this->observe(&this->one, "Changed", Suspension::Coalesce, "changed");
    EXPECT_TRUE(this->harness.postFromElsewhere("Changed"));
    this->settle();
    EXPECT_EQ(this->journal, Journal{"changed"});
}

TYPED_TEST(DistributedNotificationsContract, OtherNamesDoNotArrive) {
    this->observe(&this->one, "Changed", Suspension::Coalesce, "changed");
    EXPECT_TRUE(this->harness.centre().post("changed"));
    EXPECT_TRUE(this->harness.centre().post("Change"));
    EXPECT_TRUE(this->harness.centre().post("Changed2"));
    this->settle();
    EXPECT_EQ(this->journal, Journal{});
}

TYPED_TEST(DistributedNotificationsContract, SamePairAddedAgainIsCalledAgain) {
    this->observe(&this->one, "Changed", Suspension::Coalesce, "first");
    this->observe(&this->one, "Changed", Suspension::Coalesce, "second");
    EXPECT_TRUE(this->harness.centre().post("Changed"));
    this->settle();
    EXPECT_EQ(this->journal, (Journal{"first", "second"}));
}

TYPED_TEST(DistributedNotificationsContract, RemovingTakesAllRegistrationsOfThatObserverAndNameOnly) {
    this->observe(&this->one, "Changed", Suspension::Coalesce, "one");
    this->observe(&this->one, "Changed", Suspension::Hold, "one again");
    this->observe(&this->one, "Other", Suspension::Coalesce, "other");
    this->observe(&this->two, "Changed", Suspension::Coalesce, "two");
    this->harness.centre().removeObserver(&this->one, "Changed");
    EXPECT_TRUE(this->harness.centre().post("Changed"));
    EXPECT_TRUE(this->harness.centre().post("Other"));
    this->settle();
    EXPECT_EQ(this->journal, (Journal{"two", "other"}));
}

TYPED_TEST(DistributedNotificationsContract, RemovingWhatIsNotThereDoesNothing) {
    this->observe(&this->one, "Changed", Suspension::Coalesce, "one");
    this->harness.centre().removeObserver(&this->two, "Changed");
    this->harness.centre().removeObserver(&this->one, "Other");
    EXPECT_TRUE(this->harness.centre().post("Changed"));
    this->settle();
    EXPECT_EQ(this->journal, Journal{"one"});
}

TYPED_TEST(DistributedNotificationsContract, HandlerMayRemoveItself) {
    this->harness.centre().addObserver(&this->one, "Changed", Suspension::Coalesce, [this] {
        this->journal.push_back("once");
        this->harness.centre().removeObserver(&this->one, "Changed");
    });
    EXPECT_TRUE(this->harness.centre().post("Changed"));
    EXPECT_TRUE(this->harness.centre().post("Changed"));
    this->settle();
    EXPECT_EQ(this->journal, Journal{"once"});
}

TYPED_TEST(DistributedNotificationsContract, WhileSuspendedEachBehaviourIsObeyed) {
    this->observe(&this->one, "Changed", Suspension::Drop, "drop");
    this->observe(&this->one, "Changed", Suspension::Coalesce, "coalesce");
    this->observe(&this->one, "Changed", Suspension::Hold, "hold");
    this->observe(&this->one, "Changed", Suspension::DeliverImmediately, "immediately");
    this->harness.centre().suspend();
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(this->harness.postFromElsewhere("Changed"));
    }
    this->settle();
    EXPECT_EQ(this->journal, (Journal{"immediately", "immediately", "immediately"}));
    this->journal.clear();
    this->harness.centre().resume();
    EXPECT_EQ(this->journal, (Journal{"hold", "hold", "coalesce", "hold"}));
    this->journal.clear();
    EXPECT_TRUE(this->harness.postFromElsewhere("Changed"));
    this->settle();
    EXPECT_EQ(this->journal, (Journal{"drop", "coalesce", "hold", "immediately"}));
}

TYPED_TEST(DistributedNotificationsContract, ObserverRemovedWhileSuspendedGetsNothingLater) {
    this->observe(&this->one, "Changed", Suspension::Coalesce, "gone");
    this->harness.centre().suspend();
    EXPECT_TRUE(this->harness.postFromElsewhere("Changed"));
    this->settle();
    this->harness.centre().removeObserver(&this->one, "Changed");
    this->harness.centre().resume();
    EXPECT_EQ(this->journal, Journal{});
}

} // namespace
} // namespace orvane
