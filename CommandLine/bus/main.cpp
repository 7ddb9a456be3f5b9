#include "StandardStreams.h"
#include "Translation.h"

#include "platform/dbus/SdBusHelperMenu.h"
#include "platform/dbus/SdBusNotifications.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

// `orvane-bus`: what `orvane` has to say on the session bus. A program of its own, because the library for it brings
// half a dozen others along, whose loading takes longer than making a small hierarchy.
//
//   orvane-bus notify NAME     posts the notification
//   orvane-bus menu [FOLDER]   has the helper's menu popped up; FOLDER is an absolute path
//
// Exit status 0 done, 1 not done (`menu` says why on standard error), 2 wrong usage.

namespace {

enum Status : int { Done = 0, NotDone = 1, WrongUsage = 2 };

using orvane::forTranslation;
using orvane::localized;

/// What the menu may answer; texts of the bus itself stay as they come.
[[maybe_unused]] constexpr std::array Answers = {
    forTranslation("the session bus cannot be reached"),
    forTranslation("the message cannot be written: texts on the bus are UTF-8"),
    forTranslation("the helper does not run and cannot be started"),
    forTranslation("the helper does not answer"),
};

int notify(std::string_view name) {
    return orvane::SdBusNotifications().post(name) ? Done : NotDone;
}

int showMenu(const std::optional<std::string> &folder) {
    std::string why;
    if (orvane::SdBusHelperMenu().show(folder, why)) {
        return Done;
    }
    const std::string said = orvane::withReason(localized("Menu not shown"), localized(why.c_str()));
    orvane::writeStandardError("orvane: " + said + "\n");
    return NotDone;
}

} // namespace

int main(int count, char **words) {
    orvane::speakUsersLanguage();
    const std::string_view verb = count > 1 ? words[1] : "";
    if (verb == "notify" && count == 3) {
        return notify(words[2]);
    }
    if (verb == "menu" && count <= 3) {
        return showMenu(count == 3 ? std::optional<std::string>(words[2]) : std::nullopt);
    }
    orvane::writeStandardError("usage: orvane-bus notify NAME | orvane-bus menu [FOLDER]\n");
    return WrongUsage;
}
