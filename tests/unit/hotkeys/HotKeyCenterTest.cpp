#include "fakes/FakeHotKeyEvents.h"
#include "hotkeys/SGHotKeyCenter.h"
#include "unit/hotkeys/KeyDesk.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace orvane {

/// Asks a center for what no caller can ask.
class SGHotKeyCenterInside {
public:
    static EventHotKeyRef carbonHotKey(SGHotKeyCenter &center, const SGHotKey *hotKey) { return center._carbonHotKeyForHotKey(hotKey); }
    static std::shared_ptr<SGHotKey> hotKey(SGHotKeyCenter &center, EventHotKeyRef ref) { return center._hotKeyForCarbonHotKey(ref); }
    static void put(SGHotKeyCenter &center, EventHotKeyRef ref, std::shared_ptr<SGHotKey> hotKey) {
        center._hotKeys[ref] = std::move(hotKey);
    }
    static void forget(SGHotKeyCenter &center) { center._hotKeys.clear(); }
};

namespace test {
namespace {

using Journal = std::vector<std::string>;

/// Counts what hot keys tell it.
struct Listener {
    std::vector<const SGHotKey *> senders;
    std::function<void()> onLaunch;
    void launch(const SGHotKey *sender) {
        senders.push_back(sender);
        if (onLaunch) {
            onLaunch();
        }
    }
    static SGSelector action() { return SGSelector::of<Listener, &Listener::launch>("launch:"); }
};

class HotKeyCenter : public testing::Test {
protected:
    [[nodiscard]] std::shared_ptr<SGHotKey> hotKey(std::intptr_t keyCode, std::intptr_t modifiers, const std::string &identifier = "key") {
        return std::make_shared<SGHotKey>(identifier, SGKeyCombo(keyCode, modifiers), &listener, Listener::action());
    }
    [[nodiscard]] static Event event(std::uint32_t kind, EventHotKeyID id) {
        return {EventClassKeyboard, kind, Event::Parameter{.value = id}};
    }
    [[nodiscard]] static EventHotKeyID ours(std::uint32_t id) { return {0x5347486B, id}; }

