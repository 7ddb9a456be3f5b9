#include "desktop/x11/X11TestDesk.h"
#include "fakes/FakeHotKeyEvents.h"
#include "platform/x11/X11KeyCodes.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

// What the port of hot keys promises, asked of the fake and of a real X server with real key presses.

namespace orvane::test {
namespace {

using Journal = std::vector<std::string>;

class Keyboard {
public:
    virtual ~Keyboard() = default;
    [[nodiscard]] virtual HotKeyEvents &events() = 0;
    virtual void press(std::uint32_t keyCode, std::uint32_t modifiers) = 0;
    virtual void release(std::uint32_t keyCode, std::uint32_t modifiers) = 0;
    /// Holds the key that is down until it has repeated itself.
    virtual void repeat(std::uint32_t keyCode, std::uint32_t modifiers) = 0;
    /// Another program takes the key, or lets go of it.
    virtual void takeElsewhere(std::uint32_t keyCode, std::uint32_t modifiers) = 0;
    virtual void letGoElsewhere() = 0;
    /// Nobody at all holds the key.
    [[nodiscard]] virtual bool isFree(std::uint32_t keyCode) = 0;
    /// Handles everything that has happened.
    virtual void settle() = 0;

    void strike(std::uint32_t keyCode, std::uint32_t modifiers) {
        press(keyCode, modifiers);
        release(keyCode, modifiers);
    }
};

class FakeKeyboard final : public Keyboard {
public:
    [[nodiscard]] HotKeyEvents &events() override { return _events; }
    void press(std::uint32_t keyCode, std::uint32_t modifiers) override { _events.press(keyCode, modifiers); }
    void release(std::uint32_t keyCode, std::uint32_t /*modifiers*/) override { _events.release(keyCode); }
    void repeat(std::uint32_t keyCode, std::uint32_t modifiers) override { _events.press(keyCode, modifiers); }
    void takeElsewhere(std::uint32_t keyCode, std::uint32_t modifiers) override { _events.takenElsewhere.insert({keyCode, modifiers}); }
    void letGoElsewhere() override { _events.takenElsewhere.clear(); }
    [[nodiscard]] bool isFree(std::uint32_t /*keyCode*/) override { return _events.registered().empty(); }
    void settle() override {}

private:
    FakeHotKeyEvents _events;
};

class ServerKeyboard final : public Keyboard {
public:
    [[nodiscard]] HotKeyEvents &events() override { return *_program.hotKeys; }
    void press(std::uint32_t keyCode, std::uint32_t modifiers) override {
        _user.pressModifiers(modifiers);
        _user.press(_key(keyCode));
        _program.pump();
    }
    void release(std::uint32_t keyCode, std::uint32_t modifiers) override {
        _user.release(_key(keyCode));
        _user.releaseModifiers(modifiers);
        _program.pump();
    }
    void repeat(std::uint32_t /*keyCode*/, std::uint32_t /*modifiers*/) override {
        const int before = _program.rawPresses();
        EXPECT_TRUE(_program.pumpUntil([&] { return _program.rawPresses() >= before + 3; }));
    }
    void takeElsewhere(std::uint32_t keyCode, std::uint32_t modifiers) override {
        _taken = {keyCode, modifiers};
        _other = std::make_unique<X11OtherProcess>([=] {
            auto *const program = new X11Program; // until the process is killed
            return program->add(keyCode, modifiers, 99) == EventNoError;
        });
        EXPECT_TRUE(_other->isReady());
    }
    void letGoElsewhere() override {
        _other.reset();
        EXPECT_TRUE(_program.pumpUntil([&] { // the server sees a connection's end in its own time
            X11Program probe;
            const bool isFree = probe.add(_taken.first, _taken.second, 98) == EventNoError;
            probe.hotKeys.reset();
            probe.client.sync();
            return isFree;
        }));
    }
    [[nodiscard]] bool isFree(std::uint32_t keyCode) override {
        settle(); // what this program has given back the server has by then
        return _stranger.isFree(_key(keyCode));
    }
    void settle() override { _program.pump(); }

private:
    static std::uint8_t _key(std::uint32_t keyCode) { return X11KeyCodeOfVirtualKeyCode(keyCode).value_or(0); }

    X11User _user;
    X11Program _program;
    X11Client _stranger;
    std::unique_ptr<X11OtherProcess> _other;
    std::pair<std::uint32_t, std::uint32_t> _taken; ///< by that process
};

struct KeyboardKind {
    const char *name;
    std::function<std::unique_ptr<Keyboard>()> make;
};

void PrintTo(const KeyboardKind &kind, std::ostream *out) {
    *out << kind.name;
}

class HotKeyEventsContract : public testing::TestWithParam<KeyboardKind> {
protected:
    HotKeyEventsContract() {
        constexpr std::array<EventTypeSpec, 2> Types{{{EventClassKeyboard, EventHotKeyPressed}, {EventClassKeyboard, EventHotKeyReleased}}};
        EXPECT_EQ(events().installEventHandler(events().getEventDispatcherTarget(), &HotKeyEventsContract::_handle, Types, this),
                  EventNoError);
    }
    [[nodiscard]] HotKeyEvents &events() { return keyboard->events(); }
    [[nodiscard]] EventStatus add(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t id) {
        reference = nullptr;
        return events().registerEventHotKey(keyCode, modifiers, {0x5347486B, id}, events().getEventDispatcherTarget(), 0, reference);
    }
    [[nodiscard]] Journal told() {
        keyboard->settle();
        return std::exchange(journal, {});
    }

