#pragma once

#include "ports/Processes.h"

#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orvane {

/// How a program of the fake launcher behaves.
struct FakeProgram {
    static constexpr std::size_t Endless = std::numeric_limits<std::size_t>::max();

    std::size_t runningPolls = 0; ///< how often it is still found running
    int status = 0;
    std::string standardOutput = {};
    std::string standardError = {};
    std::function<bool()> running = {}; ///< when set, asked instead of counting the polls
};

/// What was asked of the fake launcher and its children, in order.
class FakeProcessJournal {
public:
    void add(std::string call) {
        const std::lock_guard lock(_mutex);
        _calls.push_back(std::move(call));
    }
    [[nodiscard]] std::vector<std::string> calls() const {
        const std::lock_guard lock(_mutex);
        return _calls;
    }

private:
    mutable std::mutex _mutex;
    std::vector<std::string> _calls;
};

class FakeChildProcess final : public ChildProcess {
public:
    FakeChildProcess(FakeProgram program, std::shared_ptr<FakeProcessJournal> journal)
        : _program(std::move(program)), _journal(std::move(journal)) {}

    [[nodiscard]] bool isRunning() override {
        _journal->add("isRunning");
        if (_program.running) {
            return _program.running();
        }
        if (_program.runningPolls == 0) {
            return false;
        }
        if (_program.runningPolls != FakeProgram::Endless) {
            --_program.runningPolls;
        }
        return true;
    }
    [[nodiscard]] int terminationStatus() const override {
        _journal->add("terminationStatus");
        return _program.status;
    }
    [[nodiscard]] std::string readStandardErrorToEnd() override {
        _journal->add("readStandardErrorToEnd");
        return std::exchange(_program.standardError, {});
    }
    [[nodiscard]] std::string readStandardErrorToEndDroppingOutput() override {
        _journal->add("readStandardErrorToEndDroppingOutput");
        _program.standardOutput.clear();
        return std::exchange(_program.standardError, {});
    }
    [[nodiscard]] std::string readStandardOutputToEnd() override {
        _journal->add("readStandardOutputToEnd");
        return std::exchange(_program.standardOutput, {});
    }

private:
    FakeProgram _program;
    std::shared_ptr<FakeProcessJournal> _journal;
};

/// Starts prepared programs. Set them up before the first launch; launches may come from any thread.
class FakeProcessLauncher final : public ProcessLauncher {
public:
    struct Launch {
        std::string path;
        std::map<std::string, std::string> environment;
    };

    [[nodiscard]] std::unique_ptr<ChildProcess> launch(const std::string &path,
                                                       const std::map<std::string, std::string> &environment) override {
        _journal->add("launch");
        {
            const std::lock_guard lock(_mutex);
            _launches.push_back({path, environment});
        }
        if (const auto found = programs.find(path); found != programs.end()) {
            return std::make_unique<FakeChildProcess>(found->second, _journal);
        }
        if (!anyProgram) {
            return nullptr;
        }
        return std::make_unique<FakeChildProcess>(*anyProgram, _journal);
    }

    [[nodiscard]] std::vector<Launch> launches() const {
        const std::lock_guard lock(_mutex);
        return _launches;
    }
    /// Names of the calls to the launcher and to all its children: "launch", "isRunning", "readStandardErrorToEnd" and so on.
    [[nodiscard]] std::vector<std::string> calls() const { return _journal->calls(); }

    std::map<std::string, FakeProgram> programs;           ///< by path
    std::optional<FakeProgram> anyProgram = FakeProgram{}; ///< for every other path; without it they cannot be started

private:
    mutable std::mutex _mutex;
    std::vector<Launch> _launches;
    std::shared_ptr<FakeProcessJournal> _journal = std::make_shared<FakeProcessJournal>();
};

} // namespace orvane
