#include "window/SettingsAdapters.h"
#include "window/SettingsApplication.h"
#include "window/SettingsModels.h"
#include "window/SettingsWindow.h"

#include "hotkeys/SGKeyCombo.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/QtResources.h"
#include "platform/qt/QtTranslations.h"
#include "platform/qt/QtX11Events.h"
#include "platform/qtdbus/DesktopWorkspace.h"
#include "platform/qtdbus/DetachedProgram.h"
#include "platform/qtdbus/QtDBusNotifications.h"
#include "platform/qtdbus/QtDBusSession.h"
#include "platform/wayland/WaylandKeyboardLayouts.h"
#include "platform/x11/X11HotKeyEvents.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11KeyboardLayouts.h"
#include "wiring/LoggedAssertions.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIcon>
#include <QStringList>
#include <QUrl>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// `orvane-settings`: makes every adapter, puts the models and the window over them, and runs the event loop.

namespace {

using namespace orvane;

constexpr const char *Usage = "Usage: orvane-settings [FILE | FOLDER]...\n"
                              "       orvane-settings --help | --version\n\n"
                              "Makes and changes the presets of Orvane, and its settings. Preset files are added, folders are imported.\n"
                              "A second start shows the window of the one that is running.\n";

/// Hot keys and keyboard as X11 gives them; the keyboard alone on Wayland, where the helper takes the key if anybody may; nothing of
/// either elsewhere.
class DesktopKeys {
public:
    DesktopKeys(QtDBusSession &session, SystemLog &log) {
        if (xcb_connection_t *connection = QtX11Events::connection(); connection != nullptr) {
            _keyboard = X11Keyboard::create(connection);
        }
        if (_keyboard == nullptr && QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
            _layouts = std::make_unique<WaylandKeyboardLayouts>(&session);
        } else if (_keyboard != nullptr) {
            _layouts = std::make_unique<X11KeyboardLayouts>(*_keyboard);
            _events = std::make_unique<X11HotKeyEvents>(*_keyboard, log);
            _filter.emplace([hotKeys = _events.get()](const xcb_generic_event_t &event) { return hotKeys->handleEvent(event); });
        }
    }
    [[nodiscard]] HotKeyEvents *events() { return _events.get(); }
    [[nodiscard]] KeyboardLayouts *layouts() { return _layouts.get(); }

private:
    std::unique_ptr<X11Keyboard> _keyboard;
    std::unique_ptr<KeyboardLayouts> _layouts;
    std::unique_ptr<X11HotKeyEvents> _events;
    std::optional<QtX11Events> _filter;
};

/// Names of keys by this keyboard, where there is one that tells.
class KeyNames {
public:
    KeyNames(KeyboardLayouts *layouts, SystemLog &log, std::string resourceFolder)
        : _assertions(log), _resources(std::move(resourceFolder)) {
        if (layouts != nullptr) {
            _ports.emplace(SGKeyComboPorts{_assertions, *layouts, _resources, _textCase});
            SGKeyCombo::setSharedPorts(&*_ports);
        }
    }
    KeyNames(const KeyNames &) = delete;
    KeyNames &operator=(const KeyNames &) = delete;
    ~KeyNames() { SGKeyCombo::setSharedPorts(nullptr); }

private:
    LoggedAssertions _assertions;
    QtResources _resources;
    UnistringTextCase _textCase;
    std::optional<SGKeyComboPorts> _ports;
};

/// Answers the options that need no display; nothing when the program is to run.
std::optional<int> answerOptions(std::span<char *const> words) {
    const std::string_view option = words.size() > 1 ? words[1] : "";
    if (words.size() == 2 && option == "--help") {
        std::fputs(Usage, stdout);
        return EXIT_SUCCESS;
    }
    if (words.size() == 2 && option == "--version") {
        std::puts("orvane-settings " ORVANE_VERSION);
        return EXIT_SUCCESS;
    }
    if (option.size() > 1 && option.front() == '-' && option != "--") {
        std::fprintf(stderr, "orvane-settings: what is '%s'?\n%s", words[1], Usage);
        return 2;
    }
    return std::nullopt;
}

/// What the words name, as absolute paths; file URLs may stand there, too.
QStringList pathsOf(std::span<char *const> words) {
    QStringList paths;
    for (char *const word : words.subspan(words.empty() ? 0 : 1)) {
        if (std::string_view(word) == "--") {
            continue;
        }
        const QString text = QFile::decodeName(word);
        const QUrl url(text);
        paths.append(url.isLocalFile() ? url.toLocalFile() : QFileInfo(text).absoluteFilePath());
    }
    return paths;
}

int run(QtApplication &application, const QStringList &paths) {
    const std::string resources = QtResources::folderOfProgram();
    QtInstallTranslations(resources);
    QGuiApplication::setWindowIcon(QtProgramIcon(resources));
    SettingsPaths folders = SettingsAdapters::pathsOfUser(resources);
    PosixSystemLog log(folders.stateFolder);
    QtDBusSession session(&log);
    SettingsWindow *shown = nullptr;
    SettingsApplication service(session, {[&] {
                                              if (shown != nullptr) {
                                                  application.bringToFront(*shown);
                                              }
                                          },
                                          [&](const QStringList &more) {
                                              if (shown != nullptr) {
                                                  shown->openPaths(more);
                                              }
                                          },
                                          [&] {
                                              if (shown != nullptr) {
                                                  shown->close();
                                              }
                                          }});
    if (!service.claimName()) {
        if (service.handOver(paths)) {
            return EXIT_SUCCESS;
        }
        std::fputs("orvane-settings: it is running already, but does not answer\n", stderr);
        return EXIT_FAILURE;
    }
    QtDBusNotifications notifications(session);
    DesktopWorkspace workspace(session, log);
    const QString known = programOfOurs(QStringLiteral("orvane-helper"), QStringLiteral("HelperSource"));
    const std::string helper = known.isEmpty() ? "orvane-helper" : QFile::encodeName(known).toStdString();
    SettingsAdapters adapters(std::move(folders), notifications, workspace, helper);
    DesktopKeys keys(session, adapters.log());
    const KeyNames keyNames(keys.layouts(), adapters.log(), resources);
    SettingsPorts ports = adapters.ports();
    ports.hotKeyEvents = keys.events();
    ports.keyboardLayouts = keys.layouts();
    SettingsModels models(ports, adapters.paths());
    SettingsWindow window(models.context());
    shown = &window;
    window.show();
    window.openPaths(paths);
    const int status = application.run();
    session.close();
    return status;
}

} // namespace

int main(int count, char **words) {
    std::signal(SIGXFSZ, SIG_IGN);           // a file over the limit is a failing call like any other
    QtApplication application(count, words); // takes its own options, such as -platform, out of the words
    const std::span<char *const> all(words, static_cast<std::size_t>(count));
    if (const auto status = answerOptions(all)) {
        return *status;
    }
    if (!application.load()) {
        std::fputs("orvane-settings: there is no display that it could use\n", stderr);
        return EXIT_FAILURE;
    }
    QGuiApplication::setDesktopFileName(QStringLiteral("org.orvane.Settings"));
    QGuiApplication::setQuitOnLastWindowClosed(true);
    return run(application, pathsOf({words, static_cast<std::size_t>(count)}));
}
