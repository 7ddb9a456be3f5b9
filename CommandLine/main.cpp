#include "BusProgram.h"
#include "Command.h"
#include "CommandSupport.h"
#include "Interruption.h"

#include "platform/posix/PosixClock.h"
#include "platform/posix/PosixCreationJournal.h"
#include "platform/posix/PosixCreationRecovery.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixFinderInformation.h"
#include "platform/posix/PosixPreferencesStore.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "platform/posix/PosixSystemLog.h"
#include "platform/posix/PosixUserFolders.h"
#include "platform/posix/PosixWriting.h"
#include "platform/posix/UnistringTextCase.h"
#include "presets/ORVJournaledFileSystem.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <new>
#include <span>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

// `orvane`: finds the command, makes the adapters that it works with and runs it.

namespace {

using namespace orvane;

constexpr std::string_view HelpName = "help";
constexpr std::array<Command, 10> Commands = {{
    {"list", forTranslation("show the presets"), listCommandHelp, runListCommand},
    {"show", forTranslation("show one preset: its variables and its tree"), showCommandHelp, runShowCommand},
    {"create", forTranslation("make a preset's folder"), createCommandHelp, runCreateCommand, createCommandOptions},
    {"import", forTranslation("make a preset from an existing folder"), importCommandHelp, runImportCommand, importCommandOptions},
    {"export", forTranslation("write a preset to a file"), exportCommandHelp, runExportCommand},
    {"add", forTranslation("add the preset in a file"), addCommandHelp, runAddCommand},
    {"check", forTranslation("look for mistakes in presets"), checkCommandHelp, runCheckCommand},
    {"menu", forTranslation("pop the helper's menu up"), menuCommandHelp, runMenuCommand, menuCommandOptions},
    {"notify", forTranslation("tell the running helper that the preferences have changed"), notifyCommandHelp, runNotifyCommand},
    {"recover", forTranslation("show or remove what a creation left that was killed"), recoverCommandHelp, runRecoverCommand},
}};

std::string generalHelp() {
    std::string text = localized("Usage: orvane COMMAND [ARGUMENT]...\n"
                                 "\n"
                                 "Makes ready-made folder hierarchies from presets.\n");
    text += '\n';
    constexpr std::size_t Column = 8;
    for (const Command &command : Commands) {
        std::string name = command.name;
        name.resize(Column, ' ');
        text.append("  ").append(name).append(localized(command.summary)) += '\n';
    }
    text += '\n';
    return text + localized("'orvane COMMAND --help' (or -h) tells more about a command, 'orvane --version'\n"
                            "the version.\n");
}

/// Prints what `--help` or `--version` ask for; false when neither is among the options.
bool answersGeneralOption(const CommandArguments &words, std::span<const OptionRule> rules, std::string (*help)(), ExitStatus &status) {
    switch (generalOptionIn(words, rules)) {
    case GeneralOption::Help:
        status = writeStandardOutput(help());
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
    preferences.setGivesUp(&Interruption::wasRequested);
    PosixFileSystem fileSystem(umask);
    fileSystem.setLog(log);
    PosixFinderInformation finderInformation;
    BusProgramNotifications notifications;
    PosixClock clock;
    PosixProcessLauncher processes(PosixProcessLauncher::StopSignals::ArePassedOn);
    UnistringTextCase textCase;
    EnginePorts engine{clock, processes, log, textCase};
    PosixCreationJournal journal(PosixCreationJournal::usualDirectory());
    PosixCreationRecovery recovery(PosixCreationJournal::usualDirectory());
    ORVJournaledFileSystem journaled(fileSystem, journal);
    CommandContext context{preferences, journaled, finderInformation, folders, notifications, &engine, &recovery};
    const ExitStatus status = command.run(context, arguments);
    if (journal.hasSeenRemains()) {
        const char *const text = localized("note: an earlier creation was killed half-way; 'orvane recover' shows what it left");
        writeStandardError(std::string("orvane: ") + text + "\n");
    }
    return status;
}

/// Null when there is none of that name.
const Command *commandNamed(std::string_view name) {
    const auto *const command = std::find_if(Commands.begin(), Commands.end(), [&](const Command &known) { return name == known.name; });
    return command == Commands.end() ? nullptr : command;
}

/// `orvane help [COMMAND]`, which is what many try first, says the same as `--help`.
ExitStatus runHelp(const CommandArguments &words) {
    ExitStatus status = ExitStatus::Success;
    if (answersGeneralOption(words, {}, generalHelp, status)) {
        return status;
    }
    const ParsedOptions parsed = parseOptions(words, {});
    if (!parsed.error.empty() || parsed.operands.size() > 1) {
        return usageError("", !parsed.error.empty() ? parsed.error : localized("unexpected '%1'", {parsed.operands[1]}));
    }
    const bool isGeneral = parsed.operands.empty() || parsed.operands.front() == HelpName;
    const Command *const command = isGeneral ? nullptr : commandNamed(parsed.operands.front());
    if (!isGeneral && command == nullptr) {
        return usageError("", localized("unknown command '%1'", {parsed.operands.front()}));
    }
    return writeStandardOutput(isGeneral ? generalHelp() : command->help());
}

/// What is wrong with the word that stands for a command and is none of the general options.
std::string problemOfOption(const std::string &word) {
    const ParsedOptions parsed = parseOptions(std::span(&word, 1), {});
    return parsed.error.empty() ? localized("unknown option '%1'", {word}) : parsed.error;
}

ExitStatus runProgram(CommandArguments words) {
    ExitStatus status = ExitStatus::Success;
    if (!asksForJSON(words)) { // what a program reads is the same in every language, and so is what is said besides
        speakUsersLanguage();
    }
    if (words.empty()) {
        writeStandardError(generalHelp());
        return ExitStatus::Usage;
    }
    const std::string name = words.front();
    if (name.starts_with('-')) {
        return answersGeneralOption(words, {}, generalHelp, status) ? status : usageError("", problemOfOption(name));
    }
    words.erase(words.begin());
    if (name == HelpName) {
        return runHelp(words);
    }
    const Command *const command = commandNamed(name);
    if (command == nullptr) {
        return usageError("", localized("unknown command '%1'", {name}));
    }
    const auto rules = command->options == nullptr ? std::span<const OptionRule>() : command->options();
    return answersGeneralOption(words, rules, command->help, status) ? status : runCommand(*command, words);
}

} // namespace

int main(int count, char **words) {
    if (!standardStreamsAreOpen()) {
        return static_cast<int>(ExitStatus::NotMade);
    }
    std::signal(SIGXFSZ, SIG_IGN); // a file over the limit is a failing call like any other; scripts get the usual action back
    try {
        return static_cast<int>(runProgram(CommandArguments(words + (count > 0 ? 1 : 0), words + count)));
    } catch (const std::bad_alloc &) {
        static_cast<void>(writeContents(STDERR_FILENO, "orvane: Out of memory\n"));
        return static_cast<int>(ExitStatus::NotMade);
    }
}
