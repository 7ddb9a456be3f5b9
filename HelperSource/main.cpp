#include "ORVHelperAppDelegate.h"
#include "hotkeys/HotKeyController.h"
#include "menubar/MenuBarController.h"
#include "platform/filemanagers/ActiveApplication.h"
#include "platform/filemanagers/DesktopFrontWindow.h"
#include "platform/filemanagers/HandedOverFolder.h"
#include "platform/posix/PosixClock.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixPreferencesStore.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "platform/posix/PosixSystemLog.h"
#include "platform/posix/PosixThreadLauncher.h"
#include "platform/posix/PosixUserFolders.h"
#include "platform/posix/UnistringTextCase.h"
#include "platform/qt/QtAlerts.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/QtCreationProgress.h"
#include "platform/qt/QtMainInterface.h"
#include "platform/qt/QtMainThread.h"
#include "platform/qt/QtMenuView.h"
#include "platform/qt/QtOpenPanel.h"
#include "platform/qt/QtPopUpMenus.h"
#include "platform/qt/QtProgressWindow.h"
#include "platform/qt/QtPromptInterface.h"
#include "platform/qt/QtReferenceWindow.h"
#include "platform/qt/QtResources.h"
#include "platform/qt/QtTermination.h"
#include "platform/qt/QtX11Events.h"
#include "platform/qtdbus/DesktopWorkspace.h"
#include "platform/qtdbus/QtDBusNotifications.h"
#include "platform/qtdbus/QtDBusServices.h"
#include "platform/qtdbus/QtDBusSession.h"
#include "platform/qtdbus/QtDBusStatusBar.h"
#include "platform/qtdbus/QtDBusSystemPreferences.h"
#include "platform/qtdbus/QtXEmbedStatusItem.h"
#include "platform/wayland/WaylandPopUpMenus.h"
#include "platform/x11/X11HotKeyEvents.h"
#include "platform/x11/X11Keyboard.h"
#include "presets/ORVPresetManager.h"

#include <QApplication>
#include <QCoreApplication>
#include <QMenu>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <unistd.h>

// `orvane-helper`: makes every adapter, connects the core to them and runs the event loop. Nothing else knows all of them.

namespace {

using namespace orvane;

/// Makes the program the window that a long creation shows; for itself only.
constexpr const char *ProgressWindowOption = "--progress-window";
constexpr const char *Usage =
    "Usage: orvane-helper [--help | --version]\n\n"
    "Shows the preset menu in the status bar, at the hot key, and to other programs. Runs until it is told to quit.\n"
    "A second start shows the menu of the one that is running.\n";

/// Notes a broken invariant and gives up what was being done.
class LoggedAssertions final : public AssertionHandler {
public:
    explicit LoggedAssertions(SystemLog &log) : _log(log) {}

    void handleFailureInMethod(std::string_view method, const void * /*object*/, std::string_view file, int lineNumber,
                               std::string_view description) override {
        std::string text = "*** Assertion failure in ";
        text.append(method).append(", ").append(file).append(":").append(std::to_string(lineNumber)).append(" ").append(description);
        _log.log(text);
        throw AssertionFailure(text);
    }

private:
    SystemLog &_log;
};

/// A view of the menu that lives as long as what is handed out of it.
std::shared_ptr<QMenu> viewOfMenu(Menu &menu) {
    auto view = std::make_shared<QtMenuView>(menu);
    QMenu *const shown = &view->menu();
    return {std::move(view), shown};
}

/// For window systems that give no hot keys: every registration is refused.
class NullHotKeyEvents final : public HotKeyEvents {
public:
    EventStatus registerEventHotKey(std::uint32_t, std::uint32_t, EventHotKeyID, EventTargetRef, std::uint32_t, EventHotKeyRef &) override {
        return EventInternalError;
    }
    EventStatus unregisterEventHotKey(EventHotKeyRef) override { return EventInternalError; }
    EventTargetRef getEventDispatcherTarget() override { return this; }
    EventStatus installEventHandler(EventTargetRef, EventHandler, std::span<const EventTypeSpec>, void *) override { return EventNoError; }
};

/// Hot keys as the window system gives them.
class DesktopHotKeys {
public:
    explicit DesktopHotKeys(SystemLog &log) {
        if (xcb_connection_t *connection = QtX11Events::connection(); connection != nullptr) {
            _keyboard = X11Keyboard::create(connection);
        }
        if (_keyboard != nullptr) {
            auto grabs = std::make_unique<X11HotKeyEvents>(*_keyboard, log);
            _filter.emplace([hotKeys = grabs.get()](const xcb_generic_event_t &event) { return hotKeys->handleEvent(event); });
            _events = std::move(grabs);
        } else {
            log.log("hot keys are not available on this window system; bind a key to the command: orvane menu");
            _events = std::make_unique<NullHotKeyEvents>();
        }
    }

