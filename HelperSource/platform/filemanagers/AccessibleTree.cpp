#include "platform/filemanagers/AccessibleTree.h"

#include "platform/filemanagers/BusCalls.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QStringList>

#include <algorithm>
#include <array>
#include <atomic>
#include <utility>

namespace orvane {

namespace {

using namespace Qt::StringLiterals;

/// More nodes than any file manager's window has once the pruned roles are left out (36 to 250 were seen).
constexpr std::size_t MostNodes = 1500;

// Bits of the first word of a state set (atspi-constants.h, AtspiStateType).
constexpr std::uint32_t StateActive = 1U << 1U;
constexpr std::uint32_t StateChecked = 1U << 4U;
constexpr std::uint32_t StateFocused = 1U << 12U;
constexpr std::uint32_t StatePressed = 1U << 20U;

/// Roles below which no path bar and no location stands: menus, tables, trees, lists, icons, labels, page tabs (the views),
/// scroll bars, separators, sliders, status bars.
constexpr std::array<std::uint32_t, 31> PrunedRoles = {8,  17, 18, 26, 27, 29, 30, 31, 32, 33, 34, 35, 37, 41, 42, 45,
                                                       48, 50, 51, 54, 55, 56, 57, 59, 60, 65, 66, 7,  43, 44, 62};

bool isPruned(std::uint32_t role) {
    return std::ranges::find(PrunedRoles, role) != PrunedRoles.end();
}

/// A connection of its own to the accessibility bus, closed at the end.
class AccessibilityBus {
public:
    explicit AccessibilityBus(const QString &address) : _name(_nextName()), _connection(QDBusConnection::connectToBus(address, _name)) {}
    AccessibilityBus(const AccessibilityBus &) = delete;
    AccessibilityBus &operator=(const AccessibilityBus &) = delete;
    ~AccessibilityBus() { QDBusConnection::disconnectFromBus(_name); }
    [[nodiscard]] const QDBusConnection &connection() const { return _connection; }

private:
    /// Not the name under which Qt's own accessibility has its connection.
    static QString _nextName() {
        static std::atomic<unsigned> count = 0;
        return u"orvane-front-window-"_s + QString::number(++count);
    }
    QString _name;
    QDBusConnection _connection;
};

std::uint32_t firstWord(const std::optional<QVariant> &states) {
    QList<uint> words;
    if (states && states->canConvert<QDBusArgument>()) {
        const auto argument = states->value<QDBusArgument>();
        if (argument.currentSignature() == u"au"_s) {
            argument >> words;
        }
    }
    return words.value(0);
}

/// The objects of an array of references that belong to `service` itself; others' are left out, and so are null references.
QStringList ownPaths(const std::optional<QVariant> &references, const QString &service) {
    QStringList paths;
    if (!references || !references->canConvert<QDBusArgument>()) {
        return paths;
    }
    const auto argument = references->value<QDBusArgument>();
    if (argument.currentSignature() != u"a(so)"_s) {
        return paths;
    }
    argument.beginArray();
    while (!argument.atEnd()) {
        QString name;
        QDBusObjectPath path;
        argument.beginStructure();
        argument >> name >> path;
        argument.endStructure();
        if (name == service && !path.path().endsWith(u"/null"_s)) {
            paths << path.path();
        }
    }
    argument.endArray();
    return paths;
}

/// Reads one program's tree, breadth first, a whole level's questions under way at once.
class TreeReader {
public:
    TreeReader(BusCalls bus, QString service, std::uint32_t buttonRole)
        : _bus(std::move(bus)), _service(std::move(service)), _buttonRole(buttonRole) {}

    struct Frame {
        QString service;
        QString path;
        bool isActive = false;
    };
    /// The program's frames with this title.
    [[nodiscard]] std::vector<Frame> frames(const QString &title) const;
    [[nodiscard]] std::optional<WindowContents> read(const QString &frame);

private:
    /// One object and the questions about it that are under way.
    struct Object {
        QString path;
        QDBusPendingCall first;
        std::optional<QDBusPendingCall> name = std::nullopt;
        std::optional<QDBusPendingCall> description = std::nullopt;
        std::optional<QDBusPendingCall> states = std::nullopt;
    };
    using Objects = std::vector<Object>;

