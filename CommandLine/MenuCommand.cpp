#include "BusProgram.h"
#include "Command.h"
#include "Options.h"
#include "ParentFolder.h"

#include "hotkeys/HotKeyAdvice.h"
#include "platform/posix/PosixHotKeyStatement.h"
#include "platform/posix/PosixUserFolders.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace orvane {

namespace {

constexpr const char *Name = "menu";
constexpr std::array<OptionRule, 1> Rules = {{{"in", true}}};

} // namespace

const char MenuCommandHelp[] = "Usage: orvane menu [--in DIR]\n"
                               "\n"
                               "Pops the running helper's menu up, and starts the helper first when it does not run.\n"
                               "Bind this command to a key in the desktop's settings where programs cannot register hot\n"
                               "keys themselves, as on most Wayland desktops, or use it as an entry of a file manager's\n"
                               "context menu.\n"
                               "\n"
                               "  --in DIR   make the chosen preset's folder in DIR; without it in the folder of the\n"
                               "             front window, or where the helper asks for\n"
                               "\n"
                               "Exit status: 0 the helper has taken it, 1 no session bus or no helper, 2 wrong usage.\n";

std::span<const OptionRule> menuCommandOptions() {
    return Rules;
}

/// What the running helper says of its hot key; when none runs, how a key is bound on this desktop.
std::string menuCommandMoreHelp() {
    PosixUserFolders folders;
    if (const auto statement = PosixHotKeyStatement::ofDirectory(folders.stateDirectory())) {
        return "\nThe running helper says: " + *statement + "\n";
    }
    const char *const desktop = std::getenv("XDG_CURRENT_DESKTOP");
    return "\nOn this desktop: " + ORVHotKeyInstructions(desktop == nullptr ? "" : desktop) + "\n";
}

ExitStatus runMenuCommand(CommandContext & /*context*/, const CommandArguments &arguments) {
    const ParsedOptions parsed = parseOptions(arguments, Rules);
    if (!parsed.error.empty()) {
        return usageError(Name, parsed.error);
    }
    if (!parsed.operands.empty()) {
        return usageError(Name, "unexpected '" + parsed.operands.front() + "'");
    }
    CommandArguments words{"menu"};
    if (const auto in = parsed.lastValue("in")) {
        std::string problem;
        words.push_back(parentFolder(in, problem));
        if (!problem.empty()) {
            return usageError(Name, "--in: " + problem);
        }
    }
    becomeBusProgram(words);
    return failure("Menu not shown", std::string("orvane-bus cannot be started: ") + std::strerror(errno));
}

} // namespace orvane
