#pragma once

#include "platform/posix/PosixPreferencesStore.h"
#include "platform/propertylist/PropertyListFiles.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane {

class RecordingLog final : public SystemLog {
public:
    void log(std::string_view text) override { lines.emplace_back(text); }
    std::vector<std::string> lines;
};

/// A folder of the test's own with a preferences file in it, and stores upon that file.
class PreferencesHome {
public:
    PreferencesHome() {
        std::string pattern = (std::filesystem::temp_directory_path() / "orvane-preferences-XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
        file = folder / "Library" / "domain.plist";
        std::filesystem::create_directory(folder / "Library");
    }
    PreferencesHome(const PreferencesHome &) = delete;
    PreferencesHome &operator=(const PreferencesHome &) = delete;
    ~PreferencesHome() {
        std::error_code ignored;
        std::filesystem::permissions(folder / "Library", std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(folder, ignored);
    }

    [[nodiscard]] PosixPreferencesStore store() { return {file.string(), (folder / "run" / "lock").string(), log}; }
    void put(const std::string &bytes) const { std::ofstream(file, std::ios::binary) << bytes; }
    [[nodiscard]] std::string contents() const {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }
    [[nodiscard]] std::optional<PropertyList> onDisk() const { return readPropertyList(contents()); }
    /// Names in the file's folder, the file left out: what a save must not leave behind.
    [[nodiscard]] std::size_t leftovers() const {
        std::size_t count = 0;
        for (const auto &entry : std::filesystem::directory_iterator(file.parent_path())) {
            count += entry.path() != file ? 1U : 0U;
        }
        return count;
    }

    std::filesystem::path folder;
    std::filesystem::path file;
    RecordingLog log;
};

inline PropertyList text(std::string_view value) {
    PropertyListBuilder builder;
    return builder.finish(builder.string(value));
}

inline PropertyList counters(std::string_view key, std::string_view value) {
    PropertyListBuilder builder;
    const std::vector<PropertyListEntry> entries{{key, builder.string(value)}};
    return builder.finish(builder.dictionary(entries));
}

/// The exit status of `body`, run in a child without any privilege (as user and group 65534 when the test runs as root).
inline int asOrdinaryUser(const std::filesystem::path &folder, const std::function<int()> &body) {
    if (::geteuid() == 0) {
        for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
            EXPECT_EQ(::lchown(entry.path().c_str(), 65534, 65534), 0);
        }
        EXPECT_EQ(::chown(folder.c_str(), 65534, 65534), 0);
    }
    const pid_t child = ::fork();
    if (child == 0) {
        if (::geteuid() == 0 && (::setgroups(0, nullptr) != 0 || ::setgid(65534) != 0 || ::setuid(65534) != 0)) {
            ::_exit(99);
        }
        ::_exit(body());
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace orvane
