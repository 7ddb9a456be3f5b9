#pragma once

#include "Options.h"
#include "StandardStreams.h"

#include "ports/Clock.h"
#include "ports/CreationJournal.h"
#include "ports/DistributedNotifications.h"
#include "ports/FileSystem.h"
#include "ports/FinderInformation.h"
#include "ports/PreferencesStore.h"
#include "ports/Processes.h"
#include "ports/SystemLog.h"
#include "ports/TextCase.h"
#include "ports/UserFolders.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Exit statuses of `orvane`.
enum class ExitStatus : int { Success = 0, NotMade = 1, Usage = 2, Cancelled = 3, ScriptErrors = 4 };

/// What only the commands that run the preset engine need besides.
struct EnginePorts {
    Clock &clock;
    ProcessLauncher &processes;
    SystemLog &log;
    TextCase &textCase;
};

/// What every command works with. Made by `main`; borrowed by the commands for one run. Single thread.
struct CommandContext {
    PreferencesStore &preferences;
    FileSystem &fileSystem;
    FinderInformation &finderInformation;
    UserFolders &folders;
    DistributedNotifications &notifications;
    EnginePorts *engine = nullptr;        ///< always set by `main`; `show` and `create` need it
    CreationRecovery *recovery = nullptr; ///< always set by `main`; `recover` needs it
};

/// A command's words after its own name.
using CommandArguments = std::vector<std::string>;

/// One word of the command line: what it does and how. `main` answers `--help` and `--version` before `run` is called,
/// wherever they stand as options before `--`.
struct Command {
    const char *name;
    const char *summary;   ///< one line for `orvane --help`, to be translated
    std::string (*help)(); ///< whole text of `orvane NAME --help` in the user's language
    ExitStatus (*run)(CommandContext &context, const CommandArguments &arguments);
    std::span<const OptionRule> (*options)() = nullptr; ///< its options; may be null where none takes a value
};

// One function and one help text for each command, both defined in the command's own file.
ExitStatus runListCommand(CommandContext &context, const CommandArguments &arguments);
ExitStatus runShowCommand(CommandContext &context, const CommandArguments &arguments);
ExitStatus runCreateCommand(CommandContext &context, const CommandArguments &arguments);
ExitStatus runImportCommand(CommandContext &context, const CommandArguments &arguments);
ExitStatus runExportCommand(CommandContext &context, const CommandArguments &arguments);
ExitStatus runAddCommand(CommandContext &context, const CommandArguments &arguments);
ExitStatus runCheckCommand(CommandContext &context, const CommandArguments &arguments);
ExitStatus runMenuCommand(CommandContext &context, const CommandArguments &arguments);
ExitStatus runNotifyCommand(CommandContext &context, const CommandArguments &arguments);
ExitStatus runRecoverCommand(CommandContext &context, const CommandArguments &arguments);
[[nodiscard]] std::span<const OptionRule> createCommandOptions();
[[nodiscard]] std::span<const OptionRule> importCommandOptions();
[[nodiscard]] std::span<const OptionRule> menuCommandOptions();
[[nodiscard]] std::string listCommandHelp();
[[nodiscard]] std::string showCommandHelp();
[[nodiscard]] std::string createCommandHelp();
[[nodiscard]] std::string importCommandHelp();
[[nodiscard]] std::string exportCommandHelp();
[[nodiscard]] std::string addCommandHelp();
[[nodiscard]] std::string checkCommandHelp();
[[nodiscard]] std::string menuCommandHelp();
[[nodiscard]] std::string notifyCommandHelp();
[[nodiscard]] std::string recoverCommandHelp();

// Shared by the commands; defined in CommandSupport.cpp.

/// A usage error: "orvane: NAME: TEXT" and a hint at --help on standard error. Returns `ExitStatus::Usage`.
ExitStatus usageError(std::string_view command, std::string_view text);
/// A failure of the command: "orvane: TITLE: MESSAGE" on standard error, both translated. Returns `ExitStatus::NotMade`.
ExitStatus failure(std::string_view title, std::string_view message);
/// The same for an alert of the engine, which is the same in every language; either may be empty.
ExitStatus alert(std::string_view title, std::string_view message);
/// Position of the preset that an index or an exact label names. Nothing, after a message with the candidates on standard
/// error, when it is unknown or ambiguous. A word that is a valid index is an index, even where a label reads the same.
[[nodiscard]] std::optional<std::size_t> presetNamed(std::string_view word, const PropertyList &presets);
/// The array under `ORVPresets` (an empty one when absent). Nothing, after a message on standard error, when the
/// preferences file exists and cannot be read.
[[nodiscard]] std::optional<PropertyList> readPresets(CommandContext &context);

} // namespace orvane
