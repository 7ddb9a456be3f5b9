#pragma once

#include "WatchedFileSystem.h"
#include "contract/files/FilesTestSupport.h"
#include "unit/core/Desk.h"

#include "platform/posix/PosixFinderInformation.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

namespace orvane::testing {

using test::dict;
using test::list;
using test::text;
using test::yes;

inline constexpr std::size_t Nodes = 1500;
/// Seconds since 1970 when the contents were written.
inline constexpr time_t OldTime = 1'600'000'000;

class CountingProgress final : public CreationProgress {
public:
    void advanced(std::size_t count) override { nodes += count; }
    void startedOver() override {
        nodes = 0;
        ++starts;
    }
    std::atomic<std::size_t> nodes = 0;
    int starts = 0;
};

/// A node with children to be put in.
struct Node {
    std::string name;
    bool isFolder = false;
    std::string color;
    std::string permissions;
    std::string content;
    std::vector<std::size_t> children = {};
};

/// A random tree, the top folder first.
class RandomTree {
public:
    explicit RandomTree(unsigned seed, std::size_t nodes = Nodes) : _random(seed), _nodes{{"{Day} top", true, "", "", ""}} {
        std::vector<std::size_t> folders{0};
        for (std::size_t i = 1; i <= nodes; ++i) {
            const bool isFolder = below(10) < 3;
            const std::size_t parent = folders[below(below(4) == 0 ? 1 : folders.size())];
            Node node{(below(5) == 0 ? "{Job}:" : "") + std::string("node ") + std::to_string(i), isFolder, "", "", ""};
            node.color = below(10) == 0 ? "red" : "";
            node.permissions = below(10) == 0 ? (isFolder ? "750" : "640") : "";
            node.content = isFolder || below(2) == 0 ? "" : below(20) == 0 ? "large" : below(40) == 0 ? "missing" : "small";
            _nodes.push_back(node);
            _nodes[parent].children.push_back(i);
            if (isFolder) {
                folders.push_back(i);
            }
        }
    }
    std::size_t below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(_random); }
    [[nodiscard]] Node &any() { return _nodes[1 + below(_nodes.size() - 1)]; }
    [[nodiscard]] Node &at(std::size_t index) { return _nodes[index]; }

    [[nodiscard]] PropertyList preset() { return dict({{"directoryName", text(_nodes[0].name)}, {"fileHierarchy", _node(0)}}); }

private:
    PropertyList _node(std::size_t index) {
        const Node &node = _nodes[index];
        std::vector<PropertyList> children;
        for (const std::size_t child : node.children) {
            children.push_back(_node(child));
        }
        return dict({{"filename", text(node.name)},
                     {"isFolder", yes(node.isFolder)},
                     {"color", text(node.color)},
                     {"permissions", text(node.permissions)},
                     {"contentFilename", text(node.content)},
                     {"children", list(children)}});
    }

    std::mt19937 _random;
    std::vector<Node> _nodes;
};

/// A folder with a file of the same name in it. Many of them are what two threads share out in one folder.
inline PropertyList scene(const std::string &name) {
    return test::folder(name, {test::file(name)});
}

/// "frame 0" and so on.
inline std::vector<PropertyList> scenes(int count) {
    std::vector<PropertyList> all;
    for (int i = 0; i < count; ++i) {
        all.push_back(scene("frame " + std::to_string(i)));
    }
    return all;
}

/// Everything below a folder: path to kind, mode, label and contents.
inline std::map<std::string, std::string> snapshot(const std::string &folder) {
    std::map<std::string, std::string> result;
    PosixFinderInformation finder;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string path = entry.path().string();
        std::uint16_t flags = 0;
        const int error = finder.readFlags(path, flags);
        std::string all = (entry.is_directory() ? "folder " : "file ") + std::to_string(modeOf(path)) + " " + std::to_string(flags) + " " +
                          std::to_string(error) + " " + attributeOf(path, "user.xdg.tags").value_or("-");
        if (entry.is_regular_file()) {
            all += " " + std::to_string(std::hash<std::string>()(contentsOf(path)));
            const timespec changed = stateOf(path).st_mtim;
            all += changed.tv_sec == OldTime ? " old" : " new";
        }
        result[path.substr(folder.size())] = all;
    }
    return result;
}

