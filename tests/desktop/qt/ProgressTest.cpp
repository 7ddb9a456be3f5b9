// The window that appears while a creation lasts.

#include "QtTestSupport.h"

#include "platform/qt/QtCreationProgress.h"
#include "platform/qt/QtProgressWindow.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include <poll.h>
#include <unistd.h>

#include <xcb/xcb.h>

#include <gtest/gtest.h>

#include <QLabel>
#include <QLocale>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

const std::vector<std::string> WindowCommand = {"/proc/self/exe", "--progress-window"};

/// Whether another process of ours shows the window.
bool windowIsUp() {
    return !outputOf("xdotool search --onlyvisible --name '^Orvane$' 2>/dev/null").empty();
}

/// Whether the window's program answers a window manager that asks if it is still alive (EWMH 1.5, _NET_WM_PING), within 20 s. Handles
/// no events of this program.
bool answersPing(xcb_window_t window) {
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(xcb_connect(nullptr, nullptr), &xcb_disconnect);
    xcb_connection_t *const c = connection.get();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(c)).data->root;
    const auto atom = [c](std::string_view name) {
        xcb_intern_atom_reply_t *const reply =
            xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr);
        const xcb_atom_t found = reply->atom;
        std::free(reply);
        return found;
    };
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY; // the answer goes to the root window
    xcb_change_window_attributes(c, root, XCB_CW_EVENT_MASK, &events);
    constexpr std::uint32_t Mark = 4711; // stands for the time; comes back
    xcb_client_message_event_t question{};
    question.response_type = XCB_CLIENT_MESSAGE;
    question.format = 32;
    question.window = window;
    question.type = atom("WM_PROTOCOLS");
    question.data.data32[0] = atom("_NET_WM_PING");
    question.data.data32[1] = Mark;
    question.data.data32[2] = window;
    xcb_send_event(c, 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&question));
    xcb_flush(c);
    for (pollfd arrival{xcb_get_file_descriptor(c), POLLIN, 0}; ::poll(&arrival, 1, 20000) == 1;) {
        while (xcb_generic_event_t *const event = xcb_poll_for_event(c)) {
            xcb_client_message_event_t answer{};
            const bool isMessage = (event->response_type & 0x7F) == XCB_CLIENT_MESSAGE;
            std::memcpy(&answer, event, sizeof answer);
            std::free(event);
            if (isMessage && answer.window == root && answer.type == question.type && answer.data.data32[0] == question.data.data32[0] &&
                answer.data.data32[1] == Mark && answer.data.data32[2] == window) {
                return true;
            }
        }
    }
    return false;
}

/// Keeps the main thread from handling events, as a creation does, until the condition holds or 10 s are over.
bool createUntil(const std::function<void()> &works, const std::function<bool()> &holds) {
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (std::chrono::steady_clock::now() < deadline) {
        works();
        if (holds()) {
            return true;
        }
    }
    return false;
}

TEST(CreationProgressWindow, AppearsDuringALongCreationAndGoesWithItsEnd) {
    QtCreationProgress progress(WindowCommand);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(createUntil([&] { progress.advanced(1); }, windowIsUp));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 500ms);
    EXPECT_TRUE(waitUntil([] { return !windowIsUp(); }));
}

TEST(CreationProgressWindow, AppearsThoughOneBigFileIsAllThatHappens) {
    QtCreationProgress progress(WindowCommand);
    progress.advanced(1);
    EXPECT_TRUE(createUntil([] {}, windowIsUp));
    EXPECT_TRUE(waitUntil([] { return !windowIsUp(); }));
}

TEST(CreationProgressWindow, DoesNotTakeTheKeyboard) {
    const OtherProgram other;
    QtCreationProgress progress(WindowCommand);
    progress.advanced(1);
    EXPECT_TRUE(createUntil([] {}, windowIsUp));
    EXPECT_TRUE(other.isActive());
}

TEST(CreationProgressWindow, IsAlwaysReadyToAnswerTheDesktop) {
    QtCreationProgress progress(WindowCommand);
    progress.advanced(1);
    ASSERT_TRUE(createUntil([] {}, windowIsUp));
    // The main thread is busy; that the window answers, is moved and closed is the other process's work.
    const std::string number = outputOf("xdotool search --onlyvisible --name '^Orvane$'");
    EXPECT_TRUE(answersPing(static_cast<xcb_window_t>(std::stoul(number))));
    xdotool("windowmove --sync " + number + " 50 60");
    xdotool("windowclose " + number);
    EXPECT_TRUE(createUntil([] {}, [] { return !windowIsUp(); }));
    progress.advanced(1); // the creation goes on
}

TEST(CreationProgressWindow, ShortCreationsShowNothing) {
    QtCreationProgress progress({"/bin/sh", "-c", "touch \"$DESKTOP_SCRATCH/started\""});
    for (int i = 0; i < 20; ++i) {
        bool wasHandled = false;
        for (int node = 0; node < 100; ++node) {
            progress.advanced(1);
        }
        QTimer::singleShot(0, [&] { wasHandled = true; });
        ASSERT_TRUE(waitUntil([&] { return wasHandled; }));
    }
    bool isLater = false;
    QTimer::singleShot(800, [&] { isLater = true; });
    ASSERT_TRUE(waitUntil([&] { return isLater; }));
    EXPECT_NE(::access((environment("DESKTOP_SCRATCH") + "/started").c_str(), F_OK), 0);
}

TEST(CreationProgressWindow, ProgramThatCannotBeStartedHindersNothing) {
    QtCreationProgress progress({"/nonexistent/program"});
    EXPECT_TRUE(createUntil([&] { progress.advanced(1); }, [&] { return progress.tellings() >= 2; })); // tried, and gone on from there
    bool wasHandled = false;
    QTimer::singleShot(0, [&] { wasHandled = true; });
    EXPECT_TRUE(waitUntil([&] { return wasHandled; }));
}

TEST(CreationProgressWindow, CountsFromSeveralThreads) {
    QtCreationProgress progress(WindowCommand);
    std::thread other([&] {
        for (int i = 0; i < 100000; ++i) {
            progress.advanced(1);
        }
    });
    for (int i = 0; i < 100000; ++i) {
        progress.advanced(1);
    }
    other.join();
    progress.startedOver();
    EXPECT_TRUE(createUntil([&] { progress.advanced(1); }, windowIsUp));
    EXPECT_TRUE(waitUntil([] { return !windowIsUp(); }));
}

TEST(ProgressWindow, SaysHowManyItemsThereAre) {
    QtProgressWindow window;
    window.setNodes(1234);
    bool isSaid = false;
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        isSaid = isSaid || label->text().contains(QLocale().toString(1234));
    }
    EXPECT_TRUE(isSaid);
}

} // namespace
} // namespace orvane::test
