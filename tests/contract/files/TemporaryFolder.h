#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace orvane::testing {

/// A new folder of its own for one test, in memory where that is possible, removed at the end with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        const char *const place = ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
        _path = std::string(place) + "/orvane-files-XXXXXX";
        if (::mkdtemp(_path.data()) == nullptr || ::chmod(_path.c_str(), 0755) != 0) {
            std::abort();
        }
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;
    /// Chains deeper than PATH_MAX are beyond the standard library, so the tool that knows them does it.
    ~TemporaryFolder() {
        const std::string command = "chmod -R u+rwx '" + _path + "' 2>/dev/null; rm -rf '" + _path + "'";
        if (std::system(command.c_str()) != 0) {
            std::abort();
        }
    }

    [[nodiscard]] const std::string &path() const { return _path; }
    [[nodiscard]] std::string operator/(std::string_view name) const { return _path + '/' + std::string(name); }

private:
    std::string _path;
};

} // namespace orvane::testing
