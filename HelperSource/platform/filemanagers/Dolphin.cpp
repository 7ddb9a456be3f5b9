#include "platform/filemanagers/AccessibleTree.h"
#include "platform/filemanagers/BusCalls.h"
#include "platform/filemanagers/FileManager.h"
#include "platform/filemanagers/FolderAddress.h"
#include "platform/filemanagers/WindowTitle.h"

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

/// The path of a row of breadcrumbs: behind buttons without a text stands "/", or else the place that the home folder is.
std::optional<std::string> pathOfBreadcrumbs(const ButtonRow &row, const std::string &home) {
    std::size_t first = 0;
    while (first < row.size() && row[first].name.empty()) {
        ++first;
    }
    if (first == row.size()) {
        return std::nullopt;
    }
    std::string path = row[first].name == "/" ? std::string() : withoutTrailingSlashes(home);
    for (std::size_t index = first + 1; index < row.size(); ++index) {
        if (row[index].name.empty() || row[index].name.find('/') != std::string::npos) {
            return std::nullopt;
        }
        path += "/" + row[index].name;
    }
    return path.empty() ? "/" : path;
}

std::optional<std::string> folderOfBreadcrumbs(const BusCalls &bus, const ApplicationWindow &window, const std::string &home) {
    const auto contents = readWindowContents(window.pid, window.title, accessible_role::PushButton, bus.deadline());
    std::optional<std::string> found;
    for (const ButtonRow &row : contents.value_or(WindowContents()).rows) {
        const auto path = pathOfBreadcrumbs(row, home);
        if (!path || !titleAgreesWithPath(RuleOfTitle, window.title, *path, home) || !isOpen(bus, window, *path)) {
            continue;
        }
        if (found && found != path) {
            return std::nullopt;
        }
        found = path;
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
