#include "menubar/MenuBarController.h"

#include "presets/ORVDoing.h"
#include "presets/ORVEndlessTemplates.h"
#include "presets/ORVPresetManager.h"
#include "presets/ORVPropertyListReading.h"

#include <utility>
#include <vector>

namespace orvane {

namespace {

constexpr const char *PanelTitle = "Orvane: Choose Parent Folder";
constexpr const char *PanelPrompt = "Choose";

/// The label. A preset that has none still has its place in the menu and goes by its folder name there.
std::string titleOfPreset(const PropertyListValue &preset) {
    if (const PropertyListValue *label = preset.find("label"); ORVHasText(label)) {
        return ORVTextValue(label);
    }
    std::string directoryName = ORVTextValue(preset.find("directoryName"));
    return directoryName.empty() ? "(no label)" : std::move(directoryName);
}

} // namespace

MenuBarController::~MenuBarController() {
    _ports.notifications.removeObserver(this, ORVPresetConfigurationChangedNotification);
}

void MenuBarController::awakeFromNib() {
    reloadPrefs();
    _ports.notifications.addObserver(this, ORVPresetConfigurationChangedNotification, DistributedNotifications::Suspension::Coalesce,
                                     [this] { reloadPrefs(); });
}

void MenuBarController::showPreferences(const MenuItem & /*sender*/) {
    (void)_ports.systemPreferences.showPane(ORVPreferenceDomain); // deliberately no word about a failure
}

bool MenuBarController::validateMenuItem(const MenuItem & /*item*/) {
    return true;
}

void MenuBarController::reloadPrefs() {
    _removePresetItems();
    const std::optional<PropertyList> preferences = _ports.preferences.dictionaryWithContentsOfFile();
    _showOrHideStatusItem(preferences);
    const PropertyListValue *presets = preferences ? preferences->root().find(ORVPresetsKey) : nullptr;
    if (presets == nullptr) {
        return;
    }
    std::int32_t index = 0;
    for (const PropertyListValue &preset : presets->array()) {
        _insertPresetItem(preset, index++);
    }
}

void MenuBarController::_removePresetItems() {
    _endlessPresets.clear();
    std::size_t end = 0; // of the preset items on top, which end at the first fixed one
    while (end < _menuBarMenu.numberOfItems() && _menuBarMenu.itemAtIndex(end).tag == ORVPresetItemTag) {
        ++end;
    }
    while (end > 0) { // from below, so that thousands of them need not move up one by one
        _menuBarMenu.removeItemAtIndex(--end);
    }
}

void MenuBarController::_showOrHideStatusItem(const std::optional<PropertyList> &preferences) {
    // A file without the key hides the item, and no file at all shows it: both deliberate.
    if (preferences && !ORVBoolValue(preferences->root().find(ORVShowMenubarKey))) {
        _ports.statusBar.removeStatusItem(_statusItem);
        setStatusItem(nullptr);
    } else {
        setupStatusItem();
    }
}

void MenuBarController::_insertPresetItem(const PropertyListValue &preset, std::int32_t index) {
    MenuItem item;
    item.title = titleOfPreset(preset);
    item.tag = ORVPresetItemTag;
    item.representedObject = index;
    item.action = [this](const MenuItem &sender) { activatePreset(sender); };
    item.validate = validateMenuItem;
    _warnOfEndlessPreset(preset, index, item.title);
    _menuBarMenu.insertItemAtIndex(std::move(item), static_cast<std::size_t>(index));
}

void MenuBarController::_warnOfEndlessPreset(const PropertyListValue &preset, std::int32_t index, const std::string &title) {
    const std::optional<std::string> name = ORVFindEndlessTemplate(preset);
    if (!name) {
        return;
    }
    std::string warning = "Preset " + std::to_string(index) + " '" + title + "': looking for the variables of the name '" + *name +
                          "' never ends, so that the program hangs once the preset is chosen.";
    _ports.log.log("Warning: " + warning);
    _endlessPresets.emplace(index, std::move(warning));
}

void MenuBarController::setupStatusItem() {
    if (_statusItem) {
        return;
    }
    setStatusItem(_ports.statusBar.statusItemWithLength(StatusBar::VariableLength));
    if (!_statusItem) {
        return;
    }
    _statusItem->setTitle("");
    _statusItem->setImage(ORVMenuBarImage);
    _statusItem->setHighlightMode(true);
    _statusItem->setMenu(&_menuBarMenu);
}

void MenuBarController::activatePreset(const MenuItem &sender) {
    if (_isActivating) { // else the folder of the second would become the first one's as well
        _ports.application.activateIgnoringOtherApps(true);
        return;
    }
    const ORVDoing activation(_isActivating);
    const std::int32_t index = sender.representedObject.value_or(0); // kept: the menu, and the item with it, may change meanwhile
    _ports.preferences.synchronize();
    std::optional<std::string> parent = _frontFolder();
    if (!parent && !(parent = _chosenFolder())) {
        return;
    }
    ORVPresetManager *const manager = _ports.sharedManager();
    if (manager == nullptr) {
        return;
    }
    manager->setBasePath(parent);
    if (const auto endless = _endlessPresets.find(index); endless != _endlessPresets.end()) {
        _ports.log.log("It was chosen: " + endless->second);
    }
    manager->handlePresetClicked(index);
}

std::optional<std::string> MenuBarController::_frontFolder() {
    if (!_ports.frontWindow.fileManagerIsActive()) {
        return std::nullopt;
    }
    std::optional<std::string> folder = _ports.frontWindow.folder();
    return folder && !folder->empty() ? std::move(folder) : std::nullopt;
}

std::optional<std::string> MenuBarController::_chosenFolder() {
    OpenPanelSettings settings;
    settings.title = PanelTitle;
    settings.prompt = PanelPrompt;
    settings.canChooseFiles = false;
    settings.canChooseDirectories = true;
    settings.canCreateDirectories = true;
    _ports.application.activateIgnoringOtherApps(true);
    const std::optional<std::vector<std::string>> filenames = _ports.openPanel.runModal(settings);
    const bool isChosen = filenames && !filenames->empty() && !filenames->front().empty(); // no path: no folder was chosen
    return isChosen ? std::optional(filenames->front()) : std::nullopt;
}

} // namespace orvane
