#include "platform/posix/PosixPreferencesFile.h"

#include "platform/posix/PosixPreferencesLock.h"

#include <array>
#include <climits>
#include <cstring>
#include <ctime>

#include <fcntl.h>

namespace orvane {

namespace {

constexpr std::int64_t NanosecondsPerSecond = 1'000'000'000;
/// Several ticks of the slowest clock that stamps files (10 ms at 100 Hz).
constexpr std::int64_t SettlingTime = 50'000'000;
constexpr int MostReadings = 4;
/// As many as the kernel follows (Linux, MAXSYMLINKS).
constexpr int MostLinks = 40;

std::int64_t nanoseconds(const timespec &time) noexcept {
    return static_cast<std::int64_t>(time.tv_sec) * NanosecondsPerSecond + time.tv_nsec;
}

std::int64_t now() noexcept {
    timespec time{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &time);
    return nanoseconds(time);
}

PosixPreferencesDocument unreadable(PosixPreferencesDocument document, std::string why) {
    document.state = PosixPreferencesDocument::State::Unreadable;
    document.why = std::move(why);
    return document;
}

PosixPreferencesDocument readOnce(int file, const struct stat &status) {
    PosixPreferencesDocument document;
    document.identity = PosixPreferencesIdentity::of(status);
    document.settled = document.identity.changed < now() - SettlingTime;
    PropertyListReport report;
    report.wantsSites = true;
    const std::optional<PropertyList> list = readPropertyList(file, &report);
    if (!list) {
        return unreadable(std::move(document), "it cannot be read: " + report.why);
    }
    if (!list->root().isDictionary()) {
        return unreadable(std::move(document), "it holds no dictionary");
    }
    document.state = PosixPreferencesDocument::State::Dictionary;
    document.format = report.format;
    document.sites = std::move(report.sites);
    document.list = *list;
    return document;
}

} // namespace

PosixPreferencesIdentity PosixPreferencesIdentity::of(const struct stat &status) noexcept {
    return {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino), static_cast<std::int64_t>(status.st_size),
            nanoseconds(status.st_mtim), nanoseconds(status.st_ctim)};
}

FileDescriptor openPreferencesFile(const std::string &path) {
    return FileDescriptor(uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }));
}

/// A program that writes the file in place may do so while it is read: then it is read again.
PosixPreferencesDocument readPreferencesDocument(const std::string &path) {
    const FileDescriptor file = openPreferencesFile(path);
    if (!file) {
        return errno == ENOENT ? PosixPreferencesDocument{} : unreadable({}, std::string("it cannot be opened: ") + std::strerror(errno));
    }
    struct stat before {};
    if (::fstat(file.get(), &before) != 0 || !S_ISREG(before.st_mode)) {
        return unreadable({}, "it is no ordinary file");
    }
    for (int reading = 1;; ++reading) {
        PosixPreferencesDocument document = readOnce(file.get(), before);
        struct stat after {};
        const bool known = ::fstat(file.get(), &after) == 0;
        if (known && PosixPreferencesIdentity::of(after) == document.identity) {
            return document;
        }
        if (!known || reading == MostReadings || ::lseek(file.get(), 0, SEEK_SET) != 0) {
            return unreadable(std::move(document), "it changes while it is read");
        }
        before = after;
    }
}

bool isCurrentPreferencesDocument(const PosixPreferencesDocument &document, const std::string &path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return errno == ENOENT && document.state == PosixPreferencesDocument::State::Missing;
    }
    return document.state == PosixPreferencesDocument::State::Dictionary && document.settled &&
           PosixPreferencesIdentity::of(status) == document.identity;
}

std::optional<std::string> resolvedPreferencesPath(std::string path) {
    for (int links = 0; links <= MostLinks; ++links) {
        std::array<char, PATH_MAX> target{};
        const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
        if (length < 0) {
            return errno == EINVAL || errno == ENOENT ? std::optional(path) : std::nullopt;
        }
        const std::string_view text(target.data(), static_cast<std::size_t>(length));
        path = text.starts_with('/') ? std::string(text) : folderOfPreferencesPath(path) + "/" + std::string(text);
    }
    errno = ELOOP;
    return std::nullopt;
}

} // namespace orvane
