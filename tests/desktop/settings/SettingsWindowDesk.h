#pragma once

#include "desktop/qt/QtTestSupport.h"
#include "fakes/FakeDistributedNotifications.h"
#include "fakes/FakeWorkspace.h"

#include "platform/PropertyListTexts.h"
#include "platform/posix/PosixPreferencesStore.h"
#include "platform/qt/QtText.h"
#include "window/MessageBar.h"
#include "window/PresetTreeView.h"
#include "window/SettingsAdapters.h"
#include "window/SettingsModels.h"
#include "window/SettingsWindow.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <string>
#include <vector>

// The settings window over real files in a home of its own.

namespace orvane::test {

class SettingsWindowTest : public testing::Test {
protected:
    SettingsWindowTest();
    ~SettingsWindowTest() override;

    /// Starts a run of the program over what is in the home, and waits until its window has the keyboard.
    void start();
    /// Ends it as closing the window does.
    void stop();
    /// Ends it as a crash does: nothing more is stored.
    void crash();

    [[nodiscard]] std::string path(const std::string &below) const { return home.path().toStdString() + below; }
    [[nodiscard]] std::string preferencesFile() const { return paths.preferencesFile; }
    void writeFile(const std::string &path, const std::string &text) const;
    [[nodiscard]] static std::string readFile(const std::string &path);
    /// Preferences with these presets: labels, each with a folder "{Name}" and in it the folders "A" and "B" and the file "c.txt".
    void writePresets(const std::vector<std::string> &labels) const;
    /// The presets as they stand on disk, by a store of their own.
    [[nodiscard]] PropertyList diskPresets() const;
    [[nodiscard]] std::vector<std::string> diskLabels() const;
    /// The tree of a preset on disk: names in order, each level in parentheses, such as "A(x y) c.txt".
    [[nodiscard]] std::string diskTree(std::size_t preset) const;
    /// What another program does to the preferences: `from` becomes `to` in the file.
    void changeOnDisk(const std::string &from, const std::string &to) const;

    [[nodiscard]] SettingsContext &context() { return models->context(); }
    [[nodiscard]] PresetTreeView &tree() const { return *widget<PresetTreeView>("presetTree"); }
    [[nodiscard]] QListView &list() const { return *widget<QListView>("presetList"); }
    [[nodiscard]] MessageBar &bar(const char *name) const { return *widget<MessageBar>(name); }
    template <typename Kind> [[nodiscard]] Kind *widget(const char *name) const {
        auto *const found = childOf<Kind>(*window, name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    /// The item at the end of a path of names in the shown preset, such as "A/x".
    [[nodiscard]] ItemID item(const std::string &names);
    /// The field in which a name is being typed.
    [[nodiscard]] QLineEdit *editor() const;
    /// Types into whatever has the keyboard.
    static void keys(const QString &text);
    static void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Where the item's name is on the screen, in pixels of the X server.
    [[nodiscard]] QPoint placeOf(ItemID item);
    /// Drags with the real pointer.
    static void drag(QPoint from, QPoint to);
    /// Its text as the tree of a preset in the document, in the form of `diskTree`.
    [[nodiscard]] std::string shownTree();
    /// Drops files of a file manager, which proposes to move them, on an item of the tree. Returns what is said to be done with them.
    Qt::DropAction dropOn(const std::string &item, const std::vector<std::string> &paths);

    QTemporaryDir home{QStringLiteral("/dev/shm/orvane-settings-XXXXXX")};
    SettingsPaths paths;
    FakeDistributedNotifications notifications;
    FakeWorkspace workspace;
    std::unique_ptr<SettingsAdapters> adapters;
    std::unique_ptr<SettingsModels> models;
    std::unique_ptr<SettingsWindow> window;
};

} // namespace orvane::test
