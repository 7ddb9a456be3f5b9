#include "ORVHelperAppDelegate.h"
#include "hotkeys/HotKeyController.h"
#include "menubar/MenuBarController.h"
#include "platform/filemanagers/DesktopFrontWindow.h"
#include "platform/filemanagers/HandedOverFolder.h"
#include "platform/posix/PosixClock.h"
#include "platform/posix/PosixCreationJournal.h"
#include "platform/posix/PosixCreationRecovery.h"
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
#include "platform/qt/QtProgressWindow.h"
#include "platform/qt/QtPromptInterface.h"
#include "platform/qt/QtReferenceWindow.h"
#include "platform/qt/QtRemainsOffer.h"
#include "platform/qt/QtResources.h"
#include "platform/qt/QtTermination.h"
#include "platform/qt/QtTranslations.h"
#include "platform/qt/QtUnblockedTray.h"
#include "platform/qtdbus/DesktopWorkspace.h"
#include "platform/qtdbus/DetachedProgram.h"
#include "platform/qtdbus/QtDBusNotifications.h"
#include "platform/qtdbus/QtDBusServices.h"
#include "platform/qtdbus/QtDBusSession.h"
#include "platform/qtdbus/QtDBusStatusBar.h"
#include "platform/qtdbus/QtDBusSystemPreferences.h"
#include "platform/qtdbus/QtXEmbedStatusItem.h"
#include "platform/wayland/WaylandPopUpMenus.h"
#include "presets/ORVJournaledFileSystem.h"
#include "presets/ORVPresetManager.h"
#include "wiring/DesktopHotKeys.h"
#include "wiring/DesktopSession.h"
#include "wiring/LoggedAssertions.h"
#include "wiring/MissingStatusBar.h"
#include "wiring/UnfinishedCreations.h"

#include <QApplication>
#include <QCoreApplication>
#include <QMenu>
#include <QTimer>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
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
/// From the start; the icon and the hot key are there by then, and a desktop that is just starting up has had its turn.
constexpr std::chrono::seconds TimeBeforeLookingForRemains{1};
constexpr const char *Usage =
    "Usage: orvane-helper [--help | --version]\n\n"
    "Shows the preset menu in the status bar, at the hot key, and to other programs. Runs until it is told to quit.\n"
    "A second start shows the menu of the one that is running.\n";

/// A view of the menu that lives as long as what is handed out of it.
std::shared_ptr<QMenu> viewOfMenu(Menu &menu, std::function<bool(const MenuItem &)> mayPerform) {
    auto view = std::make_shared<QtMenuView>(menu);
    view->setMayPerform(std::move(mayPerform));
    QMenu *const shown = &view->menu();
    return {std::move(view), shown};
}

/// The program: adapters first, in the order in which they need each other, then the core.
class Helper {
public:
    Helper(QtApplication &application, std::string resourceFolder) : _application(application), _resources(std::move(resourceFolder)) {
        _application.setResourceFolder(_resources.folder());
        _disk.setLog(_log);
        ORVPresetManager::setSharedPorts(&_managerPorts);
        SGHotKeyCenter::setSharedPorts(&_hotKeys.centerPorts());
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
        const QtTermination termination(_application, [this] { return _progress.nodes(); });
        _menuBarController.awakeFromNib();
        _hotKeyController->awakeFromNib();
        _delegate.applicationDidFinishLaunching();
        QTimer::singleShot(TimeBeforeLookingForRemains, &_remainsOffer, [this] { _lookForRemains(); });
        return _application.run();
    }

    /// Takes back what others would go on seeing: the hot key and the status item.
    void giveBack() {
        _services.setServicesProvider(nullptr);
        _delegate.setHotkeyController(nullptr);
        _hotKeyController.reset();
        _hotKeys.takeStatementBack();
        _statusBar.removeStatusItem(_menuBarController.statusItem());
        _session.close();
    }

private:
    /// Creations that were killed half-way.
    void _lookForRemains() {
        if (_recovery.mayHaveRemains()) {
            _unfinishedCreations.look();
        }
    }

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

    /// Whether an item that was chosen in the status bar is to be performed. While a window of ours waits for its answer a preset is
    /// not: that window comes to the front instead. Everything else goes on, ending the program above all.
    bool _mayPerform(const MenuItem &item) {
        if (item.tag != ORVPresetItemTag || QtApplication::modalWindow() == nullptr) {
            return true;
        }
        _showWhatIsOpen();
        return false;
    }

    void _showWhatIsOpen() {
        if (QWidget *const asking = QtApplication::modalWindow()) {
            _application.bringToFront(*asking);
        }
    }

