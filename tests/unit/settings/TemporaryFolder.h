#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <sys/stat.h>

namespace orvane::test {

/// A folder for one test, gone with it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string path = (std::filesystem::exists("/dev/shm") ? "/dev/shm" : std::filesystem::temp_directory_path().string()) +
                           "/orvane-settings-XXXXXX";
        _path = ::mkdtemp(path.data()) != nullptr ? path : "";
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }

    [[nodiscard]] const std::string &path() const { return _path; }
    [[nodiscard]] std::string operator/(std::string_view name) const { return _path + "/" + std::string(name); }
    /// Makes a file, its folders included, and returns its path.
    std::string write(std::string_view name, std::string_view text, mode_t mode = 0644) const {
        const std::string file = *this / name;
        std::filesystem::create_directories(std::filesystem::path(file).parent_path());
        std::ofstream(file, std::ios::binary) << text;
        ::chmod(file.c_str(), mode);
        return file;
    }
    [[nodiscard]] std::string read(std::string_view name) const {
        std::ifstream stream(*this / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    [[nodiscard]] bool has(std::string_view name) const { return std::filesystem::exists(std::filesystem::symlink_status(*this / name)); }
    [[nodiscard]] mode_t mode(std::string_view name) const {
        struct stat status {};
        return ::stat((*this / name).c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
    }
    [[nodiscard]] std::size_t count(std::string_view name) const {
        std::error_code ignored;
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(*this / name, ignored), std::filesystem::directory_iterator()));
    }

private:
    std::string _path;
};

} // namespace orvane::test
