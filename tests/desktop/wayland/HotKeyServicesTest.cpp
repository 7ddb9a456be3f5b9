// What hot keys make of what the desktop's services answer: by services that stand in for the real ones on a bus of their own.
// The sentence that counts for the user is the statement.
#include "desktop/wayland/HotKeyDesk.h"
#include "hotkeys/HotKeyAdvice.h"
#include "platform/wayland/KeyboardMap.h"
#include "platform/wayland/SwayConfiguration.h"

#include <xkbcommon/xkbcommon-keysyms.h>

namespace orvane::wayland {
namespace {

/// The stand-in, as long as the object lives.
class MockService {
public:
    MockService(const char *kind, const char *mode) : _service(QString::fromLatin1(kind)) {
        _process.start(QStringLiteral("/usr/bin/python3"),
                       {qEnvironmentVariable("ORVANE_TEST_MOCK_SERVICES"), _service, QString::fromLatin1(mode)});
        _process.setReadChannel(QProcess::StandardOutput);
        QElapsedTimer clock;
        clock.start();
        while (!_process.canReadLine() && clock.elapsed() < 10000) {
            _process.waitForReadyRead(100);
        }
        EXPECT_EQ(_process.readLine(), "ready\n") << _process.readAllStandardError().toStdString();
    }
    ~MockService() {
        _process.kill();
        _process.waitForFinished(5000);
    }
    void press() const {
        const QString name =
            _service == QLatin1String("portal") ? QStringLiteral("org.freedesktop.portal.Desktop") : QStringLiteral("org.kde.kglobalaccel");
        outputOf(QStringLiteral("gdbus"),
                 {QStringLiteral("call"), QStringLiteral("--session"), QStringLiteral("--dest"), name, QStringLiteral("--object-path"),
                  QStringLiteral("/test"), QStringLiteral("--method"), QStringLiteral("org.orvane.Test.Press")});
    }

private:
    const QString _service;
    QProcess _process;
};

bool starts(const std::string &text, std::string_view with) {
    return text.substr(0, with.size()) == with;
}

TEST(HotKeyServicesTest, WithoutAnyServiceTheKeyIsRefusedAndTheAdviceSaysWhatToBind) {
    HotKeyDesk desk;
    const EventStatus status = desk.take(HotKeyDesk::H);
    // Where a real portal is installed it answers later that it has none for this desktop.
    EXPECT_TRUE(status == EventInternalError || starts(desk.keys->statement(), "The hot key is asked of the desktop portal"));
    EXPECT_TRUE(HotKeyDesk::waitFor([&] { return desk.keys->statement().ends_with(HotKeyDesk::Advice); }, std::chrono::seconds(30)));
    EXPECT_TRUE(desk.log.has("'orvane menu'"));
}

TEST(HotKeyServicesTest, KGlobalAccelGivesAFreeKey) {
    const MockService mock("kglobalaccel", "free");
    HotKeyDesk desk;
    ASSERT_EQ(desk.take(HotKeyDesk::H), EventNoError);
    EXPECT_EQ(desk.keys->statement(), "The hot key works by KGlobalAccel.");
    mock.press();
    EXPECT_TRUE(HotKeyDesk::waitFor([&] { return desk.releases.size() == 1; }));
    EXPECT_EQ(desk.presses.size(), 1U);
    EXPECT_EQ(desk.keys->unregisterEventHotKey(desk.reference), EventNoError);
    mock.press();
    HotKeyDesk::stay(std::chrono::milliseconds(100));
    EXPECT_EQ(desk.presses.size(), 1U);
}

TEST(HotKeyServicesTest, KGlobalAccelsRefusalIsReportedAtOnceWithTheHolder) {
    const MockService mock("kglobalaccel", "taken");
    HotKeyDesk desk;
    EXPECT_EQ(desk.take(HotKeyDesk::H), EventHotKeyExistsError);
    EXPECT_TRUE(desk.log.has("other.program"));
    EXPECT_EQ(desk.keys->statement(), "The hot key does not work: by KGlobalAccel, another program has that combination.");
}

TEST(HotKeyServicesTest, TheRegistrationIsMadeAgainWhenKGlobalAccelComesBack) {
    HotKeyDesk desk;
    {
        const MockService mock("kglobalaccel", "free");
        ASSERT_EQ(desk.take(HotKeyDesk::H), EventNoError);
    }
    const MockService again("kglobalaccel", "free");
    EXPECT_TRUE(HotKeyDesk::waitFor([&] {
        again.press();
        HotKeyDesk::stay(std::chrono::milliseconds(20));
        return !desk.presses.empty();
    }));
}

TEST(HotKeyServicesTest, AKeyThatWasDownWhenKGlobalAccelEndedIsUpAtItsReturn) {
    HotKeyDesk desk;
    const auto pressUntil = [&](const MockService &mock, auto isDone) {
        return HotKeyDesk::waitFor([&] {
            mock.press();
            HotKeyDesk::stay(std::chrono::milliseconds(20));
            return isDone();
        });
    };
    {
        const MockService mock("kglobalaccel", "free");
        ASSERT_EQ(desk.take(HotKeyDesk::H), EventNoError);
        ASSERT_TRUE(pressUntil(mock, [&] { return !desk.releases.empty(); })); // so releases are told of
    }
    const std::size_t presses = desk.presses.size();
    const std::size_t releases = desk.releases.size();
    ASSERT_EQ(presses, releases);
    {
        const MockService mock("kglobalaccel", "held");
        ASSERT_TRUE(pressUntil(mock, [&] { return desk.presses.size() == presses + 1; }));
        ASSERT_TRUE(pressUntil(mock, [&] { return desk.presses.size() == presses + 1; })); // it repeats
    }
    const MockService again("kglobalaccel", "free");
    ASSERT_TRUE(pressUntil(again, [&] { return desk.releases.size() > releases; }));
    EXPECT_EQ(desk.presses.size(), desk.releases.size() + 1);
}

struct PortalCase {
    const char *mode;
    bool works;
    const char *statement; ///< its beginning
};

class PortalHotKeysTest : public testing::TestWithParam<PortalCase> {};

TEST_P(PortalHotKeysTest, OnlyATriggerCounts) {
    const MockService mock("portal", GetParam().mode);
    HotKeyDesk desk;
    ASSERT_EQ(desk.take(HotKeyDesk::H), EventNoError);
    EXPECT_EQ(desk.keys->statement(), "The hot key is asked of the desktop portal, which has yet to answer.");
    EXPECT_TRUE(HotKeyDesk::waitFor([&] { return starts(desk.keys->statement(), GetParam().statement); })) << desk.keys->statement();
    mock.press();
    if (GetParam().works) {
        EXPECT_TRUE(HotKeyDesk::waitFor([&] { return desk.releases.size() == 1; }));
        EXPECT_EQ(desk.presses.size(), 1U);
    } else {
        HotKeyDesk::stay(std::chrono::milliseconds(100));
        EXPECT_TRUE(desk.presses.empty());
        EXPECT_NE(desk.keys->statement().find("'orvane menu'"), std::string::npos);
    }
    EXPECT_EQ(desk.keys->unregisterEventHotKey(desk.reference), EventNoError);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, PortalHotKeysTest,
    testing::Values(PortalCase{"refuse", false, "the desktop portal gives no hot key (the portal answered 2 to CreateSession)."},
                    PortalCase{"error", false, "the desktop portal gives no hot key (An app id is required)."},
                    PortalCase{"empty", false, "the desktop portal gives no hot key (the portal gave no key)."},
                    PortalCase{"deny", false, "the desktop portal gives no hot key (the portal answered 1 to BindShortcuts)."},
                    PortalCase{"deny2", false, "the desktop portal gives no hot key (the portal answered 2 to BindShortcuts)."},
                    PortalCase{"grant", true, "The hot key works by the desktop portal (CTRL+SHIFT+h)."},
                    PortalCase{"grant2", true, "The hot key works by the desktop portal (CTRL+SHIFT+h)."},
                    PortalCase{"early", true, "The hot key works by the desktop portal (CTRL+SHIFT+h)."}),
    [](const auto &answer) { return std::string(answer.param.mode); });

TEST(KeyboardMapTest, KeysAreThoseOfTheLayout) {
    constexpr std::uint32_t Control = 0x1000;
    constexpr std::uint32_t Shift = 0x0200;
    const KeyboardMap american = KeyboardMap::ofLayout("us");
    const KeyboardMap german = KeyboardMap::ofLayout("de");
    EXPECT_EQ(american.qtKey(0x06, Control), QKeyCombination(Qt::ControlModifier, Qt::Key_Z).toCombined());
    EXPECT_EQ(german.qtKey(0x06, Control), QKeyCombination(Qt::ControlModifier, Qt::Key_Y).toCombined());
    EXPECT_EQ(american.qtKey(0x13, Control | Shift), QKeyCombination(Qt::ControlModifier, Qt::Key_At).toCombined());
    EXPECT_EQ(german.qtKey(0x13, Control | Shift), QKeyCombination(Qt::ControlModifier, Qt::Key_QuoteDbl).toCombined());
    EXPECT_EQ(german.qtKey(0x29, Control), QKeyCombination(Qt::ControlModifier, Qt::Key_Odiaeresis).toCombined());
    EXPECT_EQ(american.qtKey(0x65, 0x0100 | 0x0800 | Shift),
              QKeyCombination(Qt::MetaModifier | Qt::AltModifier | Qt::ShiftModifier, Qt::Key_F9).toCombined());
    EXPECT_EQ(american.qtKey(0x53, Control), QKeyCombination(Qt::ControlModifier, Qt::Key_1).toCombined()); // keypad
    EXPECT_EQ(american.qtKey(0x31, Control | Shift), QKeyCombination(Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_Space).toCombined());
    EXPECT_EQ(american.qtKey(0x7F, Control), std::nullopt);
    EXPECT_EQ(german.portalTrigger(0x06, Control | Shift), "CTRL+SHIFT+y");
}

TEST(KeyboardMapTest, KeysOfAllLayoutsCountOnceAndTheFirstLayoutsComeFirst) {
    constexpr std::uint32_t Control = 0x1000;
    const auto with = [](int key) { return Qt::ControlModifier | static_cast<Qt::Key>(key); };
    const KeyboardMap map = KeyboardMap::ofLayout("us,de,ru,fr");
    EXPECT_EQ(map.qtKeys(0x06, Control), (std::vector<int>{with(Qt::Key_Z).toCombined(), with(Qt::Key_Y).toCombined(),
                                                           with(0x042F).toCombined(), with(Qt::Key_W).toCombined()}));
    EXPECT_EQ(map.qtKeys(0x65, Control), std::vector<int>{with(Qt::Key_F9).toCombined()});
    EXPECT_TRUE(map.qtKeys(0x7F, Control).empty());
}

TEST(SwayConfigurationTest, FindsBindingsHoweverTheyAreWritten) {
    SwayModifiers modifiers;
    modifiers.hasControl = modifiers.hasShift = true;
    const auto binds = [&modifiers](std::string_view text) { return SwayConfigurationBinds(text, modifiers, 43, XKB_KEY_h); };
    EXPECT_TRUE(binds("bindsym Ctrl+Shift+h exec foot"));
    EXPECT_TRUE(binds("  bindsym --to-code shift+CONTROL+H exec foot\n"));
    EXPECT_TRUE(binds("bindcode Ctrl+Shift+43 nop"));
    EXPECT_TRUE(binds("set $a Ctrl\nset $ab Shift\nbindsym $a+$ab+h nop"));
    EXPECT_TRUE(binds("bindsym {\n  Ctrl+Shift+h nop\n}"));
    EXPECT_FALSE(binds("# bindsym Ctrl+Shift+h nop"));
    EXPECT_FALSE(binds("bindsym --release Ctrl+Shift+h nop"));
    EXPECT_FALSE(binds("bindsym Ctrl+h nop"));
    EXPECT_FALSE(binds("bindsym Ctrl+Shift+Mod4+h nop"));
    EXPECT_FALSE(binds("bindcode Ctrl+Shift+44 nop"));
    EXPECT_FALSE(binds("mode resize {\n bindsym Ctrl+Shift+h nop\n}"));
    EXPECT_FALSE(binds("bindsym\nbindsym Ctrl+Shift+\nset $x\n}\n}{"));
    EXPECT_FALSE(binds(""));
}

TEST(HotKeyAdviceTest, NamesTheCommandAndWhereToBindItOnEachDesktop) {
    for (const auto &[desktop, words] : {std::pair{"ubuntu:GNOME", "gsettings set"}, std::pair{"KDE", "System Settings"},
                                         std::pair{"sway", "bindsym Ctrl+Shift+h exec orvane menu"}, std::pair{"weston", "weston.ini"},
                                         std::pair{"", "compositor's configuration"}}) {
        const std::string advice = ORVHotKeyAdvice(desktop);
        EXPECT_NE(advice.find(words), std::string::npos) << advice;
        EXPECT_NE(advice.find("orvane menu"), std::string::npos) << advice;
    }
    EXPECT_NE(ORVHotKeyAdvice("sway", "/opt/orvane menu").find("exec /opt/orvane menu"), std::string::npos);
}

} // namespace
} // namespace orvane::wayland