class TwoThreadsTest : public ::testing::Test {
protected:
    void SetUp() override {
        desk.folders.applicationSupport = folder / "support";
        std::filesystem::create_directories(folder / "support/Orvane/File Content");
        putContent("small", std::string(4096, 'x'));
        putContent("large", std::string(200'000, 'y'));
        desk.prompt.answers = {{"Day", "7"}, {"Job", "Acme/7"}};
        putFolder(folder / "one");
        putFolder(folder / "two");
        letTheClockTick();
    }

    [[nodiscard]] std::string contentAt(const std::string &name) const { return folder / "support/Orvane/File Content/" + name; }
    void putContent(const std::string &name, const std::string &bytes, mode_t mode = 0644) const {
        putFile(contentAt(name), bytes, mode);
        const std::array<timespec, 2> times{timespec{OldTime, 0}, timespec{OldTime, 0}};
        EXPECT_EQ(::utimensat(AT_FDCWD, contentAt(name).c_str(), times.data(), 0), 0);
    }
    /// What was written until now is older than what begins afterwards, by the clock that stamps files.
    void letTheClockTick() const {
        putFile(folder / "stamp", "");
        const timespec written = stateOf(folder / "stamp").st_ctim;
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        timespec now = written;
        while (now.tv_sec == written.tv_sec && now.tv_nsec <= written.tv_nsec && std::chrono::steady_clock::now() < deadline) {
            ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
        }
        EXPECT_TRUE(now.tv_sec != written.tv_sec || now.tv_nsec > written.tv_nsec);
    }

    struct Outcome {
        std::vector<FakeAlerts::Alert> alerts;
        std::vector<std::string> log;
        std::map<std::string, std::string> disk;
        std::size_t nodes = 0;
    };

    /// Makes the preset in a new manager.
    Outcome create(FileSystem &disk, const PropertyList &preset, const std::string &base) {
        FakeAlerts alerts;
        CountingProgress counter;
        const std::size_t logged = desk.log.entries().size();
        auto manager = ORVPresetManager::create({.alerts = alerts,
                                                 .application = desk.application,
                                                 .clock = desk.clock,
                                                 .notifications = desk.notifications,
                                                 .fileSystem = disk,
                                                 .mainThread = desk.mainThread,
                                                 .preferences = desk.preferences,
                                                 .processes = desk.processes,
                                                 .log = desk.log,
                                                 .textCase = desk.textCase,
                                                 .threads = desk.threads,
                                                 .folders = desk.folders,
                                                 .promptInterface = desk.prompt,
                                                 .workspace = desk.workspace,
                                                 .progress = &counter});
        manager->setBasePath(base);
        manager->createFileHierarchyFromPreset(preset.root());
        starts = counter.starts;
        const std::vector<std::string> log = desk.log.entries();
        return {alerts.alerts, {log.begin() + static_cast<std::ptrdiff_t>(logged), log.end()}, snapshot(base), counter.nodes};
    }

    /// The same preset by one thread and by two; what differs is a failure.
    Outcome bothWays(const PropertyList &preset, const std::string &base) {
        // At one place, so that messages can be the same.
        single.refusesTwoThreads = true;
        const Outcome one = create(single, preset, base);
        EXPECT_EQ(single.sharings, 0);
        std::filesystem::remove_all(base);
        putFolder(base);
        const Outcome two = create(shared, preset, base);
        EXPECT_EQ(one.alerts, two.alerts);
        EXPECT_EQ(one.log, two.log);
        EXPECT_EQ(one.disk, two.disk);
        std::filesystem::remove_all(base);
        putFolder(base);
        if (one.alerts.empty()) {
            EXPECT_EQ(one.nodes, two.nodes);
        }
        return two;
    }

    TemporaryFolder folder;
    test::Desk desk;
    PosixFileSystem files;
    WatchedFileSystem single{files};
    WatchedFileSystem shared{files};
    int starts = 0;
};

} // namespace orvane::testing
