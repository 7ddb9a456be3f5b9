#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace orvane::test {

/// Asks until it holds; false when it does not within the limit.
inline bool eventually(const std::function<bool()> &holds, std::chrono::milliseconds limit = std::chrono::seconds(20)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!holds()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

inline std::string contentsOf(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Where files cost no disk access, if there is such a place. Programs may not be startable there.
inline std::string memoryFolder() {
    const bool isUsable = ::access("/dev/shm", W_OK | X_OK) == 0;
    return isUsable ? "/dev/shm" : std::filesystem::temp_directory_path().string();
}

/// A folder of the test's own, removed at the end. Where it is by default programs may be started from it.
class TestFolder {
public:
    explicit TestFolder(const std::string &parent = std::filesystem::temp_directory_path().string()) {
        std::string path = parent + "/orvane-test-XXXXXX";
        if (::mkdtemp(path.data()) == nullptr) {
            std::abort();
        }
        _path = path;
    }
    TestFolder(const TestFolder &) = delete;
    TestFolder &operator=(const TestFolder &) = delete;
    ~TestFolder() {
        std::error_code error;
        std::filesystem::remove_all(_path, error);
    }

    [[nodiscard]] const std::string &path() const { return _path; }
    [[nodiscard]] std::string path(std::string_view name) const { return _path + "/" + std::string(name); }

    std::string write(std::string_view name, std::string_view contents, mode_t mode = 0755) const {
        const std::string file = path(name);
        std::ofstream(file, std::ios::binary) << contents;
        ::chmod(file.c_str(), mode);
        return file;
    }

private:
    std::string _path;
};

/// A FIFO on which scripts wait: `read line < path`. Each `release` lets one go on.
class Barrier {
public:
    explicit Barrier(std::string path) : _path(std::move(path)) {
        if (::mkfifo(_path.c_str(), 0600) != 0) {
            std::abort();
        }
        _descriptor = ::open(_path.c_str(), O_RDWR | O_CLOEXEC);
    }
    Barrier(const Barrier &) = delete;
    Barrier &operator=(const Barrier &) = delete;
    ~Barrier() { ::close(_descriptor); }

    [[nodiscard]] const std::string &path() const { return _path; }
    void release() const { ASSERT_EQ(::write(_descriptor, "\n", 1), 1); }

private:
    std::string _path;
    int _descriptor = -1;
};

/// Lowers a soft limit of this process for its life.
class SoftLimit {
public:
    SoftLimit(decltype(RLIMIT_NOFILE) resource, rlim_t value) : _resource(resource) {
        ::getrlimit(_resource, &_before);
        rlimit lowered = _before;
        lowered.rlim_cur = value;
        ::setrlimit(_resource, &lowered);
    }
    SoftLimit(const SoftLimit &) = delete;
    SoftLimit &operator=(const SoftLimit &) = delete;
    ~SoftLimit() { ::setrlimit(_resource, &_before); }

private:
    decltype(RLIMIT_NOFILE) _resource;
    rlimit _before{};
};

/// Whether this process has no child left, running or zombie.
inline bool hasNoChild() {
    siginfo_t information{};
    return ::waitid(P_ALL, 0, &information, WEXITED | WNOHANG | WNOWAIT) != 0 && errno == ECHILD;
}

/// Exit status of `body` run in a forked child; 128 + N when a signal ended it.
inline int statusInFork(const std::function<int()> &body) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(body());
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace orvane::test
