#include "platform/filemanagers/X11ActiveApplication.h"
#include "platform/filemanagers/DesktopFrontWindow.h"

#include "fakes/FakeSystemLog.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <unistd.h>
#include <xcb/xcb.h>

// The active window on an X server without a window manager: the test itself says which window is active.

namespace orvane::testing {

namespace {

constexpr std::uint32_t OtherPid = 1;

class X11Active : public ::testing::Test {
protected:
    void SetUp() override {
        _connection = ::xcb_connect(nullptr, nullptr);
        ASSERT_EQ(::xcb_connection_has_error(_connection), 0);
        _screen = ::xcb_setup_roots_iterator(::xcb_get_setup(_connection)).data;
        setActive({});
        _active = std::make_unique<X11ActiveApplication>();
        ASSERT_TRUE(_active->isUsable());
    }
    void TearDown() override {
        setActive({});
        ::xcb_disconnect(_connection);
    }
    xcb_atom_t atom(const char *name) {
        const auto cookie = ::xcb_intern_atom(_connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
        const X11Reply<xcb_intern_atom_reply_t> reply(::xcb_intern_atom_reply(_connection, cookie, nullptr));
        return reply->atom;
    }
    void words(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const std::vector<std::uint32_t> &values) {
        ::xcb_change_property(_connection, XCB_PROP_MODE_REPLACE, window, property, type, 32, static_cast<std::uint32_t>(values.size()),
                              values.data());
        sync();
    }
    void text(xcb_window_t window, xcb_atom_t property, const std::string &value) {
        ::xcb_change_property(_connection, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING, 8,
                              static_cast<std::uint32_t>(value.size()), value.data());
        sync();
    }
    /// Waits until the server has done everything so far.
    void sync() {
        const X11Reply<xcb_get_input_focus_reply_t> reply(
            ::xcb_get_input_focus_reply(_connection, ::xcb_get_input_focus(_connection), nullptr));
    }
    xcb_window_t window(const char *className, const char *title, std::uint32_t pid = OtherPid) {
        const xcb_window_t made = ::xcb_generate_id(_connection);
        ::xcb_create_window(_connection, XCB_COPY_FROM_PARENT, made, _screen->root, 0, 0, 50, 50, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                            XCB_COPY_FROM_PARENT, 0, nullptr);
        text(made, XCB_ATOM_WM_CLASS, std::string("instance") + '\0' + className + '\0');
        text(made, atom("_NET_WM_NAME"), title);
        words(made, atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, {pid});
        ::xcb_map_window(_connection, made);
        sync();
        return made;
    }
    void setType(xcb_window_t window, const char *type) { words(window, atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, {atom(type)}); }
    void setActive(const std::vector<std::uint32_t> &values) { words(_screen->root, atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, values); }
    /// As the helper's event loop would: the change is noticed before the next one.
    void becomesActive(xcb_window_t window) {
        setActive({window});
        _active->noteNow();
    }
    std::string title() {
        const auto window = _active->window();
        return window ? window->title : "none";
    }

    xcb_connection_t *_connection = nullptr;
    xcb_screen_t *_screen = nullptr;
    std::unique_ptr<X11ActiveApplication> _active;
};

TEST_F(X11Active, SaysWhatTheWindowSaysOfItself) {
    const xcb_window_t files = window("Thunar", "n\u00e4\u00efve - Thunar", 4711);
    text(files, atom("_GTK_UNIQUE_BUS_NAME"), ":1.5");
    text(files, atom("_GTK_WINDOW_OBJECT_PATH"), "/window/2");
    becomesActive(files);
    const auto described = _active->window();
    ASSERT_TRUE(described);
    EXPECT_EQ(described->className, "Thunar");
    EXPECT_EQ(described->title, "n\u00e4\u00efve - Thunar");
    EXPECT_EQ(described->pid, 4711U);
    EXPECT_EQ(described->gtkBusName, ":1.5");
    EXPECT_EQ(described->gtkWindowPath, "/window/2");
    EXPECT_FALSE(described->isDesktop);
    EXPECT_TRUE(described->isLocal);
    EXPECT_TRUE(described->isOnX11);
}

TEST_F(X11Active, OnlyTheFirstValueOfThePropertyCounts) {
    const xcb_window_t one = window("Thunar", "one");
    const xcb_window_t two = window("Thunar", "two");
    setActive({one, two});
    EXPECT_EQ(title(), "one");
    setActive({0, two});
    EXPECT_EQ(title(), "none");
}

TEST_F(X11Active, NoPropertyAndAWindowThatIsGoneAreNone) {
    EXPECT_EQ(title(), "none");
    const xcb_window_t one = window("Thunar", "one");
    becomesActive(one);
    EXPECT_EQ(title(), "one");
    ::xcb_destroy_window(_connection, one);
    sync();
    EXPECT_EQ(title(), "none");
}

TEST_F(X11Active, ADialogStandsForItsOwner) {
    const xcb_window_t main = window("Thunar", "main");
    const xcb_window_t dialog = window("Thunar", "dialog");
    const xcb_window_t second = window("Thunar", "dialog of the dialog");
    words(dialog, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, {main});
    words(second, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, {dialog});
    becomesActive(second);
    EXPECT_EQ(title(), "main");
}

TEST_F(X11Active, ARingOfOwnersEnds) {
    const xcb_window_t one = window("Thunar", "one");
    const xcb_window_t two = window("Thunar", "two");
    words(one, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, {two});
    words(two, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, {one});
    becomesActive(one);
    EXPECT_NE(title(), "none");
}

TEST_F(X11Active, OurOwnWindowAndAPanelLeaveTheOneBefore) {
    const xcb_window_t files = window("Thunar", "files");
    const xcb_window_t own = window("orvane-helper", "own", static_cast<std::uint32_t>(::getpid()));
    const xcb_window_t panel = window("Xfce4-panel", "panel");
    setType(panel, "_NET_WM_WINDOW_TYPE_DOCK");
    becomesActive(files);
    becomesActive(panel);
    EXPECT_EQ(title(), "files");
    becomesActive(own);
    EXPECT_EQ(title(), "files");
}

TEST_F(X11Active, AnotherApplicationTakesTheFileManagersPlace) {
    const xcb_window_t files = window("Thunar", "files");
    const xcb_window_t other = window("XTerm", "terminal");
    const xcb_window_t own = window("orvane-helper", "own", static_cast<std::uint32_t>(::getpid()));
    becomesActive(files);
    becomesActive(other);
    EXPECT_EQ(title(), "terminal");
    becomesActive(own);
    EXPECT_EQ(title(), "terminal");
}

TEST_F(X11Active, AWindowThatWasMinimisedSinceIsNotTheOneBefore) {
    const xcb_window_t files = window("Thunar", "files");
    const xcb_window_t own = window("orvane-helper", "own", static_cast<std::uint32_t>(::getpid()));
    becomesActive(files);
    becomesActive(own);
    ::xcb_unmap_window(_connection, files);
    sync();
    EXPECT_EQ(title(), "none");
}

TEST_F(X11Active, FocusThatComesBackSoonIsWaitedFor) {
    const xcb_window_t files = window("Thunar", "files");
    int waits = 0;
    _active = std::make_unique<X11ActiveApplication>([&] {
        ++waits;
        setActive({files});
    });
    becomesActive(files);
    becomesActive(XCB_WINDOW_NONE);
    EXPECT_EQ(waits, 0);
    EXPECT_EQ(title(), "files");
    EXPECT_EQ(waits, 1);
}

TEST_F(X11Active, ADesktopAndAnotherMachineAreRecognised) {
    const xcb_window_t desktop = window("Pcmanfm", "pcmanfm");
    setType(desktop, "_NET_WM_WINDOW_TYPE_DESKTOP");
    becomesActive(desktop);
    EXPECT_TRUE(_active->window()->isDesktop);
    const xcb_window_t remote = window("Thunar", "remote");
    text(remote, XCB_ATOM_WM_CLIENT_MACHINE, "some-other-machine");
    becomesActive(remote);
    EXPECT_FALSE(_active->window()->isLocal);
}

TEST_F(X11Active, AskingAboutAProgramThatIsNotThereStartsNothing) {
    FakeSystemLog log;
    DesktopFrontWindow front(*_active, log);
    const auto names = [] {
        return QDBusConnection::sessionBus().interface()->registeredServiceNames().value().filter(QStringLiteral("org."));
    };
    const QStringList before = names();
    for (const char *className : {"org.gnome.Nautilus", "dolphin", "Thunar", "Nemo", "Caja", "pcmanfm-qt", "Pcmanfm"}) {
        becomesActive(window(className, "usr"));
        EXPECT_TRUE(front.fileManagerIsActive()) << className;
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(front.folder(), std::nullopt) << className;
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300)) << className;
    }
    EXPECT_EQ(names(), before);
}

TEST(ActiveApplications, WithoutAWindowSystemNothingIsKnownAndTheLogSaysSo) {
    const std::string display = std::getenv("DISPLAY");
    ::unsetenv("DISPLAY");
    FakeSystemLog log;
    EXPECT_EQ(makeActiveApplication(log)->window(), std::nullopt);
    ::setenv("DISPLAY", ":99999", 1);
    EXPECT_EQ(makeActiveApplication(log)->window(), std::nullopt);
    ::setenv("DISPLAY", display.c_str(), 1);
    // An X server beside a Wayland compositor knows of X programs only.
    ::setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    EXPECT_EQ(makeActiveApplication(log)->window(), std::nullopt);
    ::unsetenv("WAYLAND_DISPLAY");
    EXPECT_EQ(log.entries().size(), 3U);
}

} // namespace

} // namespace orvane::testing
