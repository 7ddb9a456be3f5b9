#include "desktop/x11/X11TestDesk.h"

#include "platform/x11/X11Reply.h"
#include "platform/x11/XcbXkb.h"

#include <gtest/gtest.h>
#include <xcb/xcbext.h>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace orvane::test {

namespace {

constexpr std::array<std::pair<std::uint32_t, std::uint8_t>, 4> ModifierKeys{
    {{Control, XKeyControl}, {Shift, XKeyShift}, {Option, XKeyAlt}, {Command, XKeySuper}}};

/// The request FakeInput of XTEST 2.2.
struct FakeInputRequest {
    std::uint32_t head = 0; ///< opcodes and length, which xcb writes
    std::uint8_t type = 0;
    std::uint8_t detail = 0;
    std::uint16_t unused = 0;
    std::uint32_t delay = 0;
    std::uint32_t root = 0;
    std::array<std::uint8_t, 8> unused2{};
    std::int16_t rootX = 0;
    std::int16_t rootY = 0;
    std::array<std::uint8_t, 7> unused3{};
    std::uint8_t device = 0;
};
static_assert(sizeof(FakeInputRequest) == 36);

} // namespace

X11Client::X11Client() : _connection(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(_connection) != 0) {
        std::fputs("no X server; run this under tests/tools/with-desktop.sh\n", stderr);
        std::abort();
    }
}

X11Client::~X11Client() {
    xcb_disconnect(_connection);
}

xcb_window_t X11Client::root() const {
    return xcb_setup_roots_iterator(xcb_get_setup(_connection)).data->root;
}

void X11Client::sync() const {
    const X11Reply<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(_connection, xcb_get_input_focus(_connection), nullptr));
}