    FakeAssertionHandler assertions;
    FakeHotKeyEvents events;
    Listener listener;
    std::unique_ptr<SGHotKeyCenter> center = SGHotKeyCenter::create({assertions, events});
};

TEST_F(HotKeyCenter, RegistersWithIdsFromOneAndTheSignature) {
    const auto first = hotKey(1, 0x100);
    const auto second = hotKey(2, 0x100);
    EXPECT_EQ(first->hotKeyID(), EventHotKeyID());
    EXPECT_TRUE(center->registerHotKey(first));
    EXPECT_TRUE(center->registerHotKey(second));
    EXPECT_EQ(first->hotKeyID(), (EventHotKeyID{0x5347486B, 1}));
    EXPECT_EQ(second->hotKeyID(), (EventHotKeyID{0x5347486B, 2}));
    EXPECT_EQ(center->allHotKeys().size(), 2U);
}

TEST_F(HotKeyCenter, InstallsOneHandlerForPressesAndReleasesAtTheFirstRegistration) {
    EXPECT_FALSE(center->eventHandlerInstalled());
    (void)center->registerHotKey(hotKey(1, 0x100));
    (void)center->registerHotKey(hotKey(2, 0x100));
    EXPECT_EQ(events.journal, (Journal{"register 1+0x100 id=1", "installHandler keyb 5, keyb 6", "register 2+0x100 id=2"}));
    EXPECT_TRUE(center->eventHandlerInstalled());
}

TEST_F(HotKeyCenter, KeepsTheHandlerWhenTheLastHotKeyGoes) {
    const auto key = hotKey(1, 0x100);
    (void)center->registerHotKey(key);
    center->unregisterHotKey(key);
    (void)center->registerHotKey(key);
    EXPECT_EQ(events.journal,
              (Journal{"register 1+0x100 id=1", "installHandler keyb 5, keyb 6", "unregister 1+0x100", "register 1+0x100 id=2"}));
}

TEST_F(HotKeyCenter, RegisteringTwiceUndoesTheFirstRegistration) {
    const auto key = hotKey(1, 0x100);
    (void)center->registerHotKey(key);
    events.journal.clear();
    EXPECT_TRUE(center->registerHotKey(key));
    EXPECT_EQ(events.journal, (Journal{"unregister 1+0x100", "register 1+0x100 id=2"}));
    EXPECT_EQ(center->allHotKeys(), std::vector{key});
    EXPECT_EQ(key->hotKeyID().id, 2U);
}

TEST_F(HotKeyCenter, RegisteringTwiceAndBeingRefusedTheSecondTimeLeavesTheRecordUnregistered) {
    const auto key = hotKey(1, 0x100);
    (void)center->registerHotKey(key);
    events.nextStatus = EventHotKeyExistsError;
    EXPECT_FALSE(center->registerHotKey(key));
    EXPECT_TRUE(center->allHotKeys().empty());
    EXPECT_TRUE(events.registered().empty());
    EXPECT_EQ(key->hotKeyID(), ours(2));
}

TEST_F(HotKeyCenter, SecondRecordOfACombinationIsTheDesktopsToRefuseAndTheFirstStays) {
    const auto first = hotKey(1, 0x100, "first");
    (void)center->registerHotKey(first);
    EXPECT_FALSE(center->registerHotKey(hotKey(1, 0x100, "second")));
    EXPECT_EQ(center->allHotKeys(), std::vector{first});
    EXPECT_EQ(events.journal.back(), "register 1+0x100 id=2 refused");
}

TEST_F(HotKeyCenter, RecordThatIsNotRegisteredIsNotTakenForOneOfTheSameCombination) {
    const auto first = hotKey(1, 0x100, "first");
    const auto second = hotKey(1, 0x100, "second");
    (void)center->registerHotKey(first);
    events.journal.clear();
    center->unregisterHotKey(second);
    EXPECT_EQ(events.journal, Journal());
    EXPECT_FALSE(center->registerHotKey(second));
    EXPECT_EQ(events.journal, Journal{"register 1+0x100 id=2 refused"});
    EXPECT_TRUE(assertions.failures.empty());
    EXPECT_EQ(center->allHotKeys(), std::vector{first});
}

TEST_F(HotKeyCenter, RecordsWithEqualIdentifiersAreAllKeptAndOneOfThemIsFound) {
    const auto one = hotKey(1, 0x100, "same");
    const auto two = hotKey(2, 0x100, "same");
    (void)center->registerHotKey(one);
    (void)center->registerHotKey(two);
    EXPECT_EQ(center->allHotKeys().size(), 2U);
    const auto found = center->hotKeyWithIdentifier("same");
    EXPECT_TRUE(found == one || found == two);
    center->unregisterHotKey(found);
    EXPECT_EQ(center->hotKeyWithIdentifier("same"), found == one ? two : one);
}

/// Notes with what the handler is installed and the key registered.
class AttentiveEvents final : public HotKeyEvents {
public:
    EventStatus registerEventHotKey(std::uint32_t /*keyCode*/, std::uint32_t /*modifiers*/, EventHotKeyID /*id*/, EventTargetRef target,
                                    std::uint32_t options, EventHotKeyRef &hotKey) override {
        registeredTarget = target;
        registeredOptions = options;
        hotKey = this;
        return EventNoError;
    }
    EventStatus unregisterEventHotKey(EventHotKeyRef /*hotKey*/) override { return EventInternalError; }
    EventTargetRef getEventDispatcherTarget() override { return &dispatcher; }
    EventStatus installEventHandler(EventTargetRef target, EventHandler handler, std::span<const EventTypeSpec> /*types*/,
                                    void *userData) override {
        installedTarget = target;
        installedHandler = handler;
        installedUserData = userData;
        return EventInternalError;
    }