    [[nodiscard]] HotKeyEvents &events() { return *_events; }

private:
    std::unique_ptr<X11Keyboard> _keyboard;
    std::unique_ptr<HotKeyEvents> _events;
    std::optional<QtX11Events> _filter;
};

/// The program: adapters first, in the order in which they need each other, then the core.
class Helper {
public:
    Helper(QtApplication &application, std::string resourceFolder) : _application(application), _resources(std::move(resourceFolder)) {
        ORVPresetManager::setSharedPorts(&_managerPorts);
        SGHotKeyCenter::setSharedPorts(&_hotKeyPorts);
        _hotKeyController.emplace(HotKeyControllerPorts{_notifications, *_popUpMenus, _preferences, *SGHotKeyCenter::sharedCenter()});
        _hotKeyController->setWindow(&_window);
        _hotKeyController->setPopupMenu(&_menu);
        _delegate.setWindow(&_window);
        _delegate.setMenubarController(&_menuBarController);
        _delegate.setHotkeyController(&*_hotKeyController);
    }
    Helper(const Helper &) = delete;
    Helper &operator=(const Helper &) = delete;
    ~Helper() = delete;

    int run() {
        if (!_services.claimName()) {
            return _showMenuOfOther();
        }
        if (!_loadMainInterface()) {
            return EXIT_FAILURE;
        }
        const QtTermination termination(_application);
        _menuBarController.awakeFromNib();
        _hotKeyController->awakeFromNib();
        _delegate.applicationDidFinishLaunching();
        return _application.run();
    }

    /// Takes back what others would go on seeing: the hot key and the status item.
    void giveBack() {
        _services.setServicesProvider(nullptr);
        _delegate.setHotkeyController(nullptr);
        _hotKeyController.reset();
        _statusBar.removeStatusItem(_menuBarController.statusItem());
        _session.close();
    }

private:
    int _showMenuOfOther() {
        if (_services.activateOther()) {
            return EXIT_SUCCESS;
        }
        std::fputs("orvane-helper: it is running already, but does not answer\n", stderr);
        return EXIT_FAILURE;
    }

    bool _loadMainInterface() {
        const QtMainInterface::Actions actions = {
            {"showPreferences:", [this](const MenuItem &sender) { _menuBarController.showPreferences(sender); }},
            {"terminate:", [this](const MenuItem &) { _application.quit(); }},
        };
        std::string why;
        if (!QtMainInterface::load(_resources.path("MainMenu.ui"), _menu, actions, why)) {
            std::fprintf(stderr, "orvane-helper: the main interface cannot be loaded: %s\n", why.c_str());
            _log.log("the main interface cannot be loaded: " + why);
            return false;
        }
        return true;
    }

    std::unique_ptr<PopUpMenus> _makePopUpMenus() {
        if (QtX11Events::connection() != nullptr) {
            return std::make_unique<QtPopUpMenus>(_application);
        }
        return makeWaylandPopUpMenus(
            _application, [this] { _activeApplication->noteNow(); }, _log);
    }

    /// Hands a tray item of the older kind to the status bar, where there is such a tray.
    QtDBusStatusBarOptions _statusBarOptions() {
        QtDBusStatusBarOptions options;
        options.resourceFolder = _resources.folder();
        options.toolTip = QCoreApplication::translate("Orvane", "Make a folder from a preset");
        options.makeFallbackItem = [this] { return QtXEmbedStatusItem::make(_resources.folder(), viewOfMenu); };
        options.fallbackIsAvailable = QtXEmbedStatusItem::isAvailable;
        options.statusBarIsMissing = [this] {
            _log.log("this desktop has no status bar (no StatusNotifierItem host and no XEmbed tray); the menu comes up with the hot "
                     "key, with 'orvane menu' and from the file manager's context menu");
        };
        return options;
    }

