// The built program `orvane-settings`: one window for all starts, told of by the session bus.

#include "SettingsWindowDesk.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusReply>
#include <QProcess>
#include <QVariantMap>

#include <cstddef>
#include <filesystem>

namespace orvane::test {
namespace {

using Labels = std::vector<std::string>;

class SettingsStartTest : public SettingsWindowTest {
protected:
    SettingsStartTest() { writePresets({"One"}); }
    ~SettingsStartTest() override {
        program.kill();
        program.waitForFinished(20000);
    }

    void startProgram(const QStringList &arguments = {}) {
        program.start(QtTextOf(environment("ORVANE_TEST_SETTINGS")), arguments);
        ASSERT_TRUE(program.waitForStarted(20000));
        ASSERT_TRUE(waitUntil([] { return outputOf("xdotool search --onlyvisible --name '^Orvane Settings$' | wc -l") == "1"; }));
        ASSERT_TRUE(waitUntil(
            [] { return QDBusConnection::sessionBus().interface()->isServiceRegistered(QStringLiteral("org.orvane.Settings")).value(); }));
    }
    /// Its windows' numbers.
    [[nodiscard]] static std::string windows() { return outputOf("xdotool search --onlyvisible --name '^Orvane Settings$'"); }
    [[nodiscard]] static bool isInFront() { return std::to_string(activeWindow()) == windows(); }
    [[nodiscard]] static QDBusInterface service() {
        return {QStringLiteral("org.orvane.Settings"), QStringLiteral("/org/orvane/Settings"),
                QStringLiteral("org.freedesktop.Application")};
    }

    QProcess program;
};

TEST_F(SettingsStartTest, ASecondStartBringsTheFirstWindowToTheFrontAndEnds) {
    startProgram();
    ASSERT_TRUE(waitUntil(isInFront));
    const OtherProgram other;
    ASSERT_TRUE(waitUntil([&] { return other.isActive(); }));
    QProcess second;
    second.start(QtTextOf(environment("ORVANE_TEST_SETTINGS")), QStringList());
    ASSERT_TRUE(second.waitForFinished(20000));
    EXPECT_EQ(second.exitCode(), 0) << second.readAllStandardError().toStdString();
    EXPECT_TRUE(waitUntil(isInFront));
}

TEST_F(SettingsStartTest, FilesOfASecondStartAreAddedInTheFirst) {
    startProgram();
    QProcess second;
    second.start(QtTextOf(environment("ORVANE_TEST_SETTINGS")),
                 {QtTextOf(paths.resourceFolder + "/presets/film-production/film-production.orvpreset")});
    ASSERT_TRUE(second.waitForFinished(20000));
    EXPECT_EQ(second.exitCode(), 0) << second.readAllStandardError().toStdString();
    EXPECT_TRUE(waitUntil([this] { return diskLabels() == Labels{"One", "Film production"}; }));
}

TEST_F(SettingsStartTest, TheHelpersWishShowsTheWindowAndQuitEndsIt) {
    startProgram();
    const OtherProgram other;
    ASSERT_TRUE(waitUntil([&] { return other.isActive(); }));
    QDBusInterface settings = service();
    const QVariantList pane{QStringLiteral("org.orvane.ORVPrefPane")};
    EXPECT_EQ(settings.call(QStringLiteral("ActivateAction"), QStringLiteral("show-pane"), pane, QVariantMap()).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_TRUE(waitUntil(isInFront));
    EXPECT_EQ(settings.call(QStringLiteral("ActivateAction"), QStringLiteral("no-such"), QVariantList(), QVariantMap()).type(),
              QDBusMessage::ErrorMessage);
    settings.call(QStringLiteral("ActivateAction"), QStringLiteral("quit"), QVariantList(), QVariantMap());
    EXPECT_TRUE(waitUntil([this] { return program.state() == QProcess::NotRunning; }));
    EXPECT_EQ(program.exitCode(), 0);
}

TEST_F(SettingsStartTest, WhatItKeepsIsForTheUserAlone) {
    startProgram();
    QDBusInterface settings = service();
    settings.call(QStringLiteral("ActivateAction"), QStringLiteral("quit"), QVariantList(), QVariantMap());
    ASSERT_TRUE(waitUntil([this] { return program.state() == QProcess::NotRunning; }));
    EXPECT_EQ(std::filesystem::status(paths.stateFolder).permissions(), std::filesystem::perms::owner_all);
    std::size_t files = 0;
    for (const auto &each : std::filesystem::directory_iterator(paths.stateFolder)) {
        using std::filesystem::perms;
        EXPECT_EQ(each.status().permissions(), perms::owner_read | perms::owner_write) << each.path();
        ++files;
    }
    EXPECT_GT(files, 0U);
}

TEST_F(SettingsStartTest, HelpAndVersionNeedNoDisplay) {
    for (const char *option : {"--help", "--version"}) {
        QProcess asked;
        QProcessEnvironment bare;
        bare.insert(QStringLiteral("HOME"), QtTextOf(path("")));
        asked.setProcessEnvironment(bare);
        asked.start(QtTextOf(environment("ORVANE_TEST_SETTINGS")), {QString::fromLatin1(option)});
        ASSERT_TRUE(asked.waitForFinished(20000));
        EXPECT_EQ(asked.exitCode(), 0);
        EXPECT_TRUE(asked.readAllStandardOutput().contains("orvane-settings"));
    }
}

} // namespace
} // namespace orvane::test
