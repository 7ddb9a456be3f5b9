#include "BusProgram.h"
#include "Command.h"
#include "Options.h"
#include "ParentFolder.h"
#include "Terminal.h"
#include "Translation.h"

#include "hotkeys/HotKeyAdvice.h"
#include "platform/posix/PosixHotKeyStatement.h"
#include "platform/posix/PosixUserFolders.h"
#include "ports/Sentence.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace orvane {

namespace {

constexpr const char *Name = "menu";
constexpr std::array<OptionRule, 1> Rules = {{{"in", true}}};
constexpr const char *CommandToBind = "orvane menu";
/// What the way by terminal begins with, where there is one; commands follow.
constexpr const char *InTerminal = forTranslation("Or in a terminal, if you have no custom shortcuts yet:");
constexpr std::size_t MostColumns = 80;

/// The line with line feeds for blanks wherever it would become wider than a terminal.
std::string wrappedLine(std::string_view line) {
    std::string result;
    std::size_t columns = 0;
    while (!line.empty()) {
        const std::string_view word = line.substr(0, line.find(' '));
        const std::size_t width = columnsOf(word);
        if (!result.empty()) {
            const bool fits = columns + 1 + width <= MostColumns;
            result += fits ? ' ' : '\n';
            columns = fits ? columns + 1 : 0;
        }
        result += word;
        columns += width;
        line.remove_prefix(std::min(word.size() + 1, line.size()));
    }
    return result;
}

/// Lines of any width made to fit, but for those that begin with a blank: commands and configuration, to be copied as they are.
std::string wrapped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        result.append(line.starts_with(' ') ? std::string(line) : wrappedLine(line)) += '\n';
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return result;
}

std::string_view currentDesktop() {
    const char *const desktop = std::getenv("XDG_CURRENT_DESKTOP");
    return desktop == nullptr ? "" : desktop;
}

/// How a key is bound on this desktop, as lines of any width.
std::string localizedInstructions() {
    const ORVHotKeyTexts texts = ORVHotKeyTextsOf(currentDesktop());
    std::string text = localized(texts.start, {CommandToBind}) + " " + localized(texts.place, {CommandToBind});
    std::string shell = textWithArguments(texts.shell, {CommandToBind});
    if (shell.starts_with(InTerminal)) {
        shell.replace(0, std::strlen(InTerminal), localized(InTerminal));
    }
    return text + (shell.empty() ? "" : "\n") + shell;
}

/// What a helper says in English, which may end in how a key is bound on its desktop, most likely this one.
std::string localizedStatement(const std::string &statement) {
    const std::string advice = ORVHotKeyAdvice(currentDesktop());
    if (!statement.ends_with(advice)) {
        return localizedSentence(statement);
    }
    const std::string why = statement.substr(0, statement.size() - advice.size());
    const std::string said = why.empty() ? "" : localizedSentence(why.substr(0, why.find_last_not_of(' ') + 1)) + "\n";
    return said + localized(ORVHotKeyTextsOf(currentDesktop()).why) + "\n" + localizedInstructions();
}

} // namespace

std::span<const OptionRule> menuCommandOptions() {
    return Rules;
}

/// At its end: what the running helper says of its hot key; when none runs, how a key is bound on this desktop.
std::string menuCommandHelp() {
    std::string text = localized("Usage: orvane menu [--in DIR]\n"
                                 "\n"
                                 "Pops the running helper's menu up, and starts the helper first when it does not\n"
                                 "run. Bind this command to a key in the desktop's settings where programs cannot\n"
                                 "register hot keys themselves, as on most Wayland desktops, or use it as an entry\n"
                                 "of a file manager's context menu.\n"
                                 "\n"
                                 "  --in DIR   make the chosen preset's folder in DIR; without it in the folder of\n"
                                 "             the front window, or where the helper asks for\n"
                                 "\n"
                                 "Exit status: 0 the helper has taken it, 1 no session bus or no helper, 2 wrong\n"
                                 "usage.\n");
    text += '\n';
    PosixUserFolders folders;
    if (const auto statement = PosixHotKeyStatement::ofDirectory(folders.stateDirectory())) {
        return text + wrapped(localized("The running helper says: %1", {localizedStatement(*statement)}));
    }
    return text + localized("On this desktop:") + "\n" + wrapped(localizedInstructions());
}

ExitStatus runMenuCommand(CommandContext & /*context*/, const CommandArguments &arguments) {
    const ParsedOptions parsed = parseOptions(arguments, Rules);
    if (!parsed.error.empty()) {
        return usageError(Name, parsed.error);
    }
    if (!parsed.operands.empty()) {
        return usageError(Name, localized("unexpected '%1'", {parsed.operands.front()}));
    }
    CommandArguments words{"menu"};
    if (const auto in = parsed.lastValue("in")) {
        std::string problem;
        words.push_back(parentFolder(in, problem));
        if (!problem.empty()) {
            return usageError(Name, withReason("--in", problem));
        }
    }
    becomeBusProgram(words);
    return failure(localized("Menu not shown"), localized("orvane-bus cannot be started: %1", {textOfError(errno)}));
}

} // namespace orvane
