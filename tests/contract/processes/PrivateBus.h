#pragma once

#include "ProcessTestTools.h"

#include <csignal>
#include <spawn.h>
#include <string>
#include <vector>

namespace orvane::test {

/// A program started by a test; ended by SIGTERM and awaited at the end. Its standard output goes into a file, if one is
/// given, its standard error nowhere.
class TestProgram {
public:
    explicit TestProgram(std::vector<std::string> arguments, const std::string &output = "/dev/null") {
        posix_spawn_file_actions_t actions{};
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_addopen(&actions, 1, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        ::posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
        std::vector<char *> pointers;
        for (std::string &argument : arguments) {
            pointers.push_back(argument.data());
        }
        pointers.push_back(nullptr);
        if (::posix_spawnp(&_process, pointers[0], &actions, nullptr, pointers.data(), environ) != 0) {
            _process = -1;
        }
        ::posix_spawn_file_actions_destroy(&actions);
    }
    TestProgram(const TestProgram &) = delete;
    TestProgram &operator=(const TestProgram &) = delete;
    ~TestProgram() { stop(); }

    [[nodiscard]] bool isStarted() const { return _process > 0; }
    void stop() {
        if (_process <= 0) {
            return;
        }
        ::kill(_process, SIGTERM);
        await();
    }
    /// Exit status once it has ended by itself.
    int await() {
        int status = -1;
        ::waitpid(_process, &status, 0);
        _process = -1;
        return status;
    }

private:
    pid_t _process = -1;
};

/// A session bus of the test's own.
class PrivateBus {
public:
    PrivateBus() {
        if (!_daemon.isStarted() || !eventually([this] { return test::contentsOf(_folder.path("address")).ends_with('\n'); })) {
            ADD_FAILURE() << "dbus-daemon did not start";
        }
    }
    [[nodiscard]] std::string address() const { return "unix:path=" + _folder.path("bus"); }
    void stop() { _daemon.stop(); }

private:
    TestFolder _folder;
    TestProgram _daemon{{"dbus-daemon", "--session", "--nofork", "--nopidfile", "--nosyslog", "--print-address", "--address=" + address()},
                        _folder.path("address")}; // which it writes once it listens
};

} // namespace orvane::test
