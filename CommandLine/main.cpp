#include "Command.h"
#include "CommandSupport.h"

#include "platform/dbus/SdBusNotifications.h"
#include "platform/posix/PosixClock.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixFinderInformation.h"
#include "platform/posix/PosixPreferencesStore.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "platform/posix/PosixSystemLog.h"
#include "platform/posix/PosixUserFolders.h"
#include "platform/posix/UnistringTextCase.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

// `orvane`: finds the command, makes the adapters that it works with and runs it.

namespace {

using namespace orvane;

constexpr std::array<Command, 8> Commands = {{
    {"list", "show the presets", ListCommandHelp, runListCommand},
    {"show", "show one preset: its variables and its tree", ShowCommandHelp, runShowCommand},
    {"create", "make a preset's folder", CreateCommandHelp, runCreateCommand},
    {"import", "make a preset from an existing folder", ImportCommandHelp, runImportCommand},
    {"export", "write a preset to a file", ExportCommandHelp, runExportCommand},
    {"add", "add the preset in a file", AddCommandHelp, runAddCommand},
    {"check", "look for mistakes in presets", CheckCommandHelp, runCheckCommand},
    {"notify", "tell the running helper that the preferences have changed", NotifyCommandHelp, runNotifyCommand},
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

/// Prints what `--help` or `--version` ask for before any "--"; false when neither stands there.
bool answersGeneralOption(const CommandArguments &words, std::string_view help, ExitStatus &status) {
    for (const std::string &word : words) {
        if (word == "--") {
            return false;
        }
        if (word == "--help" || word == "-h") {
            status = writeStandardOutput(help);
            return true;
        }
        if (word == "--version") {
            status = writeStandardOutput("orvane " ORVANE_VERSION "\n");
            return true;
        }
    }
    return false;
}

ExitStatus runCommand(const Command &command, const CommandArguments &arguments) {
    PosixUserFolders folders;
    PosixSystemLog log(folders.stateDirectory());
    PosixPreferencesStore preferences(folders.preferencesFile(), folders.stateDirectory() + "/preferences.lock", log);
    PosixFileSystem fileSystem;
    PosixFinderInformation finderInformation;
    SdBusNotifications notifications;
    PosixClock clock;
    PosixProcessLauncher processes;
    UnistringTextCase textCase;
    EnginePorts engine{clock, processes, log, textCase};
    CommandContext context{preferences, fileSystem, finderInformation, folders, notifications, &engine};
    return command.run(context, arguments);
}

ExitStatus runProgram(CommandArguments words) {
    ExitStatus status = ExitStatus::Success;
    if (words.empty()) {
        writeStandardError(generalHelp());
        return ExitStatus::Usage;
    }
    const std::string name = words.front();
    if (name.starts_with('-')) {
        return answersGeneralOption(words, generalHelp(), status) ? status : usageError("", "unknown option '" + name + "'");
    }
    const auto *const command = std::find_if(Commands.begin(), Commands.end(), [&](const Command &known) { return name == known.name; });
    if (command == Commands.end()) {
        return usageError("", "unknown command '" + name + "'");
    }
    words.erase(words.begin());
    return answersGeneralOption(words, command->help, status) ? status : runCommand(*command, words);
}

} // namespace

int main(int count, char **words) {
    return static_cast<int>(runProgram(CommandArguments(words + (count > 0 ? 1 : 0), words + count)));
}
