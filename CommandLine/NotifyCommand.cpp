#include "Command.h"
#include "Options.h"
#include "Translation.h"

#include "presets/ORVPresetManager.h"

namespace orvane {

std::string notifyCommandHelp() {
    return localized("Usage: orvane notify\n"
                     "\n"
                     "Tells the running helper that the preferences have changed, so that it reads\n"
                     "them anew.\n"
                     "\n"
                     "Exit status: 0 sent, 1 no session bus, 2 wrong usage.\n");
}

ExitStatus runNotifyCommand(CommandContext &context, const CommandArguments &arguments) {
    const ParsedOptions parsed = parseOptions(arguments, {});
    if (!parsed.error.empty()) {
        return usageError("notify", parsed.error);
    }
    if (!parsed.operands.empty()) {
        return usageError("notify", localized("unexpected '%1'", {parsed.operands.front()}));
    }
    if (!context.notifications.post(ORVPresetConfigurationChangedNotification)) {
        return failure(localized("Not sent"), localized("the session bus cannot be reached"));
    }
    return ExitStatus::Success;
}

} // namespace orvane
