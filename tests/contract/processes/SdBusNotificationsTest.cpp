// What only the real centre can show: the signal on the wire, buses that are absent, silent or gone.

#include "PrivateBus.h"
#include "ProcessTestTools.h"

#include "platform/dbus/SdBusNotifications.h"

#include <chrono>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <vector>

namespace orvane {
namespace {

using namespace std::chrono_literals;
using Suspension = DistributedNotifications::Suspension;
using test::eventually;

class SdBusNotificationsTest : public testing::Test {
protected:
    void observe(SdBusNotifications &centre, const std::string &name) {
        centre.addObserver(this, name, Suspension::Coalesce, [this] { ++calls; });
    }
    /// Sends a signal with a tool that knows nothing of ours.
    bool send(const std::string &path, const std::string &member, const std::string &argument = {}) {
        std::vector<std::string> command{"dbus-send", "--bus=" + bus.address(), "--type=signal", path, member};
        if (!argument.empty()) {
            command.push_back(argument);
        }
        return test::TestProgram(command).await() == 0;
    }

    test::PrivateBus bus;
    test::TestFolder folder;
    int calls = 0;
};

constexpr const char *OurPath = "/org/orvane/DistributedNotifications";
constexpr const char *OurInterface = "org.orvane.DistributedNotifications";

TEST_F(SdBusNotificationsTest, PostedSignalHasPathInterfaceMemberAndNoArguments) {
    const std::string output = folder.path("monitor");
    test::TestProgram monitor({"dbus-monitor", "--address", bus.address(), std::string("interface='") + OurInterface + "'"}, output);
    ASSERT_TRUE(monitor.isStarted());
    SdBusNotifications centre(bus.address());
    ASSERT_TRUE(eventually([&] { // until the monitor listens
        return centre.post("ORVPresetConfigurationChangedNotification") && test::contentsOf(output).find("Changed") != std::string::npos;
    }));
    monitor.stop();
    const std::string lines = test::contentsOf(output);
    const std::string expected =
        std::string("path=") + OurPath + "; interface=" + OurInterface + "; member=ORVPresetConfigurationChangedNotification\n";
    const std::size_t found = lines.find(expected);
    ASSERT_NE(found, std::string::npos) << lines;
    const std::string after = lines.substr(found + expected.size());
    EXPECT_TRUE(after.empty() || after.starts_with("signal ")) << after; // arguments would follow on indented lines
}

TEST_F(SdBusNotificationsTest, SignalOfAForeignProgramArrives) {
    SdBusNotifications centre(bus.address());
    observe(centre, "Changed");
    ASSERT_TRUE(send(OurPath, std::string(OurInterface) + ".Changed"));
    EXPECT_TRUE(eventually([&] { return centre.process() && calls == 1; }));
}

TEST_F(SdBusNotificationsTest, SignalsOfOtherPathsAndInterfacesDoNotArrive) {
    SdBusNotifications centre(bus.address());
    observe(centre, "Changed");
    ASSERT_TRUE(send("/org/orvane/Other", std::string(OurInterface) + ".Changed"));
    ASSERT_TRUE(send(OurPath, "org.orvane.Other.Changed"));
    ASSERT_TRUE(send(OurPath, std::string(OurInterface) + ".Changed", "string:with an argument")); // counts, like any
    EXPECT_TRUE(eventually([&] { return centre.process() && calls > 0; }));
    EXPECT_EQ(calls, 1);
}

TEST_F(SdBusNotificationsTest, DescriptorBecomesReadableWhenANotificationArrives) {
    SdBusNotifications centre(bus.address());
    EXPECT_EQ(centre.descriptor(), -1);
    observe(centre, "Changed");
    ASSERT_TRUE(centre.process());
    pollfd waiting{centre.descriptor(), POLLIN, 0};
    ASSERT_EQ(::poll(&waiting, 1, 0), 0);
    ASSERT_TRUE(SdBusNotifications(bus.address()).post("Changed"));
    ASSERT_EQ(::poll(&waiting, 1, 20'000), 1);
    ASSERT_TRUE(centre.process());
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(::poll(&waiting, 1, 0), 0); // an event loop sleeps again
}

TEST_F(SdBusNotificationsTest, PostingRunsNoHandler) {
    SdBusNotifications centre(bus.address());
    observe(centre, "Changed");
    EXPECT_TRUE(centre.post("Changed"));
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(eventually([&] { return centre.process() && calls == 1; }));
}

TEST_F(SdBusNotificationsTest, HandlerMayProcessFurtherNotifications) {
    SdBusNotifications centre(bus.address());
    centre.addObserver(this, "Changed", Suspension::Coalesce, [&] {
        if (++calls == 1) {
            EXPECT_TRUE(centre.post("Changed"));
            EXPECT_TRUE(eventually([&] { return centre.process() && calls == 2; }));
        }
    });
    EXPECT_TRUE(centre.post("Changed"));
    EXPECT_TRUE(eventually([&] { return centre.process() && calls == 2; }));
}

TEST_F(SdBusNotificationsTest, NamesThatNoBusCarriesAreRefused) {
    SdBusNotifications centre(bus.address());
    for (const std::string &name : {std::string(), std::string("1st"), std::string("a b"), std::string("a.b"), std::string("é"),
                                    std::string("a\0b", 3), std::string(256, 'a')}) {
        EXPECT_FALSE(centre.post(name)) << name;
    }
    EXPECT_TRUE(centre.post(std::string(255, 'a')));
    EXPECT_TRUE(centre.post("_1st"));
}

TEST_F(SdBusNotificationsTest, WithoutABusNothingIsPostedAndNothingBreaks) {
    SdBusNotifications centre("unix:path=" + folder.path("no-bus"));
    EXPECT_FALSE(centre.post("Changed"));
    observe(centre, "Changed");
    EXPECT_EQ(centre.descriptor(), -1);
    EXPECT_FALSE(centre.process());
    EXPECT_FALSE(centre.wait(1ms));
    centre.removeObserver(this, "Changed");
}

TEST_F(SdBusNotificationsTest, AddressThatIsNoneIsLikeNoBus) {
    for (const char *address : {"nonsense", "unix:", "autolaunch:", ";", "unix:path="}) {
        EXPECT_FALSE(SdBusNotifications(address).post("Changed")) << address;
    }
}

TEST_F(SdBusNotificationsTest, AddressOfTheSessionIsTakenFromTheEnvironment) {
    const char *const before = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    const std::string kept = before == nullptr ? "" : before;
    SdBusNotifications observing(bus.address());
    observe(observing, "Changed");
    ::setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
    EXPECT_TRUE(SdBusNotifications().post("Changed"));
    ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + folder.path("no-bus")).c_str(), 1);
    EXPECT_FALSE(SdBusNotifications().post("Changed"));
    before == nullptr ? ::unsetenv("DBUS_SESSION_BUS_ADDRESS") : ::setenv("DBUS_SESSION_BUS_ADDRESS", kept.c_str(), 1);
    EXPECT_TRUE(eventually([&] { return observing.process() && calls == 1; }));
}

TEST_F(SdBusNotificationsTest, BusThatNeverAnswersCostsASecondAtMost) {
    const std::string path = folder.path("silent");
    const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(listener, 8), 0);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_FALSE(SdBusNotifications("unix:path=" + path).post("Changed"));
    const auto passed = std::chrono::steady_clock::now() - before;
    ::close(listener);
    EXPECT_GE(passed, 900ms); // it was tried
    EXPECT_LT(passed, 5s);    // the limit, and room for a busy machine; sd-bus by itself would take 90 seconds
}

TEST_F(SdBusNotificationsTest, BusThatGoesAwayIsNoticed) {
    SdBusNotifications centre(bus.address());
    observe(centre, "Changed");
    ASSERT_TRUE(centre.process());
    bus.stop();
    EXPECT_TRUE(eventually([&] { return !centre.process(); }));
    EXPECT_EQ(centre.descriptor(), -1);
    EXPECT_FALSE(centre.post("Changed"));
}

TEST_F(SdBusNotificationsTest, ObserversAreKeptWhileThereIsNoBus) {
    const std::string path = folder.path("later");
    SdBusNotifications centre("unix:path=" + path);
    observe(centre, "Changed");
    ASSERT_EQ(centre.descriptor(), -1);
    std::filesystem::create_symlink(bus.address().substr(std::strlen("unix:path=")), path); // now there is one
    observe(centre, "Other");
    ASSERT_TRUE(centre.process());
    EXPECT_TRUE(centre.post("Changed"));
    EXPECT_TRUE(eventually([&] { return centre.process() && calls == 1; }));
}

} // namespace
} // namespace orvane
