#include "BusProgram.h"

#include "ProgramFolder.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixSpawning.h"

#include <cerrno>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane {

namespace {

constexpr const char *ProgramName = "orvane-bus";

/// Where the program may be: beside this one, as after a build, or where it is installed, seen from this one.
std::vector<std::string> placesOfProgram() {
    const std::string folder = folderOfProgram();
    if (folder.empty()) {
        return {};
    }
    return {folder + ProgramName, folder + ORVANE_BUS_FOLDER "/" + ProgramName};
}

std::vector<std::string> withName(const std::vector<std::string> &words) {
    std::vector<std::string> whole{ProgramName};
    whole.insert(whole.end(), words.begin(), words.end());
    return whole;
}

/// Without a standard error of ours: a notification that nobody hears is no failure that a user has to be told of here.
bool start(const std::vector<std::string> &words, pid_t &child) {
    std::vector<std::string> whole = withName(words);
    const std::vector<char *> arguments = PosixPointersTo(whole);
    const PosixSpawnAttributes attributes;
    posix_spawn_file_actions_t actions;
    if (attributes.get() == nullptr || ::posix_spawn_file_actions_init(&actions) != 0) {
        return false;
    }
    bool isStarted = false;
    if (::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0) == 0) {
        for (const std::string &place : placesOfProgram()) {
            isStarted = isStarted || ::posix_spawn(&child, place.c_str(), &actions, attributes.get(), arguments.data(), environ) == 0;
        }
    }
    ::posix_spawn_file_actions_destroy(&actions);
    return isStarted;
}

} // namespace

bool BusProgramNotifications::post(std::string_view name) {
    pid_t child = -1;
    if (!start({"notify", std::string(name)}, child)) {
        return false;
    }
    int status = 0;
    const pid_t ended = uninterrupted([&] { return ::waitpid(child, &status, 0); });
    return ended == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void becomeBusProgram(const std::vector<std::string> &words) {
    std::vector<std::string> whole = withName(words);
    const std::vector<char *> arguments = PosixPointersTo(whole);
    errno = ENOENT;
    for (const std::string &place : placesOfProgram()) {
        ::execv(place.c_str(), arguments.data());
    }
}

} // namespace orvane