    /// Hands a tray item of the older kind to the status bar, where there is such a tray.
    QtDBusStatusBarOptions _statusBarOptions() {
        QtDBusStatusBarOptions options;
        options.resourceFolder = _resources.folder();
        options.toolTip = QCoreApplication::translate("Orvane", "Make a folder from a preset");
        const auto mayPerform = [this](const MenuItem &item) { return _mayPerform(item); };
        options.mayRun = mayPerform;
        options.makeFallbackItem = [this, mayPerform] {
            return QtXEmbedStatusItem::make(_resources.folder(), [mayPerform](Menu &menu) { return viewOfMenu(menu, mayPerform); });
        };
        options.fallbackIsAvailable = QtXEmbedStatusItem::isAvailable;
        options.statusBarIsMissing = [this] { _missingStatusBar.tell(); };
        return options;
    }

    UnfinishedCreationsOffer _offerOfRemains() {
        return {[this](const auto &remains, auto answered) { _remainsOffer.offer(remains, std::move(answered)); },
                [this](const RemainsRemoval &removal) { _remainsOffer.showRemoval(removal); }};
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
        hooks.showWhatIsOpen = [this] { _showWhatIsOpen(); };
        return hooks;
    }

    QtApplication &_application;
    QtResources _resources;

    // Adapters.
    PosixUserFolders _folders;
    PosixSystemLog _log{_folders.stateDirectory()};
    PosixPreferencesStore _preferences{_folders.preferencesFile(), _folders.stateDirectory() + "/preferences.lock", _log};
    PosixClock _clock;
    PosixFileSystem _disk;
    PosixCreationJournal _journal{PosixCreationJournal::usualDirectory()};
    ORVJournaledFileSystem _fileSystem{_disk, _journal};
    PosixCreationRecovery _recovery{PosixCreationJournal::usualDirectory()};
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
    QtRemainsOffer _remainsOffer{_application};
    UnfinishedCreations _unfinishedCreations{_recovery, _threads, _mainThread, _log, _offerOfRemains()};
    QtUnblockedTray _unblockedTray;
    QtDBusSession _session{&_log};
    DesktopHotKeys _hotKeys{{_session, _log, _assertions, _resources, _textCase, _folders.stateDirectory()}};
    QtDBusNotifications _notifications{_session};
    MissingStatusBar _missingStatusBar{_session, _log, _folders.stateDirectory()};
    QtDBusStatusBar _statusBar{_statusBarOptions()};
    QtDBusSystemPreferences _systemPreferences{_session, _log,
                                               programOfOurs(QStringLiteral("orvane-settings"), QStringLiteral("PreferencePane"))};
    DesktopWorkspace _workspace{_session, _log};
    std::unique_ptr<ActiveApplication> _activeApplication = makeDesktopActiveApplication(_log);
    DesktopFrontWindow _frontWindow{*_activeApplication, _log};
    HandedOverFolder _handedOverFolder{_frontWindow};
    std::unique_ptr<PopUpMenus> _popUpMenus = makeDesktopPopUpMenus(_application, *_activeApplication, _log);
    QtDBusServices _services{_session, _log, _serviceHooks()};

    // The core.
    const ORVPresetManagerPorts _managerPorts{_alerts,          _application, _clock,  _notifications, _fileSystem, _mainThread,
                                              _preferences,     _processes,   _log,    _textCase,      _threads,    _folders,
                                              _promptInterface, _workspace,   nullptr, &_progress};
    Menu _menu;
    MenuBarController _menuBarController{{_application, _notifications, _handedOverFolder, _openPanel, _preferences, _statusBar, _log,
                                          _systemPreferences, ORVPresetManager::sharedManager},
                                         _menu};
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
    const bool isKnown = option == "--help" || option == "--version"; // but takes nothing behind it
    std::fprintf(stderr, "orvane-helper: what is '%s'?\n%s", words[isKnown ? 2 : 1], Usage);
    return 2;
}

} // namespace

int main(int count, char **words) {
    if (count == 2 && std::string_view(words[1]) == ProgressWindowOption) {
        return QtRunProgressWindow(count, words, STDIN_FILENO);
    }
    std::signal(SIGXFSZ, SIG_IGN);           // a file over the limit is a failing call like any other; scripts get the usual action back
    QtApplication application(count, words); // takes its own options, such as -platform, out of the words
    if (const auto status = answerOptions({words, static_cast<std::size_t>(count)})) {
        return *status;
    }
    prepareWaylandPopUpMenus();
    if (!application.load()) {
        std::fputs("orvane-helper: there is no display that it could use\n", stderr);
        return EXIT_FAILURE;
    }
    QtInstallTranslations(QtResources::folderOfProgram());
    // Never destroyed: a script's thread may be at work with it until the very end.
    auto *const helper = new Helper(application, QtResources::folderOfProgram());
    const int status = helper->run();
    helper->giveBack();
    std::fflush(nullptr);
    std::_Exit(status);
}
