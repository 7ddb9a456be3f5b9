// A program made of the adapters on the session bus, for tests to drive: commands come as lines on standard input, what happens goes
// out as lines on standard output.
#include "platform/qtdbus/DesktopNotice.h"
#include "platform/qtdbus/DesktopWorkspace.h"
#include "platform/qtdbus/QtDBusNotifications.h"
#include "platform/qtdbus/QtDBusServices.h"
#include "platform/qtdbus/QtDBusSession.h"
#include "platform/qtdbus/QtDBusStatusBar.h"
#include "platform/qtdbus/QtDBusSystemPreferences.h"
#include "platform/qtdbus/QtXEmbedStatusItem.h"

#include <QAction>
#include <QApplication>
#include <QEventLoop>
#include <QPalette>
#include <QSocketNotifier>
#include <QTimer>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace orvane;
using Words = std::vector<std::string>;

void say(const std::string &text) {
    std::printf("%s\n", text.c_str());
    std::fflush(stdout);
}

class PrintedLog final : public SystemLog {
public:
    void log(std::string_view text) override { say("log " + std::string(text)); }
};

/// The simplest view of a menu; the program's own one is tested elsewhere.
class PlainView final : public MenuObserver {
public:
    explicit PlainView(Menu &menu) : _menu(menu) {
        _menu.addObserver(*this);
        menuDidChange();
    }
    ~PlainView() override { _menu.removeObserver(*this); }
    void menuDidChange() override {
        view.clear();
        for (std::size_t index = 0; index < _menu.numberOfItems(); ++index) {
            QAction *const action = view.addAction(QString::fromStdString(_menu.itemAtIndex(index).title));
            QObject::connect(
                action, &QAction::triggered, &view, [this, index] { _menu.performActionForItemAtIndex(index); }, Qt::QueuedConnection);
        }
    }
    QMenu view;

private:
    Menu &_menu;
};

/// Says what it is asked; "hold" makes it run an event loop, as a menu on the screen does, until "release".
class Provider final : public ServicesProvider {
public:
    void makePresetFromServiceUserDataError(std::string_view pasteboard, std::string_view userData,
                                            std::optional<std::string> &error) override {
        const char *const token = std::getenv("XDG_ACTIVATION_TOKEN");
        say("service [" + std::string(pasteboard) + "] [" + std::string(userData) + "] token " + (token == nullptr ? "-" : token));
        error = failure;
        if (holds) {
            loop.exec();
            say("released");
        }
    }
    std::optional<std::string> failure;
    bool holds = false;
    bool isHidden = false; ///< while it runs its loop there is nothing on the screen
    QEventLoop loop;
};

class Probe {
public:
    Probe() {
        QtDBusStatusBarOptions options;
        const auto fromEnvironment = [](const char *name, int normal) {
            const char *const text = std::getenv(name);
            return std::chrono::milliseconds(text == nullptr ? normal : std::atoi(text));
        };
        const char *const resources = std::getenv("ORVANE_TEST_RESOURCES");
        options.resourceFolder = resources == nullptr ? "" : resources;
        options.toolTip = QStringLiteral("Makes folders from presets");
        options.untilFallback = fromEnvironment("ORVANE_TEST_FALLBACK_MS", 3000);
        options.untilMissing = fromEnvironment("ORVANE_TEST_MISSING_MS", 40000);
        if (const auto check = fromEnvironment("ORVANE_TEST_CHECK_MS", 0); check.count() > 0) {
            options.checks = {check, 2 * check, 3 * check};
        }
        options.statusBarIsMissing = [] { say("missing"); };
        options.makeFallbackItem = [folder = options.resourceFolder] {
            auto item = QtXEmbedStatusItem::make(folder, [](Menu &menu) {
                const auto view = std::make_shared<PlainView>(menu);
                return std::shared_ptr<QMenu>(view, &view->view);
            });
            say(item ? "fallback" : "no fallback");
            return item;
        };
        options.fallbackIsAvailable = [] { return QtXEmbedStatusItem::isAvailable(); };
        _bar = std::make_unique<QtDBusStatusBar>(options);
        _addCommands();
        _addStatusCommands();
    }

    /// One line of standard input.
    void obey(const std::string &line) {
        Words words{std::string()};
        for (const char byte : line) {
            if (byte == '|') {
                words.emplace_back();
            } else {
                words.back() += byte;
            }
        }
        const auto found = _commands.find(words.front());
        if (found == _commands.end()) {
            say("what is " + line + "?");
        } else {
            found->second(words);
        }
    }

private:
    void _addCommands() {
        _commands["claim"] = [this](const Words &) { say(_services.claimName() ? "claimed" : "taken"); };
        _commands["activate-other"] = [this](const Words &) { say(_services.activateOther() ? "activated" : "no answer"); };
        _commands["provide"] = [this](const Words &) { _services.setServicesProvider(&_provider); };
        _commands["fail"] = [this](const Words &words) { _provider.failure = words.at(1); };
        _commands["hold"] = [this](const Words &) { _provider.holds = true; };
        _commands["nothing-on-screen"] = [this](const Words &) { _provider.isHidden = true; };
        _commands["something-on-screen"] = [this](const Words &) { _provider.isHidden = false; };
        _commands["release"] = [this](const Words &) {
            _provider.holds = false;
            _provider.loop.quit();
            _actionLoop.quit();
        };
        _commands["observe"] = [this](const Words &words) {
            const auto behavior = static_cast<DistributedNotifications::Suspension>(std::stoi(words.at(2)));
            _notifications.addObserver(this, words.at(1), behavior, [name = words.at(1)] { say("notified " + name); });
            say("observing");
        };
        _commands["ignore"] = [this](const Words &words) { _notifications.removeObserver(this, words.at(1)); };
        _commands["post"] = [this](const Words &words) { say(_notifications.post(words.at(1)) ? "posted" : "not posted"); };
        _commands["suspend"] = [this](const Words &) { _notifications.suspend(); };
        _commands["resume"] = [this](const Words &) { _notifications.resume(); };
        _commands["open"] = [this](const Words &words) { say(_workspace.openFile(words.at(1)) ? "opening" : "not opening"); };
        _commands["notice"] = [this](const Words &words) {
            _notice.show(QString::fromStdString(words.at(1)), QString::fromStdString(words.at(2)), [] { say("noticed"); });
        };
        _commands["pane"] = [this](const Words &words) { say(_preferences.showPane(words.at(1)) ? "showing" : "nobody"); };
        _commands["ping"] = [](const Words &) { say("pong"); };
        _commands["dark"] = [](const Words &) {
            QPalette palette;
            palette.setColor(QPalette::WindowText, Qt::white);
            QGuiApplication::setPalette(palette);
        };
        _commands["quit"] = [](const Words &) { QCoreApplication::quit(); };
    }