    const int dispatcher = 0;
    EventTargetRef registeredTarget = nullptr;
    std::uint32_t registeredOptions = 99;
    EventTargetRef installedTarget = nullptr;
    EventHandler installedHandler = nullptr;
    void *installedUserData = this;
};

TEST_F(HotKeyCenter, RegistersAndListensAtTheDispatcherWithoutOptionsAndUserData) {
    AttentiveEvents desktop;
    const auto attentive = SGHotKeyCenter::create({assertions, desktop});
    EXPECT_TRUE(attentive->registerHotKey(hotKey(1, 0x100)));
    EXPECT_EQ(desktop.registeredTarget, &desktop.dispatcher);
    EXPECT_EQ(desktop.registeredOptions, 0U);
    EXPECT_EQ(desktop.installedTarget, &desktop.dispatcher);
    EXPECT_EQ(desktop.installedHandler, &hotKeyEventHandler);
    EXPECT_EQ(desktop.installedUserData, nullptr);
}

TEST_F(HotKeyCenter, DesktopsAnswersToInstallingAndUnregisteringAreNotLookedAt) {
    AttentiveEvents desktop;
    const auto attentive = SGHotKeyCenter::create({assertions, desktop});
    const auto key = hotKey(1, 0x100);
    EXPECT_TRUE(attentive->registerHotKey(key));
    EXPECT_TRUE(attentive->eventHandlerInstalled());
    attentive->unregisterHotKey(key);
    EXPECT_TRUE(attentive->allHotKeys().empty());
    EXPECT_TRUE(assertions.failures.empty());
}

TEST_F(HotKeyCenter, InvalidCombinationIsNoErrorAndNothingHappens) {
    const auto clear = std::make_shared<SGHotKey>();
    EXPECT_TRUE(center->registerHotKey(clear));
    EXPECT_TRUE(center->registerHotKey(hotKey(0, 0)));
    EXPECT_TRUE(center->registerHotKey(nullptr));
    EXPECT_TRUE(center->allHotKeys().empty());
    EXPECT_TRUE(events.journal.empty());
    EXPECT_EQ(clear->hotKeyID(), EventHotKeyID());
    (void)center->registerHotKey(hotKey(1, 0x100));
    EXPECT_EQ(events.journal.front(), "register 1+0x100 id=1"); // no id was used up
}

TEST_F(HotKeyCenter, RegisteredKeyMadeInvalidIsUnregistered) {
    const auto key = hotKey(1, 0x100);
    (void)center->registerHotKey(key);
    key->setKeyCombo(std::nullopt);
    EXPECT_TRUE(center->registerHotKey(key));
    EXPECT_TRUE(center->allHotKeys().empty());
    EXPECT_TRUE(events.registered().empty());
}

TEST_F(HotKeyCenter, RefusalUsesUpAnIdAndStoresNothing) {
    events.takenElsewhere.insert({1, 0x100});
    const auto key = hotKey(1, 0x100);
    EXPECT_FALSE(center->registerHotKey(key));
    EXPECT_EQ(key->hotKeyID().id, 1U);
    EXPECT_TRUE(center->allHotKeys().empty());
    EXPECT_EQ(events.journal, Journal{"register 1+0x100 id=1 refused"});
    (void)center->registerHotKey(hotKey(2, 0x100));
    (void)center->registerHotKey(hotKey(3, 0x100));
    const auto fourth = hotKey(4, 0x100);
    (void)center->registerHotKey(fourth);
    EXPECT_EQ(fourth->hotKeyID().id, 4U);
}

TEST_F(HotKeyCenter, EveryStatusButZeroIsARefusal) {
    for (const EventStatus status : {1, -1}) {
        events.nextStatus = status;
        EXPECT_FALSE(center->registerHotKey(hotKey(1, 0x100)));
        EXPECT_TRUE(center->allHotKeys().empty());
        EXPECT_FALSE(center->eventHandlerInstalled());
    }
}

TEST_F(HotKeyCenter, SuccessWithoutAReferenceStoresNothing) {
    events.givesNoReference = true;
    EXPECT_TRUE(center->registerHotKey(hotKey(1, 0x100)));
    EXPECT_TRUE(center->allHotKeys().empty());
    EXPECT_FALSE(center->eventHandlerInstalled());
}

TEST_F(HotKeyCenter, UnregisteringAnUnknownRecordDoesNothing) {
    center->unregisterHotKey(hotKey(1, 0x100));
    center->unregisterHotKey(nullptr);
    EXPECT_TRUE(events.journal.empty());
    EXPECT_TRUE(assertions.failures.empty());
}

TEST_F(HotKeyCenter, GivesTheKeyBackToTheDesktopBeforeItForgetsTheRecord) {
    const auto key = hotKey(1, 0x100, "key");
    (void)center->registerHotKey(key);
    std::vector<std::shared_ptr<SGHotKey>> meanwhile;
    events.hook = [&](const std::string &line) {
        EXPECT_EQ(line, "unregister 1+0x100");
        meanwhile = center->allHotKeys();
    };
    center->unregisterHotKey(key);
    events.hook = nullptr;
    EXPECT_EQ(meanwhile, std::vector{key});
    EXPECT_TRUE(center->allHotKeys().empty());
}

TEST_F(HotKeyCenter, RecordKeepsItsIdWhenUnregistered) {
    const auto key = hotKey(1, 0x100);
    (void)center->registerHotKey(key);
    center->unregisterHotKey(key);
    EXPECT_EQ(key->hotKeyID(), ours(1));
    EXPECT_TRUE(events.registered().empty());
}

TEST_F(HotKeyCenter, FindsRecordsByIdentifier) {
    const auto one = hotKey(1, 0x100, "one");
    const auto two = hotKey(2, 0x100, "two");
    (void)center->registerHotKey(one);
    (void)center->registerHotKey(two);
    EXPECT_EQ(center->hotKeyWithIdentifier("two"), two);
    EXPECT_EQ(center->hotKeyWithIdentifier("three"), nullptr);
    EXPECT_EQ(center->hotKeyWithIdentifier(std::nullopt), nullptr);
    center->unregisterHotKey(two);
    EXPECT_EQ(center->hotKeyWithIdentifier("two"), nullptr);
}

TEST_F(HotKeyCenter, NoIdentifierFindsNotEvenARecordWithoutOne) {
    (void)center->registerHotKey(std::make_shared<SGHotKey>(std::nullopt, SGKeyCombo(1, 0x100)));
    EXPECT_EQ(center->hotKeyWithIdentifier(std::nullopt), nullptr);
}

TEST_F(HotKeyCenter, PressInvokesTheRecordOfThatId) {
    const auto one = hotKey(1, 0x100);
    const auto two = hotKey(2, 0x100);
    (void)center->registerHotKey(one);
    (void)center->registerHotKey(two);
    EXPECT_EQ(center->sendCarbonEvent(event(5, ours(2))), 0);
    EXPECT_EQ(listener.senders, std::vector<const SGHotKey *>{two.get()});
}

TEST_F(HotKeyCenter, PressInvokesNoOtherRecordOfTheSameCombination) {
    const auto one = hotKey(1, 0x100, "one");
    const auto two = hotKey(1, 0x100, "two");
    (void)center->registerHotKey(one);
    events.nextStatus = EventNoError; // a desktop that gives a key twice
    ASSERT_TRUE(center->registerHotKey(two));
    EXPECT_EQ(center->sendCarbonEvent(event(5, ours(1))), 0);
    EXPECT_EQ(center->sendCarbonEvent(event(5, ours(2))), 0);
    EXPECT_EQ(listener.senders, (std::vector<const SGHotKey *>{one.get(), two.get()}));
}

TEST_F(HotKeyCenter, ReleaseDoesNothing) {
    (void)center->registerHotKey(hotKey(1, 0x100));
    EXPECT_EQ(center->sendCarbonEvent(event(6, ours(1))), 0);
    EXPECT_TRUE(listener.senders.empty());
    EXPECT_TRUE(assertions.failures.empty());
}

TEST_F(HotKeyCenter, PressOfAnUnknownIdIsNoErrorAndDoesNothing) {
    (void)center->registerHotKey(hotKey(1, 0x100));
    EXPECT_EQ(center->sendCarbonEvent(event(5, ours(9))), 0);
    EXPECT_TRUE(listener.senders.empty());
    EXPECT_TRUE(assertions.failures.empty());
}

TEST_F(HotKeyCenter, UnregisteredRecordIsNotInvoked) {
    const auto key = hotKey(1, 0x100);
    (void)center->registerHotKey(key);
    center->unregisterHotKey(key);
    EXPECT_EQ(center->sendCarbonEvent(event(5, ours(1))), 0);
    EXPECT_TRUE(listener.senders.empty());
}

TEST_F(HotKeyCenter, RecordOutlivesItsOwnUnregistrationWhileItIsInvoked) {
    auto key = hotKey(1, 0x100, "gone");
    std::weak_ptr<SGHotKey> watched = key;
    std::string identifier;
    (void)center->registerHotKey(key);
    listener.onLaunch = [&] {
        center->unregisterHotKey(key);
        key.reset();
        identifier = listener.senders.back()->identifier().value_or("");
    };
    EXPECT_EQ(center->sendCarbonEvent(event(5, ours(1))), 0);
    EXPECT_EQ(identifier, "gone");
    EXPECT_TRUE(watched.expired());
}

TEST_F(HotKeyCenter, ForeignEventClassIsAnAssertionFailure) {
    Event foreign = event(5, ours(1));
    foreign.eventClass = FourCharacterCode("mous");
    EXPECT_EQ(center->sendCarbonEvent(foreign), 0);
    EXPECT_EQ(assertions.failures, Journal{"-[SGHotKeyCenter sendCarbonEvent:] SGHotKeyCenter:148 Unknown event class"});
    EXPECT_EQ(assertions.objects, std::vector<const void *>{center.get()});
}

TEST_F(HotKeyCenter, EventClassIsLookedAtBeforeTheParameter) {
    EXPECT_EQ(center->sendCarbonEvent({FourCharacterCode("mous"), 5, std::nullopt}), EventParameterNotFoundError);
    EXPECT_EQ(assertions.failures, Journal{"-[SGHotKeyCenter sendCarbonEvent:] SGHotKeyCenter:148 Unknown event class"});
}

TEST_F(HotKeyCenter, StatusOfAMissingParameterIsReturnedAtOnce) {
    EXPECT_EQ(center->sendCarbonEvent({EventClassKeyboard, 99, std::nullopt}), EventParameterNotFoundError);
    Event other = event(99, ours(0));
    other.parameter->type = FourCharacterCode("long");
    EXPECT_EQ(center->sendCarbonEvent(other), EventParameterNotFoundError);
    other = event(99, ours(0));
    other.parameter->name = FourCharacterCode("othr");
    EXPECT_EQ(center->sendCarbonEvent(other), EventParameterNotFoundError);
    EXPECT_TRUE(assertions.failures.empty());
}

TEST_F(HotKeyCenter, ForeignSignatureIsAnAssertionFailure) {
    EXPECT_EQ(center->sendCarbonEvent(event(5, {FourCharacterCode("ABCD"), 1})), 0);
    EXPECT_EQ(assertions.failures, Journal{"-[SGHotKeyCenter sendCarbonEvent:] SGHotKeyCenter:160 Invalid hot key id"});
}

TEST_F(HotKeyCenter, IdZeroIsAnAssertionFailure) {
    EXPECT_EQ(center->sendCarbonEvent(event(5, ours(0))), 0);
    EXPECT_EQ(assertions.failures, Journal{"-[SGHotKeyCenter sendCarbonEvent:] SGHotKeyCenter:161 Invalid hot key id"});
}

TEST_F(HotKeyCenter, SignatureIsLookedAtBeforeTheId) {
    EXPECT_EQ(center->sendCarbonEvent(event(5, {FourCharacterCode("ABCD"), 0})), 0);
    EXPECT_EQ(assertions.failures, (Journal{"-[SGHotKeyCenter sendCarbonEvent:] SGHotKeyCenter:160 Invalid hot key id",
                                            "-[SGHotKeyCenter sendCarbonEvent:] SGHotKeyCenter:161 Invalid hot key id"}));
}

TEST_F(HotKeyCenter, UnknownKindIsAnAssertionFailureAndNoError) {
    (void)center->registerHotKey(hotKey(1, 0x100));
    EXPECT_EQ(center->sendCarbonEvent(event(7, ours(1))), 0);
    EXPECT_EQ(assertions.failures, Journal{"-[SGHotKeyCenter sendCarbonEvent:] SGHotKeyCenter:180 Unknown event kind"});
    EXPECT_TRUE(listener.senders.empty());
}

TEST_F(HotKeyCenter, SignatureAndIdAreLookedAtBeforeTheKind) {
    EXPECT_EQ(center->sendCarbonEvent(event(7, {FourCharacterCode("ABCD"), 0})), 0);
    EXPECT_EQ(assertions.failures, (Journal{"-[SGHotKeyCenter sendCarbonEvent:] SGHotKeyCenter:160 Invalid hot key id",
                                            "-[SGHotKeyCenter sendCarbonEvent:] SGHotKeyCenter:161 Invalid hot key id",
                                            "-[SGHotKeyCenter sendCarbonEvent:] SGHotKeyCenter:180 Unknown event kind"}));
}

TEST_F(HotKeyCenter, RaisingHandlerEndsTheDispatch) {
    assertions.raises = true;
    EXPECT_THROW((void)center->sendCarbonEvent(event(5, {1, 1})), AssertionFailure);
    EXPECT_EQ(assertions.failures.size(), 1U);
}

TEST_F(HotKeyCenter, RecordWithoutAReferenceIsAnAssertionFailure) {
    const auto key = hotKey(1, 0x100);
    EXPECT_EQ(SGHotKeyCenterInside::carbonHotKey(*center, key.get()), nullptr);
    EXPECT_EQ(assertions.failures,
              Journal{"-[SGHotKeyCenter _carbonHotKeyForHotKey:] SGHotKeyCenter:197 Failed to find Carbon Hotkey for SGHotKey"});
}

TEST_F(HotKeyCenter, RecordWithSeveralReferencesIsAnAssertionFailureAndGivesTheLast) {
    const auto key = hotKey(1, 0x100);
    const int places[2] = {};
    SGHotKeyCenterInside::put(*center, &places[0], key);
    SGHotKeyCenterInside::put(*center, &places[1], key);
    EXPECT_EQ(SGHotKeyCenterInside::carbonHotKey(*center, key.get()), &places[1]);
    EXPECT_EQ(assertions.failures.size(), 1U);
    SGHotKeyCenterInside::forget(*center);
}

TEST_F(HotKeyCenter, UnregisteringUnderANullReferenceIsAnAssertionFailure) {
    const auto key = hotKey(1, 0x100);
    SGHotKeyCenterInside::put(*center, nullptr, key);
    center->unregisterHotKey(key);
    EXPECT_EQ(assertions.failures, Journal{"-[SGHotKeyCenter unregisterHotKey:] SGHotKeyCenter:116 "});
    EXPECT_TRUE(center->allHotKeys().empty());
}

TEST_F(HotKeyCenter, FindsRecordsByReference) {
    const auto key = hotKey(1, 0x100);
    (void)center->registerHotKey(key);
    EXPECT_EQ(SGHotKeyCenterInside::hotKey(*center, SGHotKeyCenterInside::carbonHotKey(*center, key.get())), key);
    EXPECT_EQ(SGHotKeyCenterInside::hotKey(*center, this), nullptr);
}

TEST_F(HotKeyCenter, GivesEverythingBackAtItsEnd) {
    (void)center->registerHotKey(hotKey(1, 0x100));
    (void)center->registerHotKey(hotKey(2, 0x100));
    center.reset();
    EXPECT_TRUE(events.registered().empty());
}

TEST_F(HotKeyCenter, SecondInitChangesNothing) {
    (void)center->registerHotKey(hotKey(1, 0x100));
    EXPECT_EQ(center->init(), center.get());
    EXPECT_EQ(center->allHotKeys().size(), 1U);
}

TEST_F(HotKeyCenter, HoldsAnyNumberOfHotKeys) {
    for (std::intptr_t keyCode = 0; keyCode < 128; ++keyCode) {
        for (const std::intptr_t modifiers : {0x100, 0x200, 0x800, 0x1000}) {
            EXPECT_TRUE(center->registerHotKey(hotKey(keyCode, modifiers)));
        }
    }
    EXPECT_EQ(center->allHotKeys().size(), 512U);
    (void)center->sendCarbonEvent(event(5, ours(512)));
    ASSERT_EQ(listener.senders.size(), 1U);
    EXPECT_EQ(listener.senders.front()->keyCombo(), SGKeyCombo(127, 0x1000));
}

class SharedHotKeyCenter : public HotKeyCenter {
protected:
    SharedHotKeyCenter() {
        const SGHotKeyCenterPorts ports{assertions, events};
        SGHotKeyCenter::setSharedPorts(&ports);
    }
    ~SharedHotKeyCenter() override { SGHotKeyCenter::setSharedPorts(nullptr); }
};

TEST_F(SharedHotKeyCenter, IsOneForAll) {
    SGHotKeyCenter *const shared = SGHotKeyCenter::sharedCenter();
    ASSERT_NE(shared, nullptr);
    EXPECT_EQ(SGHotKeyCenter::sharedCenter(), shared);
    EXPECT_EQ(SGHotKeyCenter::alloc()->init(), shared);
}

TEST_F(SharedHotKeyCenter, GetsTheDesktopsEvents) {
    (void)SGHotKeyCenter::sharedCenter()->registerHotKey(hotKey(1, 0x100));
    events.press(1, 0x100);
    events.press(1, 0x100); // auto-repeat
    events.release(1);
    events.press(1, 0x900);
    events.release(1);
    events.press(1, 0x100);
    EXPECT_EQ(listener.senders.size(), 2U);
}

TEST_F(SharedHotKeyCenter, HandlerGivesTheStatus) {
    EXPECT_EQ(hotKeyEventHandler(nullptr, event(5, ours(1)), nullptr), 0);
    EXPECT_EQ(hotKeyEventHandler(nullptr, {EventClassKeyboard, 5, std::nullopt}, nullptr), EventParameterNotFoundError);
}

TEST_F(SharedHotKeyCenter, RaisedAssertionFailureDoesNotReachTheDesktop) {
    assertions.raises = true;
    EXPECT_EQ(hotKeyEventHandler(nullptr, event(5, ours(0)), nullptr), EventInternalError);
}

TEST(HotKeyCenterWithoutPorts, IsNull) {
    EXPECT_EQ(SGHotKeyCenter::sharedCenter(), nullptr);
    EXPECT_EQ(hotKeyEventHandler(nullptr, {}, nullptr), EventInternalError);
}

} // namespace
} // namespace test
} // namespace orvane
