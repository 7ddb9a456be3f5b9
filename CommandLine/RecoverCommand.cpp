#include "Command.h"
#include "CommandSupport.h"
#include "Options.h"
#include "Translation.h"

#include <array>

// `orvane recover`: what creations left that were killed half-way, and its removal.

namespace orvane {

namespace {

constexpr const char *Name = "recover";
constexpr std::array<OptionRule, 2> Rules = {{{.name = "remove", .mustBeWhole = true}, {.name = "keep"}}};
constexpr std::size_t MostShown = 20; ///< changed items

std::string textOf(const CreationRemains &remains) {
    std::string text = printable(remains.topPath) + "\n  ";
    text += localizedCount("%1 item as the creation left it", "%1 items as the creation left them", remains.items) + "\n";
    for (std::size_t i = 0; i < remains.changed.size() && i < MostShown; ++i) {
        text += "  " + localized("changed since, and never removed: %1", {printable(remains.changed[i])}) + "\n";
    }
    if (remains.changed.size() > MostShown) {
        text += "  " + localizedCount("and %1 more", "and %1 more", remains.changed.size() - MostShown) + "\n";
    }
    return text;
}

} // namespace

std::string recoverCommandHelp() {
    return localized("Usage: orvane recover [--remove | --keep]\n"
                     "\n"
                     "Shows what creations left that were killed half-way: the path of each top\n"
                     "folder, how many items are as they were left, and what was changed since.\n"
                     "\n"
                     "  --remove   remove what those creations made, and nothing else: what was\n"
                     "             changed since stays, and so do the folders that hold it or\n"
                     "             anything foreign\n"
                     "  --keep     keep everything, and do not show it again\n"
                     "\n"
                     "Creations are noted in $XDG_RUNTIME_DIR, which a restart of the machine\n"
                     "empties; without it, or where it is not in memory, they are not noted.\n"
                     "\n"
                     "Exit status: 0 done, 1 something could not be removed, 2 wrong usage.\n");
}

ExitStatus runRecoverCommand(CommandContext &context, const CommandArguments &arguments) {
    const ParsedOptions parsed = parseOptions(arguments, Rules);
    if (!parsed.error.empty() || !parsed.operands.empty()) {
        return usageError(Name, !parsed.error.empty() ? parsed.error : localized("unexpected '%1'", {parsed.operands.front()}));
    }
    if (parsed.has("remove") && parsed.has("keep")) {
        return usageError(Name, localized("--remove and --keep exclude each other"));
    }
    ExitStatus status = ExitStatus::Success;
    std::string text;
    for (const CreationRemains &remains : context.recovery->remains()) {
        text += textOf(remains);
        if (parsed.has("keep")) {
            context.recovery->keep(remains);
        } else if (parsed.has("remove")) {
            const std::size_t removed = context.recovery->remove(remains);
            text += "  " + localizedCount("removed %1 item", "removed %1 items", removed) + "\n";
            status = removed < remains.items ? ExitStatus::NotMade : status;
        }
    }
    const ExitStatus written = writeStandardOutput(text);
    return status == ExitStatus::Success ? written : status;
}

} // namespace orvane