    std::unique_ptr<Keyboard> keyboard = GetParam().make();
    EventHotKeyRef reference = nullptr; ///< of the last registration
    Journal journal;
    std::function<void()> onPress;

private:
    static EventStatus _handle(const void * /*nextHandler*/, const Event &event, void *userData) {
        auto *const test = static_cast<HotKeyEventsContract *>(userData);
        EventHotKeyID id;
        EXPECT_EQ(test->events().getEventClass(event), EventClassKeyboard);
        EXPECT_EQ(test->events().getEventParameter(event, EventParamDirectObject, TypeEventHotKeyID, id), EventNoError);
        EXPECT_EQ(id.signature, 0x5347486BU);
        const bool isPress = test->events().getEventKind(event) == EventHotKeyPressed;
        test->journal.push_back((isPress ? "press " : "release ") + std::to_string(id.id));
        if (isPress && test->onPress) {
            test->onPress();
        }
        return EventNoError;
    }
};

TEST_P(HotKeyEventsContract, TellsOfThePressAndOfTheRelease) {
    ASSERT_EQ(add(MacK, Control | Shift, 7), EventNoError);
    EXPECT_NE(reference, nullptr);
    keyboard->press(MacK, Control | Shift);
    EXPECT_EQ(told(), Journal{"press 7"});
    keyboard->release(MacK, Control | Shift);
    EXPECT_EQ(told(), Journal{"release 7"});
}

TEST_P(HotKeyEventsContract, HoldingTheKeyPressesItOnce) {
    ASSERT_EQ(add(MacK, Control | Shift, 7), EventNoError);
    keyboard->press(MacK, Control | Shift);
    keyboard->repeat(MacK, Control | Shift);
    keyboard->release(MacK, Control | Shift);
    EXPECT_EQ(told(), (Journal{"press 7", "release 7"}));
    keyboard->strike(MacK, Control | Shift);
    EXPECT_EQ(told(), (Journal{"press 7", "release 7"}));
}

TEST_P(HotKeyEventsContract, EachModifierAndAllTogetherWork) {
    std::uint32_t id = 0;
    for (const std::uint32_t modifiers : {Command, Shift, Option, Control, Command | Option, Command | Shift | Option | Control}) {
        ASSERT_EQ(add(MacK, modifiers, ++id), EventNoError) << modifiers;
        keyboard->strike(MacK, modifiers);
        EXPECT_EQ(told(), (Journal{"press " + std::to_string(id), "release " + std::to_string(id)})) << modifiers;
    }
}

TEST_P(HotKeyEventsContract, OtherModifiersAndOtherKeysDoNothing) {
    ASSERT_EQ(add(MacK, Control | Shift, 7), EventNoError);
    for (const std::uint32_t modifiers : {0U, Control, Shift, Control | Shift | Option, Control | Shift | Command, Command | Option}) {
        keyboard->strike(MacK, modifiers);
        EXPECT_EQ(told(), Journal()) << modifiers;
    }
    keyboard->strike(MacK + 1, Control | Shift);
    EXPECT_EQ(told(), Journal());
}

TEST_P(HotKeyEventsContract, SeveralHotKeysAreToldApart) {
    ASSERT_EQ(add(MacK, Control | Shift, 1), EventNoError);
    ASSERT_EQ(add(MacK, Control | Option, 2), EventNoError);
    ASSERT_EQ(add(0x7A, Command | Shift, 3), EventNoError); // F1
    keyboard->strike(0x7A, Command | Shift);
    keyboard->strike(MacK, Control | Option);
    keyboard->strike(MacK, Control | Shift);
    EXPECT_EQ(told(), (Journal{"press 3", "release 3", "press 2", "release 2", "press 1", "release 1"}));
}

TEST_P(HotKeyEventsContract, UnregisteredKeyIsEverybodysAgain) {
    ASSERT_EQ(add(MacK, Control | Shift, 7), EventNoError);
    EXPECT_EQ(events().unregisterEventHotKey(reference), EventNoError);
    keyboard->strike(MacK, Control | Shift);
    EXPECT_EQ(told(), Journal());
    EXPECT_TRUE(keyboard->isFree(MacK));
}

TEST_P(HotKeyEventsContract, UnregisteringTwiceIsAnErrorAndChangesNothing) {
    ASSERT_EQ(add(MacK, Control | Shift, 7), EventNoError);
    const EventHotKeyRef first = reference;
    ASSERT_EQ(add(MacK, Control | Option, 8), EventNoError);
    EXPECT_EQ(events().unregisterEventHotKey(first), EventNoError);
    EXPECT_NE(events().unregisterEventHotKey(first), EventNoError);
    EXPECT_NE(events().unregisterEventHotKey(nullptr), EventNoError);
    keyboard->strike(MacK, Control | Option);
    EXPECT_EQ(told(), (Journal{"press 8", "release 8"}));
}

TEST_P(HotKeyEventsContract, KeyOfAnotherProgramIsRefusedUntilThatProgramIsGone) {
    keyboard->takeElsewhere(MacK, Control | Shift);
    EXPECT_EQ(add(MacK, Control | Shift, 7), EventHotKeyExistsError);
    EXPECT_EQ(reference, nullptr);
    EXPECT_EQ(add(MacK, Control | Option, 8), EventNoError); // the same key otherwise is free
    keyboard->letGoElsewhere();
    EXPECT_EQ(add(MacK, Control | Shift, 9), EventNoError);
    keyboard->strike(MacK, Control | Shift);
    EXPECT_EQ(told(), (Journal{"press 9", "release 9"}));
}

TEST_P(HotKeyEventsContract, RefusalLeavesNothingTaken) {
    keyboard->takeElsewhere(MacK, Control | Shift);
    EXPECT_EQ(add(MacK, Control | Shift, 7), EventHotKeyExistsError);
    keyboard->letGoElsewhere();
    EXPECT_TRUE(keyboard->isFree(MacK));
}

TEST_P(HotKeyEventsContract, CombinationIsGivenOnce) {
    ASSERT_EQ(add(MacK, Control | Shift, 1), EventNoError);
    EXPECT_EQ(add(MacK, Control | Shift, 2), EventHotKeyExistsError);
    keyboard->strike(MacK, Control | Shift);
    EXPECT_EQ(told(), (Journal{"press 1", "release 1"}));
}

TEST_P(HotKeyEventsContract, UnknownKeysAndModifiersAreInvalid) {
    EXPECT_EQ(add(128, Control, 1), EventHotKeyInvalidError);
    EXPECT_EQ(add(0xFFFFFFFF, Control, 1), EventHotKeyInvalidError);
    EXPECT_EQ(add(MacK, Control | 0x0400, 1), EventHotKeyInvalidError); // alpha lock
    EXPECT_EQ(add(MacK, 0xFFFFFFFF, 1), EventHotKeyInvalidError);
    EXPECT_TRUE(keyboard->isFree(MacK));
}

TEST_P(HotKeyEventsContract, OnlyItsOwnTargetAndNoOptions) {
    EventHotKeyRef none = nullptr;
    EXPECT_NE(events().registerEventHotKey(MacK, Control, {1, 1}, this, 0, none), EventNoError);
    EXPECT_NE(events().registerEventHotKey(MacK, Control, {1, 1}, events().getEventDispatcherTarget(), 1, none), EventNoError);
    EXPECT_NE(events().installEventHandler(this, nullptr, {}, nullptr), EventNoError);
    EXPECT_TRUE(keyboard->isFree(MacK));
}

TEST_P(HotKeyEventsContract, ThousandRegistrationsInARowLeaveOne) {
    EventHotKeyRef last = nullptr;
    for (std::uint32_t id = 1; id <= 1000; ++id) {
        if (last != nullptr) {
            ASSERT_EQ(events().unregisterEventHotKey(last), EventNoError);
        }
        ASSERT_EQ(add(MacK, Control | Shift, id), EventNoError);
        last = reference;
    }
    keyboard->strike(MacK, Control | Shift);
    EXPECT_EQ(told(), (Journal{"press 1000", "release 1000"}));
    EXPECT_EQ(events().unregisterEventHotKey(last), EventNoError);
    EXPECT_TRUE(keyboard->isFree(MacK));
}

TEST_P(HotKeyEventsContract, HandlerMayRegisterAnewWhileTheKeyIsDown) {
    ASSERT_EQ(add(MacK, Control | Shift, 1), EventNoError);
    onPress = [&] {
        onPress = nullptr;
        EXPECT_EQ(events().unregisterEventHotKey(reference), EventNoError);
        EXPECT_EQ(add(MacK, Control | Shift, 2), EventNoError);
    };
    keyboard->press(MacK, Control | Shift);
    keyboard->repeat(MacK, Control | Shift);
    keyboard->release(MacK, Control | Shift);
    EXPECT_EQ(told(), Journal{"press 1"}); // whose release has nobody to go to
    keyboard->strike(MacK, Control | Shift);
    EXPECT_EQ(told(), (Journal{"press 2", "release 2"}));
}

INSTANTIATE_TEST_SUITE_P(Keyboards, HotKeyEventsContract,
                         testing::Values(KeyboardKind{"Fake", [] { return std::make_unique<FakeKeyboard>(); }},
                                         KeyboardKind{"X11", [] { return std::make_unique<ServerKeyboard>(); }}),
                         [](const auto &each) { return std::string(each.param.name); });

} // namespace
} // namespace orvane::test