    QtDBusServices::Hooks _serviceHooks() {
        QtDBusServices::Hooks hooks;
        hooks.useFolder = [this](const std::string &folder) {
            if (!_handedOverFolder.setFolder(folder)) {
                _log.log("a request names a folder that is none: " + folder);
            }
        };
        hooks.requestDone = [this] { _handedOverFolder.clear(); };
        hooks.showPreferences = [this] { _menuBarController.showPreferences({}); };
        hooks.quit = [this] { _application.quit(); };
        hooks.isBusy = [] { return QtApplication::modalWindow() != nullptr || QApplication::activePopupWidget() != nullptr; };
        return hooks;
    }

    QtApplication &_application;
    QtResources _resources;

    // Adapters.
    PosixUserFolders _folders;
    PosixSystemLog _log{_folders.stateDirectory()};
    PosixPreferencesStore _preferences{_folders.preferencesFile(), _folders.stateDirectory() + "/preferences.lock", _log};
    PosixClock _clock;
    PosixFileSystem _fileSystem;
    PosixProcessLauncher _processes;
    PosixThreadLauncher _threads;
    UnistringTextCase _textCase;
    LoggedAssertions _assertions{_log};
    QtMainThread _mainThread;
    QtAlerts _alerts{_application, _mainThread};
    QtPromptInterface _promptInterface{_application, _resources.folder()};
    QtOpenPanel _openPanel{_application, _folders.stateDirectory() + "/parent-folder"};
    QtCreationProgress _progress{{"/proc/self/exe", ProgressWindowOption}};
    QtReferenceWindow _window;
    DesktopHotKeys _hotKeys{_log};
    QtDBusSession _session{&_log};
    QtDBusNotifications _notifications{_session};
    QtDBusStatusBar _statusBar{_statusBarOptions()};
    QtDBusSystemPreferences _systemPreferences{_session, _log};
    DesktopWorkspace _workspace{_session, _log};
    std::unique_ptr<ActiveApplication> _activeApplication = makeActiveApplication(_log);
    DesktopFrontWindow _frontWindow{*_activeApplication, _log};
    HandedOverFolder _handedOverFolder{_frontWindow};
    std::unique_ptr<PopUpMenus> _popUpMenus = _makePopUpMenus();
    QtDBusServices _services{_session, _log, _serviceHooks()};

    // The core.
    const ORVPresetManagerPorts _managerPorts{_alerts,          _application, _clock,  _notifications, _fileSystem, _mainThread,
                                              _preferences,     _processes,   _log,    _textCase,      _threads,    _folders,
                                              _promptInterface, _workspace,   nullptr, &_progress};
    Menu _menu;
    MenuBarController _menuBarController{{_application, _notifications, _handedOverFolder, _openPanel, _preferences, _statusBar, _log,
                                          _systemPreferences, ORVPresetManager::sharedManager},
                                         _menu};
    const SGHotKeyCenterPorts _hotKeyPorts{_assertions, _hotKeys.events()};
    std::optional<HotKeyController> _hotKeyController;
    ORVHelperAppDelegate _delegate{_services};
};

/// Answers the options that need no display; nothing when the program is to run.
std::optional<int> answerOptions(std::span<char *const> words) {
    if (words.size() < 2) {
        return std::nullopt;
    }
    const std::string_view option = words[1];
    if (words.size() == 2 && option == "--help") {
        std::fputs(Usage, stdout);
        return EXIT_SUCCESS;
    }
    if (words.size() == 2 && option == "--version") {
        std::puts("orvane-helper " ORVANE_VERSION);
        return EXIT_SUCCESS;
    }
    std::fprintf(stderr, "orvane-helper: what is '%s'?\n%s", words[words.size() - 1], Usage);
    return 2;
}

} // namespace

int main(int count, char **words) {
    if (count == 2 && std::string_view(words[1]) == ProgressWindowOption) {
        return QtRunProgressWindow(count, words, STDIN_FILENO);
    }
    QtApplication application(count, words); // takes its own options, such as -platform, out of the words
    if (const auto status = answerOptions({words, static_cast<std::size_t>(count)})) {
        return *status;
    }
    prepareWaylandPopUpMenus();
    if (!application.load()) {
        std::fputs("orvane-helper: there is no display that it could use\n", stderr);
        return EXIT_FAILURE;
    }
    // Never destroyed: a script's thread may be at work with it until the very end.
    auto *const helper = new Helper(application, QtResources::folderOfProgram());
    const int status = helper->run();
    helper->giveBack();
    std::fflush(nullptr);
    std::_Exit(status);
}
