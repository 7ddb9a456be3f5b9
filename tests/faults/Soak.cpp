#include "CommandLineAdapters.h"
#include "CommandLinePrompt.h"

#include "fakes/FakeAlerts.h"
#include "fakes/FakeDistributedNotifications.h"
#include "fakes/FakeMainThread.h"
#include "fakes/FakeThreadLauncher.h"
#include "fakes/FakeWorkspace.h"
#include "platform/SingleThread.h"
#include "platform/posix/PosixClock.h"
#include "platform/posix/PosixCreationJournal.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixPreferencesStore.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "platform/posix/PosixSystemLog.h"
#include "platform/posix/PosixUserFolders.h"
#include "platform/posix/UnistringTextCase.h"
#include "presets/ORVJournaledFileSystem.h"
#include "presets/ORVPresetManager.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

// A long life in one process: creations, reloads of the preferences that somebody else changes all the time, and scripts,
// over the adapters of the disk. Memory, descriptors, threads and children must be the same at its end as after its first
// tenth.
//
//     soak CREATIONS RELOADS SCRIPTS

namespace {

using namespace orvane;
namespace fs = std::filesystem;

constexpr long AllowedGrowth = 512; ///< KB; the heap's own unrest is a few pages

struct Use {
    long memory = 0; ///< KB that are resident
    long descriptors = 0;
    long threads = 0;
};

long entriesOf(const char *folder) {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

Use use() {
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages; // the second number is what is resident
    return {pages * ::sysconf(_SC_PAGESIZE) / 1024, entriesOf("/proc/self/fd"), entriesOf("/proc/self/task")};
}

/// A home folder in memory, gone with the object.
class Home {
public:
    Home() : _path(fs::exists("/dev/shm") ? "/dev/shm/orvane-soak-XXXXXX" : "/tmp/orvane-soak-XXXXXX") {
        if (::mkdtemp(_path.data()) == nullptr) {
            std::perror("soak");
            std::exit(2);
        }
        fs::create_directories(_path + "/Library/Preferences");
        fs::create_directories(_path + "/.local/share/Orvane/Scripts");
        fs::create_directories(_path + "/.local/share/Orvane/File Content");
        fs::create_directories(target());
        const std::string script = _path + "/.local/share/Orvane/Scripts/after.sh";
        std::ofstream(script) << "#!/bin/sh\necho a=1\n";
        fs::permissions(script, fs::perms::owner_all);
        std::ofstream(_path + "/.local/share/Orvane/File Content/letter") << std::string(4000, 'x');
        ::setenv("HOME", _path.c_str(), 1);
        ::unsetenv("XDG_DATA_HOME");
        ::unsetenv("XDG_STATE_HOME");
    }
    Home(const Home &) = delete;
    Home &operator=(const Home &) = delete;
    ~Home() { fs::remove_all(_path); }

    [[nodiscard]] std::string target() const { return _path + "/target"; }
    [[nodiscard]] std::string journal() const { return _path + "/creations"; }
    [[nodiscard]] std::string preferences() const { return _path + "/Library/Preferences/org.orvane.ORVPrefPane.plist"; }

    /// Writes the preferences anew, as the settings program would.
    void writePreferences(int number) const {
        const std::string text = "<plist version=\"1.0\"><dict><key>Round</key><integer>" + std::to_string(number) +
                                 "</integer><key>ORVPresets</key><array>" + _preset("") +
                                 _preset("<key>scriptFile</key><string>after.sh</string>") + "</array></dict></plist>\n";
        const std::string temporary = preferences() + ".new";
        std::ofstream(temporary) << text;
        fs::rename(temporary, preferences());
    }

private:
    [[nodiscard]] static std::string _preset(const std::string &more) {
        const std::string file = "<dict><key>filename</key><string>Letter {Project}</string><key>contentFilename</key>"
                                 "<string>letter</string><key>color</key><string>red</string></dict>";
        const std::string folder = "<dict><key>filename</key><string>Docs</string><key>isFolder</key><true/><key>permissions</key>"
                                   "<string>750</string><key>children</key><array>" +
                                   file + "</array></dict>";
        const std::string other = "<dict><key>filename</key><string>Media</string><key>isFolder</key><true/><key>children</key><array>" +
                                  file + folder + "</array></dict>";
        return "<dict><key>label</key><string>P</string><key>directoryName</key><string>{Project} {AutoNo}</string>" + more +
               "<key>fileHierarchy</key><dict><key>isFolder</key><true/><key>children</key><array>" + folder + other + file +
               "</array></dict></dict>";
    }

    std::string _path;
};

class NobodyThere final : public Terminal {
public:
    [[nodiscard]] bool isAvailable() override { return false; }
    void write(std::string_view /*text*/) override {}
    [[nodiscard]] std::optional<std::string> readLine() override { return std::nullopt; }
};

class Soak {
public:
    Soak()
        : _preferences(_folders.preferencesFile(), _folders.stateDirectory() + "/preferences.lock", _log), _prompt({}, true, _nobody),
          _manager(ORVPresetManager::create({_alerts, _application, _clock, _notifications, _journaled, _mainThread, _preferences,
                                             _processes, _log, _textCase, _threads, _folders, _prompt, _workspace})) {
        _threads.onFinished = [this] { _mainThread.wake(); };
    }

    /// True when nothing grew.
    [[nodiscard]] bool run(int creations, int reloads, int scripts) {
        _home.writePreferences(0);
        bool good = _phase("creations", creations, [this](int) { _create(0); });
        good = _phase("reloads", reloads, [this](int round) { _reload(round); }) && good;
        good = _phase("scripts", scripts, [this](int round) { _script(round); }) && good;
        _threads.joinAll();
        if (::waitpid(-1, nullptr, WNOHANG) != -1 || errno != ECHILD) {
            std::printf("a child is left\n");
            good = false;
        }
        return good && _failures == 0 && _alerts.alerts.empty();
    }

private:
    template <typename Work> bool _phase(const char *what, int rounds, const Work &work) {
        Use early;
        for (int round = 0; round < rounds; ++round) {
            if (round == rounds / 10) {
                early = use();
            }
            work(round);
            _mainThread.endEvent();
        }
        const Use late = use();
        std::printf("%d %s: %ld KB after a tenth, %ld KB at the end; %ld and %ld descriptors; %ld and %ld threads; %ld failures\n", rounds,
                    what, early.memory, late.memory, early.descriptors, late.descriptors, early.threads, late.threads, _failures);
        std::fflush(stdout);
        return late.memory - early.memory <= AllowedGrowth && late.descriptors == early.descriptors && late.threads == early.threads;
    }

    void _create(std::size_t preset) {
        _failures += static_cast<long>(_alerts.alerts.size()); // of scripts that were going on
        _alerts.alerts.clear();
        _alerts.threads.clear();
        _workspace.opened.clear();
        const std::string parent = _home.target() + "/" + std::to_string(++_number); // counters repeat when the preferences are new
        fs::create_directory(parent);
        _manager->setBasePath(parent);
        _manager->handlePresetClicked(static_cast<std::int32_t>(preset));
        const bool made = _alerts.alerts.empty() && _workspace.opened.size() == 1 &&
                          fs::exists(_workspace.opened.front() + "/Media/Docs/Letter ") && _manager->countersWereStored();
        _failures += made ? 0 : 1;
        fs::remove_all(parent);
    }

    /// Every other time the file has changed.
    void _reload(int round) {
        if (round % 2 == 0) {
            _home.writePreferences(round);
        }
        _manager->readConfiguration();
        _failures += _manager->presets().size() == 2 ? 0 : 1;
    }

    /// Some at once, then they are waited for.
    void _script(int round) {
        constexpr int AtOnce = 10;
        _create(1);
        if (round % AtOnce == AtOnce - 1) {
            _mainThread.runUntil([this] { return !_threads.isBusy(); }, std::chrono::seconds(60));
            _threads.joinAll();
        }
    }

    Home _home;
    PosixUserFolders _folders;
    PosixSystemLog _log{_folders.stateDirectory(), [](const char *) {}};
    PosixPreferencesStore _preferences;
    PosixFileSystem _fileSystem;
    PosixCreationJournal _journal{_home.journal()};
    ORVJournaledFileSystem _journaled{_fileSystem, _journal};
    PosixClock _clock;
    PosixProcessLauncher _processes;
    UnistringTextCase _textCase;
    FakeMainThread _mainThread;
    FakeThreadLauncher _threads{FakeThreadLauncher::Mode::Real};
    FakeAlerts _alerts;
    FakeDistributedNotifications _notifications;
    FakeWorkspace _workspace;
    SingleThreadApplication _application;
    NobodyThere _nobody;
    CommandLinePrompt _prompt;
    std::unique_ptr<ORVPresetManager> _manager;
    long _number = 0;
    long _failures = 0;
};

} // namespace

int main(int count, char **words) {
    if (count != 4) {
        std::fprintf(stderr, "usage: soak CREATIONS RELOADS SCRIPTS\n");
        return 2;
    }
    Soak soak;
    return soak.run(std::atoi(words[1]), std::atoi(words[2]), std::atoi(words[3])) ? 0 : 1;
}
