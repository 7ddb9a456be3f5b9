#include "platform/filemanagers/AccessibleTree.h"
#include "platform/filemanagers/BusCalls.h"
#include "platform/filemanagers/FileManager.h"
#include "platform/filemanagers/FolderAddress.h"
#include "platform/filemanagers/WindowTitle.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QMap>
#include <QStringList>

#include <algorithm>

namespace orvane {

namespace {

using namespace Qt::StringLiterals;

using Locations = QMap<QString, QStringList>; ///< the tabs' URIs by the path of the window's object

constexpr TitleRule RuleOfTitle = {nullptr, false, false, "nautilus", "Home", nullptr};

/// Nautilus 43: the one with a question on the session bus. It gives the locations of all tabs of every window; which tab is in
/// front, title and path bar have to tell.
class Nautilus final : public FileManager {
public:
    [[nodiscard]] const char *name() const override { return "Nautilus"; }
    [[nodiscard]] bool hasClass(const std::string &className) const override {
        return className == "org.gnome.nautilus" || className == "nautilus";
    }
    [[nodiscard]] std::optional<std::string> folder(const ApplicationWindow &window, const Surroundings &surroundings,
                                                    const Deadline &deadline) const override;
};

/// Asked on its own connection: the name org.freedesktop.FileManager1 may be another file manager's.
Locations openLocations(const BusCalls &bus, const QString &service) {
    const QString interface = u"org.freedesktop.FileManager1"_s;
    const auto value = bus.property({service, u"/org/freedesktop/FileManager1"_s, interface, u"OpenWindowsWithLocations"_s});
    Locations locations;
    if (value && value->canConvert<QDBusArgument>()) {
        const auto argument = value->value<QDBusArgument>();
        if (argument.currentSignature() == u"a{sas}"_s) {
            argument >> locations;
        }
    }
    return locations;
}

/// Closed windows stay in the list for a while; their objects do not answer any more.
bool isAlive(const BusCalls &bus, const QString &service, const QString &window) {
    return bus.call({service, window, u"org.gtk.Actions"_s, u"List"_s}).has_value();
}

QStringList locationsOf(const BusCalls &bus, const QString &service, const ApplicationWindow &window) {
    const Locations locations = openLocations(bus, service);
    if (!window.gtkWindowPath.empty()) {
        return locations.value(QString::fromStdString(window.gtkWindowPath));
    }
    QStringList all;
    for (auto entry = locations.begin(); entry != locations.end(); ++entry) {
        if (isAlive(bus, service, entry.key())) {
            all << entry.value();
        }
    }
    return all;
}

/// The texts of the path bar's buttons, from the root on. GTK 4 calls every such button "GtkButton" and describes it by its text.
std::vector<std::string> pathBar(const ApplicationWindow &window, const Deadline &deadline) {
    const auto contents = readWindowContents(window.pid, window.title, accessible_role::PushButton, deadline);
    std::vector<std::string> names;
    for (const ButtonRow &row : contents.value_or(WindowContents()).rows) {
        for (const PathButton &button : row) {
            if (button.name == "GtkButton") {
                names.push_back(button.description);
            }
        }
    }
    return names;
}

/// A tab that the title may speak of.
struct Tab {
    std::string shown;               ///< its path for comparison with the path bar, on whatever machine that is
    std::optional<std::string> path; ///< where it is here; nothing for virtual folders
};

/// Nothing for a tab that the title cannot speak of. Virtual roots, such as "trash:///", have titles of their own.
std::optional<Tab> tabOf(const std::string &location, const ApplicationWindow &window, const Surroundings &surroundings) {
    Tab tab = {{}, pathOfLocation(location, surroundings.runtimeFolder)};
    if (tab.path) {
        tab.shown = *tab.path;
        return titleAgreesWithPath(RuleOfTitle, window.title, tab.shown, surroundings.home) ? std::optional(tab) : std::nullopt;
    }
    const std::size_t authority = location.find("://");
    const std::size_t slash = authority == std::string::npos ? std::string::npos : location.find('/', authority + 3);
    tab.shown = slash == std::string::npos ? "/" : pathOfLocation("file://" + location.substr(slash), {}).value_or("/");
    const bool isPossible = tab.shown == "/" || lastComponent(tab.shown) == window.title;
    return isPossible ? std::optional(tab) : std::nullopt;
}

/// The only one of which the path bar shows as many components as told.
const Tab *theOnlyTab(const std::vector<Tab> &tabs, const std::vector<std::string> &bar, std::size_t components) {
    const Tab *found = nullptr;
    for (const Tab &tab : tabs) {
        if (commonTail(tab.shown, bar) != components) {
            continue;
        }
        if (found != nullptr) {
            return nullptr;
        }
        found = &tab;
    }
    return found;
}

/// The path bar begins with a button for the machine, the home folder, the disk or the virtual place; the others are components.
/// A disk may be called as the folder that it is mounted on.
std::optional<std::string> frontTab(const std::vector<Tab> &tabs, const std::vector<std::string> &bar) {
    if (bar.empty()) {
        return std::nullopt;
    }
    const Tab *tab = theOnlyTab(tabs, bar, bar.size() - 1);
    const bool allLocal = std::all_of(tabs.begin(), tabs.end(), [](const Tab &each) { return each.path.has_value(); });
    if (tab == nullptr && allLocal) {
        tab = theOnlyTab(tabs, bar, bar.size());
    }
    return tab != nullptr ? tab->path : std::nullopt;
}

std::optional<std::string> Nautilus::folder(const ApplicationWindow &window, const Surroundings &surroundings,
                                            const Deadline &deadline) const {
    const BusCalls bus(QDBusConnection::sessionBus(), deadline);
    const QString service = window.gtkBusName.empty() ? u"org.gnome.Nautilus"_s : QString::fromStdString(window.gtkBusName);
    QStringList locations = locationsOf(bus, service, window);
    locations.removeDuplicates();
    std::vector<Tab> tabs;
    for (const QString &location : locations) {
        if (auto tab = tabOf(location.toStdString(), window, surroundings)) {
            tabs.push_back(std::move(*tab));
        }
    }
    std::optional<std::string> found;
    if (tabs.size() == 1) {
        found = tabs.front().path;
    } else if (tabs.size() > 1) {
        found = frontTab(tabs, pathBar(window, deadline));
    }
    return found && isFolder(*found) ? found : std::nullopt;
}

} // namespace

std::unique_ptr<FileManager> makeNautilus() {
    return std::make_unique<Nautilus>();
}

} // namespace orvane
