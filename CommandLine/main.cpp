#include "BusProgram.h"
#include "Command.h"
#include "CommandSupport.h"

#include "platform/posix/PosixClock.h"
#include "platform/posix/PosixCreationJournal.h"
#include "platform/posix/PosixCreationRecovery.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixFinderInformation.h"
#include "platform/posix/PosixPreferencesStore.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "platform/posix/PosixSystemLog.h"
#include "platform/posix/PosixUserFolders.h"
#include "platform/posix/UnistringTextCase.h"
#include "presets/ORVJournaledFileSystem.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>
#include <span>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

// `orvane`: finds the command, makes the adapters that it works with and runs it.

namespace {

using namespace orvane;

constexpr std::array<Command, 10> Commands = {{
    {"list", "show the presets", ListCommandHelp, runListCommand},
    {"show", "show one preset: its variables and its tree", ShowCommandHelp, runShowCommand},
    {"create", "make a preset's folder", CreateCommandHelp, runCreateCommand, createCommandOptions},
    {"import", "make a preset from an existing folder", ImportCommandHelp, runImportCommand, importCommandOptions},
    {"export", "write a preset to a file", ExportCommandHelp, runExportCommand},
    {"add", "add the preset in a file", AddCommandHelp, runAddCommand},
    {"check", "look for mistakes in presets", CheckCommandHelp, runCheckCommand},
    {"menu", "pop the helper's menu up", MenuCommandHelp, runMenuCommand, menuCommandOptions, menuCommandMoreHelp},
    {"notify", "tell the running helper that the preferences have changed", NotifyCommandHelp, runNotifyCommand},
    {"recover", "show or remove what a creation left that was killed", RecoverCommandHelp, runRecoverCommand},
}};

std::string generalHelp() {
    std::string text = "Usage: orvane COMMAND [ARGUMENT]...\n\nMakes ready-made folder hierarchies from presets.\n\n";
    constexpr std::size_t Column = 8;
    for (const Command &command : Commands) {
        std::string name = command.name;
        name.resize(Column, ' ');
        text.append("  ").append(name).append(command.summary) += '\n';
    }
    return text + "\n'orvane COMMAND --help' tells more about a command, 'orvane --version' the version.\n";
}

/// Prints what `--help` or `--version` ask for; false when neither is among the options.
bool answersGeneralOption(const CommandArguments &words, std::span<const OptionRule> rules, std::string_view help, ExitStatus &status) {
    switch (generalOptionIn(words, rules)) {
    case GeneralOption::Help:
        status = writeStandardOutput(help);
        return true;
    case GeneralOption::Version:
        status = writeStandardOutput("orvane " ORVANE_VERSION "\n");
        return true;
    case GeneralOption::None:
        break;
    }
    return false;
}

/// Fills standard streams that are closed, before another file gets the number of one and with it what is written to the
/// stream. Each refuses what a program does with it, so that the loss is noticed as it would be without. False when
/// that is impossible.
bool standardStreamsAreOpen() {
    constexpr std::array<int, 3> Modes = {O_WRONLY, O_RDONLY, O_RDONLY};
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (::fcntl(stream, F_GETFD) >= 0 || errno != EBADF) {
            continue;
        }
        if (::open("/dev/null", Modes[static_cast<std::size_t>(stream)]) != stream) { // the lowest free number is taken
            return false;
        }
    }
    return true;
}

ExitStatus runCommand(const Command &command, const CommandArguments &arguments) {
    const mode_t umask = umaskOfSingleThread();
    PosixUserFolders folders;
    PosixSystemLog log(folders.stateDirectory());
    PosixPreferencesStore preferences(folders.preferencesFile(), folders.stateDirectory() + "/preferences.lock", log);
    PosixFileSystem fileSystem(umask);
    fileSystem.setLog(log);
    PosixFinderInformation finderInformation;
    BusProgramNotifications notifications;
    PosixClock clock;
    PosixProcessLauncher processes;
    UnistringTextCase textCase;
    EnginePorts engine{clock, processes, log, textCase};
    PosixCreationJournal journal(PosixCreationJournal::usualDirectory());
    PosixCreationRecovery recovery(PosixCreationJournal::usualDirectory());
    ORVJournaledFileSystem journaled(fileSystem, journal);
    CommandContext context{preferences, journaled, finderInformation, folders, notifications, &engine, &recovery};
    const ExitStatus status = command.run(context, arguments);
    if (journal.hasSeenRemains()) {
        writeStandardError("orvane: note: an earlier creation was killed half-way; 'orvane recover' shows what it left\n");
    }
    return status;
}

ExitStatus runProgram(CommandArguments words) {
    ExitStatus status = ExitStatus::Success;
    if (words.empty()) {
        writeStandardError(generalHelp());
        return ExitStatus::Usage;
    }
    const std::string name = words.front();
    if (name.starts_with('-')) {
        return answersGeneralOption(words, {}, generalHelp(), status) ? status : usageError("", "unknown option '" + name + "'");
    }
    const auto *const command = std::find_if(Commands.begin(), Commands.end(), [&](const Command &known) { return name == known.name; });
    if (command == Commands.end()) {
        return usageError("", "unknown command '" + name + "'");
    }
    words.erase(words.begin());
    const auto rules = command->options == nullptr ? std::span<const OptionRule>() : command->options();
    const bool wantsMore = command->moreHelp != nullptr && generalOptionIn(words, rules) == GeneralOption::Help;
    const std::string help = wantsMore ? command->help + command->moreHelp() : command->help;
    return answersGeneralOption(words, rules, help, status) ? status : runCommand(*command, words);
}

} // namespace

int main(int count, char **words) {
    if (!standardStreamsAreOpen()) {
        return static_cast<int>(ExitStatus::NotMade);
    }
    try {
        return static_cast<int>(runProgram(CommandArguments(words + (count > 0 ? 1 : 0), words + count)));
    } catch (const std::bad_alloc &) {
        static_cast<void>(writeWhole(STDERR_FILENO, "orvane: Out of memory\n"));
        return static_cast<int>(ExitStatus::NotMade);
    }
}