bool X11Client::grab(std::uint8_t key, std::uint16_t state) const {
    const X11Reply<xcb_generic_error_t> error(
        xcb_request_check(_connection, xcb_grab_key_checked(_connection, 0, root(), state, key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    return error == nullptr;
}

void X11Client::ungrab(std::uint8_t key, std::uint16_t state) const {
    xcb_ungrab_key(_connection, key, root(), state);
    sync();
}

bool X11Client::isFree(std::uint8_t key) const {
    const bool all = grab(key, XCB_MOD_MASK_ANY);
    if (all) {
        ungrab(key, XCB_MOD_MASK_ANY);
    }
    return all;
}

X11User::X11User() {
    const X11Reply<xcb_xkb_use_extension_reply_t> reply(
        xcb_xkb_use_extension_reply(_client.connection(), xcb_xkb_use_extension(_client.connection(), 1, 0), nullptr));
    EXPECT_TRUE(reply && reply->supported != 0);
    setLayout("-layout us -variant '' -option");
}

X11User::~X11User() {
    while (!_down.empty()) {
        release(_down.back());
    }
    lockGroup(0);
    lockModifiers(0);
    setLayout("-layout us -variant '' -option");
}

void X11User::_fake(std::uint8_t type, std::uint8_t key) {
    FakeInputRequest request;
    request.type = type;
    request.detail = key;
    request.root = _client.root();
    // xcb uses the two places before the vector that it is given.
    std::array<iovec, 3> parts{};
    parts[2].iov_base = &request;
    parts[2].iov_len = sizeof request;
    xcb_protocol_request_t protocol{};
    static xcb_extension_t extension{"XTEST", 0};
    protocol.count = 1;
    protocol.ext = &extension;
    protocol.opcode = 2; // FakeInput
    protocol.isvoid = 1;
    xcb_send_request(_client.connection(), 0, parts.data() + 2, &protocol);
    _client.sync();
}

void X11User::press(std::uint8_t key) {
    _down.push_back(key);
    _fake(XCB_KEY_PRESS, key);
}

void X11User::release(std::uint8_t key) {
    std::erase(_down, key);
    _fake(XCB_KEY_RELEASE, key);
}

void X11User::tap(std::uint8_t key) {
    press(key);
    release(key);
}

void X11User::pressModifiers(std::uint32_t modifiers) {
    for (const auto &[bit, key] : ModifierKeys) {
        if ((modifiers & bit) != 0) {
            press(key);
        }
    }
}

void X11User::releaseModifiers(std::uint32_t modifiers) {
    for (const auto &[bit, key] : ModifierKeys) {
        if ((modifiers & bit) != 0) {
            release(key);
        }
    }
}

void X11User::strike(std::uint8_t key, std::uint32_t modifiers) {
    pressModifiers(modifiers);
    tap(key);
    releaseModifiers(modifiers);
}

void X11User::setLayout(const std::string &arguments) {
    run("setxkbmap -model pc105 " + arguments);
}

void X11User::xmodmap(const std::vector<std::string> &expressions) {
    std::string command = "xmodmap";
    for (const std::string &expression : expressions) {
        command += " -e '" + expression + "'";
    }
    run(command);
}

void X11User::run(const std::string &command) {
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    _client.sync();
}

void X11User::lockGroup(std::uint8_t group) {
    xcb_xkb_latch_lock_state(_client.connection(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
    _client.sync();
}

void X11User::lockModifiers(std::uint16_t modifiers) {
    constexpr std::uint8_t All = 0xFF;
    xcb_xkb_latch_lock_state(_client.connection(), XCB_XKB_ID_USE_CORE_KBD, All, static_cast<std::uint8_t>(modifiers), 0, 0, 0, 0, 0);
    _client.sync();
}

std::uint16_t X11User::state() const {
    const X11Reply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(_client.connection(), xcb_query_pointer(_client.connection(), _client.root()), nullptr));
    constexpr unsigned Modifiers = 0xFF;
    return reply ? static_cast<std::uint16_t>(reply->mask & Modifiers) : std::uint16_t{0};
}

X11Program::X11Program() : keyboard(X11Keyboard::create(client.connection())) {
    if (!keyboard) {
        std::fputs("the X server has no XKB\n", stderr);
        std::abort();
    }
    hotKeys = std::make_unique<X11HotKeyEvents>(*keyboard, log);
    constexpr std::array<EventTypeSpec, 2> Types{{{EventClassKeyboard, EventHotKeyPressed}, {EventClassKeyboard, EventHotKeyReleased}}};
    EXPECT_EQ(hotKeys->installEventHandler(hotKeys->getEventDispatcherTarget(), &X11Program::_handle, Types, this), EventNoError);
}

EventStatus X11Program::_handle(const void * /*nextHandler*/, const Event &event, void *userData) {
    auto *const program = static_cast<X11Program *>(userData);
    EventHotKeyID id;
    EXPECT_EQ(program->hotKeys->getEventParameter(event, EventParamDirectObject, TypeEventHotKeyID, id), EventNoError);
    program->journal.push_back((event.kind == EventHotKeyPressed ? "press " : "release ") + std::to_string(id.id));
    if (program->onEvent) {
        program->onEvent(event.kind, id.id);
    }
    return EventNoError;
}

void X11Program::pump() {
    client.sync();
    while (const X11Reply<xcb_generic_event_t> event{xcb_poll_for_event(client.connection())}) {
        _rawPresses += event->response_type == XCB_KEY_PRESS ? 1 : 0;
        _swallowed += hotKeys->handleEvent(*event) ? 1 : 0;
    }
}

bool X11Program::pumpUntil(const std::function<bool()> &done, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    pump();
    while (!done()) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            return false;
        }
        pollfd descriptor{xcb_get_file_descriptor(client.connection()), POLLIN, 0};
        constexpr int Slice = 20; // milliseconds: `done` may look at something else
        ::poll(&descriptor, 1, std::min(Slice, static_cast<int>(left.count())));
        pump();
    }
    return true;
}

std::vector<std::string> X11Program::told() {
    pump();
    return std::exchange(journal, {});
}

EventStatus X11Program::add(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t id, EventHotKeyRef *ref) const {
    EventHotKeyRef unused = nullptr;
    return hotKeys->registerEventHotKey(keyCode, modifiers, {1, id}, hotKeys->getEventDispatcherTarget(), 0,
                                        ref == nullptr ? unused : *ref);
}

X11OtherProcess::X11OtherProcess(const std::function<bool()> &child) {
    std::array<int, 2> ends{};
    EXPECT_EQ(::pipe(ends.data()), 0);
    _pid = ::fork();
    if (_pid == 0) {
        const char answer = child() ? 'y' : 'n';
        (void)!::write(ends[1], &answer, 1);
        for (;;) {
            ::pause();
        }
    }
    ::close(ends[1]);
    char answer = 'n';
    (void)!::read(ends[0], &answer, 1);
    ::close(ends[0]);
    _isReady = answer == 'y';
}

void X11OtherProcess::kill() {
    if (_pid > 0) {
        ::kill(_pid, SIGKILL);
        ::waitpid(_pid, nullptr, 0);
        _pid = -1;
    }
}

} // namespace orvane::test