    [[nodiscard]] BusMethod _method(const QString &path, const QString &member) const {
        return {_service, path, u"org.a11y.atspi.Accessible"_s, member};
    }
    [[nodiscard]] Objects _ask(const QStringList &paths, const QString &member) const;
    [[nodiscard]] std::vector<Objects> _childrenOf(const QStringList &level) const;
    [[nodiscard]] QStringList _sort(std::vector<Objects> &families);
    void _askAboutButton(Objects &row, Object &object) const;
    void _askAboutText(Objects &texts, const QString &path) const;
    void _keepRow(Objects &row);
    void _keepTexts(Objects &texts);

    BusCalls _bus;
    QString _service;
    std::uint32_t _buttonRole;
    WindowContents _contents;
};

std::uint32_t wordOf(std::optional<QDBusPendingCall> &call) {
    return call ? firstWord(BusCalls::answer(*call)) : 0;
}

TreeReader::Objects TreeReader::_ask(const QStringList &paths, const QString &member) const {
    Objects objects;
    for (const QString &path : paths) {
        objects.push_back({path, _bus.send(_method(path, member))});
    }
    return objects;
}

std::vector<TreeReader::Frame> TreeReader::frames(const QString &title) const {
    std::vector<Frame> frames;
    const QString root = u"/org/a11y/atspi/accessible/root"_s;
    Objects windows = _ask(ownPaths(_bus.call(_method(root, u"GetChildren"_s)), _service), u"GetRole"_s);
    for (Object &window : windows) {
        window.name = _bus.sendProperty(_method(window.path, u"Name"_s));
        window.states = _bus.send(_method(window.path, u"GetState"_s));
    }
    for (Object &window : windows) {
        const bool isFrame = BusCalls::answer(window.first).value_or(QVariant()).toUInt() == accessible_role::Frame;
        if (isFrame && BusCalls::propertyAnswer(*window.name).value_or(QVariant()).toString() == title) {
            frames.push_back({_service, window.path, (wordOf(window.states) & StateActive) != 0});
        }
    }
    return frames;
}

/// The children of each object of a level, the question for their roles sent.
std::vector<TreeReader::Objects> TreeReader::_childrenOf(const QStringList &level) const {
    std::vector<Objects> families;
    Objects parents = _ask(level, u"GetChildren"_s);
    for (Object &parent : parents) {
        families.push_back(_ask(ownPaths(BusCalls::answer(parent.first), _service), u"GetRole"_s));
    }
    return families;
}

void TreeReader::_askAboutButton(Objects &row, Object &object) const {
    object.name = _bus.sendProperty(_method(object.path, u"Name"_s));
    object.description = _bus.sendProperty(_method(object.path, u"Description"_s));
    object.states = _bus.send(_method(object.path, u"GetState"_s));
    row.push_back(object);
}

void TreeReader::_askAboutText(Objects &texts, const QString &path) const {
    texts.push_back({path, _bus.send({_service, path, u"org.a11y.atspi.Text"_s, u"GetText"_s}, {0, -1})});
    texts.back().states = _bus.send(_method(path, u"GetState"_s));
}

/// Keeps what matters of a level; gives the objects whose children are worth reading.
QStringList TreeReader::_sort(std::vector<Objects> &families) {
    QStringList deeper;
    std::vector<Objects> rows;
    Objects texts;
    for (Objects &family : families) {
        Objects row;
        for (Object &object : family) {
            const std::uint32_t role = BusCalls::answer(object.first).value_or(QVariant()).toUInt();
            if (role == _buttonRole) {
                _askAboutButton(row, object);
            } else if (role == accessible_role::Text || role == accessible_role::Entry) {
                _askAboutText(texts, object.path);
            } else if (!isPruned(role)) {
                deeper << object.path;
            }
        }
        if (!row.empty()) {
            rows.push_back(std::move(row));
        }
    }
    for (Objects &row : rows) {
        _keepRow(row);
    }
    _keepTexts(texts);
    return deeper;
}

void TreeReader::_keepRow(Objects &row) {
    ButtonRow buttons;
    for (Object &object : row) {
        const auto name = BusCalls::propertyAnswer(*object.name);
        const auto description = BusCalls::propertyAnswer(*object.description);
        if (!name || !description) {
            return; // a row with a gap would be another path
        }
        const bool isChecked = (wordOf(object.states) & (StateChecked | StatePressed)) != 0;
        buttons.push_back({name->toString().toStdString(), description->toString().toStdString(), isChecked});
    }
    _contents.rows.push_back(std::move(buttons));
}

void TreeReader::_keepTexts(Objects &texts) {
    for (Object &object : texts) {
        const QString text = BusCalls::answer(object.first).value_or(QVariant()).toString();
        // What has the focus may be half typed.
        if ((wordOf(object.states) & StateFocused) == 0 && !text.isEmpty()) {
            _contents.texts.push_back(text.toStdString());
        }
    }
}

std::optional<WindowContents> TreeReader::read(const QString &frame) {
    QStringList level = {frame};
    std::size_t nodes = 0;
    while (!level.isEmpty()) {
        std::vector<Objects> families = _childrenOf(level);
        for (const Objects &family : families) {
            nodes += family.size();
        }
        if (nodes > MostNodes) {
            return std::nullopt;
        }
        level = _sort(families);
        if (_bus.deadline().passed()) {
            return std::nullopt;
        }
    }
    return std::move(_contents);
}

/// The connections of a process on a bus, by their unique names.
QStringList connectionsOf(const BusCalls &bus, std::uint32_t pid) {
    BusMethod method = {u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"ListNames"_s};
    const QStringList names = bus.call(method).value_or(QVariant()).toStringList();
    method.member = u"GetConnectionUnixProcessID"_s;
    std::vector<std::pair<QString, QDBusPendingCall>> pending;
    for (const QString &name : names) {
        if (name.startsWith(u':')) {
            pending.emplace_back(name, bus.send(method, {name}));
        }
    }
    QStringList own;
    for (auto &[name, call] : pending) {
        if (BusCalls::answer(call).value_or(QVariant()).toUInt() == pid) {
            own << name;
        }
    }
    return own;
}

/// The one that is active, else the only one.
std::optional<TreeReader::Frame> theFrame(const std::vector<TreeReader::Frame> &frames) {
    std::optional<TreeReader::Frame> active;
    for (const TreeReader::Frame &frame : frames) {
        if (frame.isActive && active) {
            return std::nullopt;
        }
        if (frame.isActive) {
            active = frame;
        }
    }
    if (!active && frames.size() == 1) {
        active = frames.front();
    }
    return active;
}

} // namespace

std::optional<WindowContents> readWindowContents(std::uint32_t pid, const std::string &title, std::uint32_t buttonRole,
                                                 const Deadline &deadline) {
    const BusCalls session(QDBusConnection::sessionBus(), deadline);
    if (pid == 0 || !session.isOwned(u"org.a11y.Bus"_s)) {
        return std::nullopt;
    }
    const auto address = session.call({u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s});
    if (!address || address->toString().isEmpty()) {
        return std::nullopt;
    }
    const AccessibilityBus connection(address->toString());
    const BusCalls bus(connection.connection(), deadline);
    std::vector<TreeReader::Frame> frames;
    for (const QString &service : connectionsOf(bus, pid)) {
        for (TreeReader::Frame &frame : TreeReader(bus, service, buttonRole).frames(QString::fromStdString(title))) {
            frames.push_back(std::move(frame));
        }
    }
    const auto frame = theFrame(frames);
    return frame ? TreeReader(bus, frame->service, buttonRole).read(frame->path) : std::nullopt;
}

} // namespace orvane
