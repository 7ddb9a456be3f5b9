#include "SettingsWindowDesk.h"

#include "fakes/FakeSystemLog.h"

#include "presets/ORVPresetManager.h"

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

#include <fstream>
#include <initializer_list>
#include <sstream>

namespace orvane::test {

namespace {

std::string textOfTree(const PropertyListValue &folder) {
    std::string text;
    const PropertyListValue *children = folder.find("children");
    if (children == nullptr) {
        return text;
    }
    for (const PropertyListValue &child : children->array()) {
        const PropertyListValue *name = child.find("filename");
        text += text.empty() ? "" : " ";
        text += name == nullptr ? "?" : std::string(name->string());
        const std::string inside = textOfTree(child);
        text += inside.empty() ? "" : "(" + inside + ")";
    }
    return text;
}

} // namespace

SettingsWindowTest::SettingsWindowTest() {
    const auto set = [this](const char *name, const char *below) { qputenv(name, QByteArray::fromStdString(path(below))); };
    set("HOME", "");
    set("XDG_DATA_HOME", "/.local/share");
    set("XDG_STATE_HOME", "/.local/state");
    set("XDG_CONFIG_HOME", "/.config");
    set("TMPDIR", "/tmp");
    QDir().mkpath(QtTextOf(path("/tmp")));
    paths = SettingsAdapters::pathsOfUser(environment("ORVANE_TEST_RESOURCES"));
}

SettingsWindowTest::~SettingsWindowTest() {
    crash();
}

void SettingsWindowTest::start() {
    adapters = std::make_unique<SettingsAdapters>(paths, notifications, workspace, "/usr/bin/orvane-helper");
    models = std::make_unique<SettingsModels>(adapters->ports(), paths);
    window = std::make_unique<SettingsWindow>(models->context());
    application().bringToFront(*window);
    ASSERT_TRUE(waitUntil([this] { return window->isActiveWindow() && window->windowHandle()->isExposed(); }));
}

void SettingsWindowTest::stop() {
    if (window != nullptr) {
        EXPECT_TRUE(window->close());
    }
    crash();
}

void SettingsWindowTest::crash() {
    window.reset();
    models.reset();
    adapters.reset();
}

void SettingsWindowTest::writeFile(const std::string &path, const std::string &text) const {
    QDir().mkpath(QFileInfo(QtTextOf(path)).path());
    std::ofstream(path, std::ios::binary) << text;
}

std::string SettingsWindowTest::readFile(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

void SettingsWindowTest::writePresets(const std::vector<std::string> &labels) const {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n\t<key>foreign</key>\n"
                       "\t<integer>7</integer>\n\t<key>ORVPresets</key>\n\t<array>\n";
    const std::string nodes = "<array><dict><key>filename</key><string>A</string><key>isFolder</key><true/><key>children</key><array/>"
                              "<key>x-unknown</key><real>1.5</real></dict>"
                              "<dict><key>filename</key><string>B</string><key>isFolder</key><true/><key>children</key><array/></dict>"
                              "<dict><key>filename</key><string>c.txt</string><key>isFolder</key><false/></dict></array>";
    for (const std::string &label : labels) {
        text += "\t\t<dict><key>label</key><string>" + label +
                "</string><key>directoryName</key><string>{Name}</string><key>x-preset</key><string>kept</string><key>fileHierarchy</key>"
                "<dict><key>isFolder</key><true/><key>children</key>" +
                nodes + "</dict></dict>\n";
    }
    writeFile(preferencesFile(), text + "\t</array>\n</dict>\n</plist>\n");
}

PropertyList SettingsWindowTest::diskPresets() const {
    FakeSystemLog log;
    PosixPreferencesStore store(preferencesFile(), path("/other.lock"), log);
    static_cast<void>(store.synchronize());
    return store.copyAppValue(ORVPresetsKey).value_or(PropertyList());
}

std::vector<std::string> SettingsWindowTest::diskLabels() const {
    std::vector<std::string> labels;
    const PropertyList presets = diskPresets();
    for (const PropertyListValue &preset : presets.root().array()) {
        const PropertyListValue *label = preset.find("label");
        labels.emplace_back(label == nullptr ? "?" : label->string());
    }
    return labels;
}

std::string SettingsWindowTest::diskTree(std::size_t preset) const {
    const PropertyList presets = diskPresets();
    if (preset >= presets.root().array().size()) {
        return "no such preset";
    }
    const PropertyListValue *tree = presets.root().array()[preset].find("fileHierarchy");
    return tree == nullptr ? "no tree" : textOfTree(*tree);
}

std::string SettingsWindowTest::shownTree() {
    const PropertyList record = context().presets.record(tree().presetModel().preset());
    const PropertyListValue *top = record.root().find("fileHierarchy");
    return top == nullptr ? "no tree" : textOfTree(*top);
}

void SettingsWindowTest::changeOnDisk(const std::string &from, const std::string &to) const {
    std::string text = readFile(preferencesFile());
    const std::size_t found = text.find(from);
    ASSERT_NE(found, std::string::npos) << from << " is not in\n" << text;
    // As programs do it: as a whole, by another file.
    writeFile(preferencesFile() + ".new", text.replace(found, from.size(), to));
    ASSERT_EQ(std::rename((preferencesFile() + ".new").c_str(), preferencesFile().c_str()), 0);
}

ItemID SettingsWindowTest::item(const std::string &names) {
    const PresetDocument &document = context().presets;
    ItemID found = document.treeOf(tree().presetModel().preset());
    for (const QString &name : QtTextOf(names).split(u'/', Qt::SkipEmptyParts)) {
        ItemID next = NoItem;
        for (std::size_t i = 0; i < document.numberOfChildren(found); ++i) {
            if (document.filename(document.childAt(found, i)) == QtUtf8Of(name)) {
                next = document.childAt(found, i);
            }
        }
        EXPECT_NE(next, NoItem) << names;
        if (next == NoItem) {
            return found;
        }
        found = next;
    }
    return found;
}

QLineEdit *SettingsWindowTest::editor() const {
    auto *const field = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    return field != nullptr && field->objectName() == u"cellEditor" ? field : nullptr;
}

void SettingsWindowTest::keys(const QString &text) {
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    QTest::keyClicks(QApplication::focusWidget(), text);
}

void SettingsWindowTest::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    QCoreApplication::processEvents();
}

Qt::DropAction SettingsWindowTest::dropOn(const std::string &target, const std::vector<std::string> &files) {
    QMimeData data;
    QList<QUrl> urls;
    for (const std::string &file : files) {
        urls.append(QUrl::fromLocalFile(QtTextOf(path(file))));
    }
    data.setUrls(urls);
    constexpr Qt::DropActions Possible = Qt::MoveAction | Qt::CopyAction;
    const QPoint place = tree().visualRect(tree().presetModel().indexOfItem(item(target))).center();
    QDragEnterEvent enter(place, Possible, &data, Qt::LeftButton, Qt::ShiftModifier); // which asks for moving
    QDragMoveEvent move(place, Possible, &data, Qt::LeftButton, Qt::ShiftModifier);
    QDropEvent drop(place, Possible, &data, Qt::LeftButton, Qt::ShiftModifier);
    for (QDropEvent *const event : std::initializer_list<QDropEvent *>{&enter, &move, &drop}) {
        EXPECT_EQ(event->proposedAction(), Qt::MoveAction);
        QApplication::sendEvent(tree().viewport(), event);
        EXPECT_TRUE(event->isAccepted());
    }
    EXPECT_EQ(move.dropAction(), drop.dropAction());
    return drop.dropAction();
}

QPoint SettingsWindowTest::placeOf(ItemID item) {
    const QRect rect = tree().visualRect(tree().presetModel().indexOfItem(item));
    return tree().viewport()->mapToGlobal(QPoint(rect.left() + 40, rect.center().y())) * tree().devicePixelRatioF();
}

void SettingsWindowTest::drag(QPoint from, QPoint to) {
    const auto at = [](QPoint point) { return std::to_string(point.x()) + " " + std::to_string(point.y()); };
    User user;
    user.then([from, at] { xdotool("mousemove " + at(from) + " mousedown 1"); });
    // A drag begins some pixels from where the button went down, and its target hears of several places on the way. Meanwhile the
    // drag has an event loop of its own.
    for (int step = 1; step <= 8; ++step) {
        user.then([from, to, step, at] { xdotool("mousemove " + at(from + (to - from) * step / 8)); });
    }
    for (const QPoint last : {to + QPoint(3, 0), to + QPoint(1, 1), to}) {
        user.then([last, at] { xdotool("mousemove " + at(last)); });
    }
    user.then([] { xdotool("mouseup 1"); });
    EXPECT_TRUE(waitUntil([&] { return user.hasFinished(); }));
}

} // namespace orvane::test
