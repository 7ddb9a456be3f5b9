#include "CommandLineWorkspace.h"

#include "platform/posix/PosixSpawning.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <unistd.h>

namespace orvane {

namespace {

constexpr const char *Opener = "xdg-open"; // xdg-utils

bool isSet(const char *name) {
    const char *value = std::getenv(name);
    return value != nullptr && *value != '\0';
}

/// How the opener is started: a session of its own, so that it outlives the terminal, no stream of ours, and signals as a new program
/// expects them.
class Detachment {
public:
    Detachment() {
        posix_spawn_file_actions_init(&_actions);
        posix_spawn_file_actions_addopen(&_actions, STDIN_FILENO, "/dev/null", O_RDWR, 0);
        posix_spawn_file_actions_adddup2(&_actions, STDIN_FILENO, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&_actions, STDIN_FILENO, STDERR_FILENO);
    }
    Detachment(const Detachment &) = delete;
    Detachment &operator=(const Detachment &) = delete;
    ~Detachment() { posix_spawn_file_actions_destroy(&_actions); }
    [[nodiscard]] const posix_spawn_file_actions_t *actions() const { return &_actions; }
    [[nodiscard]] const posix_spawnattr_t *attributes() const { return _attributes.get(); }

private:
    posix_spawn_file_actions_t _actions{};
    const PosixSpawnAttributes _attributes{POSIX_SPAWN_SETSID};
};

} // namespace

bool CommandLineWorkspace::openFile(std::string_view path) {
    if (!_isEnabled() || (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY"))) {
        return false;
    }
    std::string opener = Opener;
    std::string folder(path);
    const std::array<char *, 3> words = {opener.data(), folder.data(), nullptr};
    const Detachment detachment;
    pid_t started = 0;
    return ::posix_spawnp(&started, Opener, detachment.actions(), detachment.attributes(), words.data(), environ) == 0;
}

} // namespace orvane