    void _addStatusCommands() {
        _commands["show"] = [this](const Words &) {
            _item = _bar->statusItemWithLength(StatusBar::VariableLength);
            _item->setTitle("");
            _item->setImage("ORVMenuBar.png");
            _item->setHighlightMode(true);
            _item->setMenu(&_menu);
            say("shown");
        };
        _commands["hide"] = [this](const Words &) {
            _bar->removeStatusItem(_item);
            _item.reset();
            say("hidden");
        };
        _commands["look"] = [this](const Words &) {
            _bar->lookForPlace();
            say("looked");
        };
        // menu|TITLE|TITLE...: the whole menu anew; a title of "-" is a separator, one that begins with "!" is switched off,
        // "wait" holds its action until "release", "vanish" removes the status item from its own action.
        _commands["menu"] = [this](const Words &words) {
            while (_menu.numberOfItems() > 0) {
                _menu.removeItemAtIndex(0);
            }
            for (std::size_t index = 1; index < words.size(); ++index) {
                _menu.insertItemAtIndex(_itemOf(words[index], index - 1), index - 1);
            }
            say("menu " + std::to_string(_menu.numberOfItems()));
        };
        _commands["many"] = [this](const Words &words) {
            Words titles{"menu"};
            for (int number = 0; number < std::stoi(words.at(1)); ++number) {
                titles.push_back("Preset " + std::to_string(number));
            }
            _commands["menu"](titles);
        };
    }

    MenuItem _itemOf(const std::string &title, std::size_t index) {
        MenuItem item;
        item.isSeparator = title == "-";
        item.tag = 9;
        item.representedObject = static_cast<std::int32_t>(index);
        const bool isOff = !title.empty() && title.front() == '!';
        item.title = isOff ? title.substr(1) : title;
        if (isOff) {
            item.validate = [](const MenuItem &) { return false; };
        }
        item.action = [this](const MenuItem &chosen) {
            const char *const token = std::getenv("XDG_ACTIVATION_TOKEN");
            say("chosen " + std::to_string(chosen.representedObject.value_or(-1)) + " " + chosen.title + " token " +
                (token == nullptr ? "-" : token));
            if (chosen.title == "wait") {
                _actionLoop.exec();
                say("waited");
            } else if (chosen.title == "vanish") {
                _commands["hide"]({});
            }
        };
        return item;
    }

    PrintedLog _log;
    QtDBusSession _session{&_log};
    QtDBusNotifications _notifications{_session};
    QtDBusServices _services{_session,
                             _log,
                             {.useFolder = [](const std::string &folder) { say("folder " + folder); },
                              .requestDone = [] { say("done"); },
                              .showPreferences = [] { say("preferences"); },
                              .quit = [] { say("quit"); },
                              .isBusy = [this] { return _provider.loop.isRunning() && !_provider.isHidden; },
                              .showWhatIsOpen = [] { say("in front"); }}};
    DesktopWorkspace _workspace{_session, _log, {.bus = 2000, .program = 1500}};
    DesktopNotice _notice{_session, _log};
    QtDBusSystemPreferences _preferences{_session, _log, qEnvironmentVariable("PROBE_SETTINGS_PROGRAM")};
    Provider _provider;
    QEventLoop _actionLoop;
    Menu _menu;
    std::unique_ptr<QtDBusStatusBar> _bar;
    std::shared_ptr<StatusItem> _item;
    std::map<std::string, std::function<void(const Words &)>> _commands;
};

} // namespace

int main(int count, char **arguments) {
    QApplication application(count, arguments);
    QCoreApplication::setApplicationName(QStringLiteral("orvane-probe"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    Probe probe;
    std::string pending;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input, [&] {
        char buffer[65536];
        const ssize_t got = read(STDIN_FILENO, buffer, sizeof buffer);
        if (got <= 0) {
            input.setEnabled(false);
            QCoreApplication::quit();
            return;
        }
        pending.append(buffer, static_cast<std::size_t>(got));
        for (std::size_t end = pending.find('\n'); end != std::string::npos; end = pending.find('\n')) {
            const std::string line = pending.substr(0, end);
            pending.erase(0, end + 1);
            probe.obey(line);
        }
    });
    say("ready");
    return QApplication::exec();
}
