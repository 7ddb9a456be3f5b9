#include "Command.h"
#include "CommandSupport.h"
#include "Options.h"

#include <array>

// `orvane recover`: what creations left that were killed half-way, and its removal.

namespace orvane {

namespace {

constexpr const char *Name = "recover";
constexpr std::array<OptionRule, 2> Rules = {{{"remove"}, {"keep"}}};
constexpr std::size_t MostShown = 20; ///< changed items

std::string counted(std::size_t items) {
    return std::to_string(items) + (items == 1 ? " item" : " items");
}

std::string textOf(const CreationRemains &remains) {
    std::string text = printable(remains.topPath) + "\n  " + counted(remains.items) + " as the creation left " +
                       (remains.items == 1 ? "it" : "them") + "\n";
    for (std::size_t i = 0; i < remains.changed.size() && i < MostShown; ++i) {
        text += "  changed since, and never removed: " + printable(remains.changed[i]) + "\n";
    }
    if (remains.changed.size() > MostShown) {
        text += "  and " + std::to_string(remains.changed.size() - MostShown) + " more\n";
    }
    return text;
}

} // namespace

const char RecoverCommandHelp[] = "Usage: orvane recover [--remove | --keep]\n"
                                  "\n"
                                  "Shows what creations left that were killed half-way: the path of each top folder, how\n"
                                  "many items are as they were left, and what was changed since.\n"
                                  "\n"
                                  "  --remove   remove what those creations made, and nothing else: what was changed since\n"
                                  "             stays, and so do the folders that hold it or anything foreign\n"
                                  "  --keep     keep everything, and do not show it again\n"
                                  "\n"
                                  "Creations are noted in $XDG_RUNTIME_DIR, which a restart of the machine empties; without\n"
                                  "it they are not noted.\n"
                                  "\n"
                                  "Exit status: 0 done, 1 something could not be removed, 2 wrong usage.\n";

ExitStatus runRecoverCommand(CommandContext &context, const CommandArguments &arguments) {
    const ParsedOptions parsed = parseOptions(arguments, Rules);
    if (!parsed.error.empty() || !parsed.operands.empty()) {
        return usageError(Name, !parsed.error.empty() ? parsed.error : "unexpected '" + parsed.operands.front() + "'");
    }
    if (parsed.has("remove") && parsed.has("keep")) {
        return usageError(Name, "--remove and --keep exclude each other");
    }
    ExitStatus status = ExitStatus::Success;
    std::string text;
    for (const CreationRemains &remains : context.recovery->remains()) {
        text += textOf(remains);
        if (parsed.has("keep")) {
            context.recovery->keep(remains);
        } else if (parsed.has("remove")) {
            const std::size_t removed = context.recovery->remove(remains);
            text += "  removed " + counted(removed) + "\n";
            status = removed < remains.items ? ExitStatus::NotMade : status;
        }
    }
    const ExitStatus written = writeStandardOutput(text);
    return status == ExitStatus::Success ? written : status;
}

} // namespace orvane
