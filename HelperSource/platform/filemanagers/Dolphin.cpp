#include "platform/filemanagers/AccessibleTree.h"
#include "platform/filemanagers/BusCalls.h"
#include "platform/filemanagers/FileManager.h"
#include "platform/filemanagers/FolderAddress.h"
#include "platform/filemanagers/WindowTitle.h"

#include <span>

#include <QDBusConnection>

namespace orvane {

namespace {

using namespace Qt::StringLiterals;

constexpr TitleRule RuleOfTitle = {" \u2014 ", true, false, "dolphin", "Home", nullptr};

/// Dolphin 22.12: KDE's activity manager knows the folder of the focused view, Dolphin itself only whether a folder is open in
/// any of its views. The breadcrumbs are the second way. Its setting ShowFullPathInTitlebar is the shortest.
class Dolphin final : public FileManager {
public:
    [[nodiscard]] const char *name() const override { return "Dolphin"; }
    [[nodiscard]] bool hasClass(const std::string &className) const override {
        return className == "dolphin" || className == "org.kde.dolphin";
    }
    [[nodiscard]] std::optional<std::string> folder(const ApplicationWindow &window, const Surroundings &surroundings,
                                                    const Deadline &deadline) const override;
};

/// It tells "file:///a" from "file:///a/", whichever the user came by.
bool isOpen(const BusCalls &bus, const ApplicationWindow &window, const std::string &path) {
    const QString service = u"org.kde.dolphin-"_s + QString::number(window.pid);
    const BusMethod method = {service, u"/dolphin/Dolphin_1"_s, u"org.kde.dolphin.MainWindow"_s, u"isUrlOpen"_s};
    const QString url = QString::fromStdString(readableURL(path));
    return bus.call(method, {url}).value_or(QVariant()).toBool() || bus.call(method, {QString(url + u'/')}).value_or(QVariant()).toBool();
}

/// The folder of the view that has the focus. Only where windows are X11's: under Wayland the activity manager was seen to keep
/// the folder of a window that had been closed.
std::optional<std::string> focusedFolder(const BusCalls &bus, const ApplicationWindow &window) {
    if (!window.isOnX11) {
        return std::nullopt;
    }
    const BusMethod method = {u"org.kde.ActivityManager"_s, u"/SLC"_s, u"org.kde.ActivityManager.SLC"_s, u"focussedResourceURI"_s};
    return pathOfReadableURL(bus.call(method).value_or(QVariant()).toString().toStdString());
}

/// The path of the breadcrumbs from that button on, which is "/" or else the place that the home folder is.
std::optional<std::string> pathOfBreadcrumbs(std::span<const PathButton> crumbs, const std::string &home) {
    if (crumbs.empty() || crumbs.front().name.empty()) {
        return std::nullopt;
    }
    std::string path = crumbs.front().name == "/" ? std::string() : withoutTrailingSlashes(home);
    for (const PathButton &crumb : crumbs.subspan(1)) {
        if (crumb.name.empty() || crumb.name.find('/') != std::string::npos) {
            return std::nullopt;
        }
        path += "/" + crumb.name;
    }
    return path.empty() ? "/" : path;
}

/// The folder of a row of buttons, if it agrees with the title and is open. Before the breadcrumbs stand buttons without a text; in Dolphin
/// 25.04 one of them has a name.
std::optional<std::string> folderOfRow(const BusCalls &bus, const ApplicationWindow &window, std::span<const PathButton> row,
                                       const std::string &home) {
    while (!row.empty() && row.front().name.empty()) {
        row = row.subspan(1);
    }
    for (int attempt = 0; attempt < 2 && !row.empty(); ++attempt, row = row.subspan(1)) {
        const auto path = pathOfBreadcrumbs(row, home);
        if (path && titleAgreesWithPath(RuleOfTitle, window.title, *path, home) && isOpen(bus, window, *path)) {
            return path;
        }
    }
    return std::nullopt;
}

std::optional<std::string> folderOfBreadcrumbs(const BusCalls &bus, const ApplicationWindow &window, const std::string &home) {
    auto contents = readWindowContents(window.pid, window.title, accessible_role::PushButton, bus.deadline());
    if (!contents) { // Dolphin 25.04 calls itself by the folder alone there
        contents =
            readWindowContents(window.pid, folderPartOfTitle(RuleOfTitle, window.title), accessible_role::PushButton, bus.deadline());
    }
    std::optional<std::string> found;
    for (const ButtonRow &row : contents.value_or(WindowContents()).rows) {
        const auto path = folderOfRow(bus, window, row, home);
        if (path && found && found != path) {
            return std::nullopt;
        }
        found = path ? path : found;
    }
    return found;
}

std::optional<std::string> Dolphin::folder(const ApplicationWindow &window, const Surroundings &surroundings,
                                           const Deadline &deadline) const {
    std::optional<std::string> found = fullPathInTitle(RuleOfTitle, window.title);
    if (!found && window.pid != 0) {
        const BusCalls bus(QDBusConnection::sessionBus(), deadline);
        found = focusedFolder(bus, window);
        if (!found || !titleAgreesWithPath(RuleOfTitle, window.title, *found, surroundings.home) || !isOpen(bus, window, *found)) {
            found = folderOfBreadcrumbs(bus, window, surroundings.home);
        }
    }
    return found && isFolder(*found) ? found : std::nullopt;
}

} // namespace

std::unique_ptr<FileManager> makeDolphin() {
    return std::make_unique<Dolphin>();
}

} // namespace orvane
