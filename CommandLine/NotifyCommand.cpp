#include "Command.h"
#include "Options.h"

#include "presets/ORVPresetManager.h"

namespace orvane {

const char NotifyCommandHelp[] = "Usage: orvane notify\n"
                                 "\n"
                                 "Tells the running helper that the preferences have changed, so that it reads them anew.\n"
                                 "\n"
                                 "Exit status: 0 sent, 1 no session bus, 2 wrong usage.\n";

ExitStatus runNotifyCommand(CommandContext &context, const CommandArguments &arguments) {
    const ParsedOptions parsed = parseOptions(arguments, {});
    if (!parsed.error.empty()) {
        return usageError("notify", parsed.error);
    }
    if (!parsed.operands.empty()) {
        return usageError("notify", "unexpected '" + parsed.operands.front() + "'");
    }
    if (!context.notifications.post(ORVPresetConfigurationChangedNotification)) {
        return failure("Not sent", "the session bus cannot be reached");
    }
    return ExitStatus::Success;
}

} // namespace orvane
