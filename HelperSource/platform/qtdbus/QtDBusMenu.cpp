#include "platform/qtdbus/QtDBusMenu.h"

#include "platform/qtdbus/QtActivationToken.h"

#include <QDBusError>
#include <QGuiApplication>
#include <QPointer>

#include <deque>
#include <map>
#include <tuple>
#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int RootId = 0;
/// Of a label, in UTF-16 units: about what fits on a small screen.
constexpr qsizetype LongestLabel = 90;

QVariantMap rootProperties(const QStringList &names) {
    const QString key = u"children-display"_s;
    return names.isEmpty() || names.contains(key) ? QVariantMap{{key, u"submenu"_s}} : QVariantMap{};
}

/// A cut next to `position` that does not fall between the halves of a character outside the first plane, or before a mark that
/// belongs to the character in front of it.
qsizetype cutNear(const QString &text, qsizetype position) {
    const auto belongsToPrevious = [&](qsizetype at) {
        return text.at(at).isLowSurrogate() || text.at(at).isMark() || text.at(at) == QChar(0x200D) || text.at(at - 1) == QChar(0x200D);
    };
    while (position > 1 && position < text.size() && belongsToPrevious(position)) {
        --position;
    }
    return position;
}

} // namespace

QtDBusMenu::QtDBusMenu(Filter mayRun) : _mayRun(std::move(mayRun)) {
    registerDBusMenuTypes();
}

QtDBusMenu::~QtDBusMenu() {
    if (_menu != nullptr) {
        _menu->removeObserver(*this);
    }
}

void QtDBusMenu::setMenu(Menu *menu) {
    if (_menu != nullptr) {
        _menu->removeObserver(*this);
    }
    _menu = menu;
    if (_menu != nullptr) {
        _menu->addObserver(*this);
    }
    menuDidChange();
}

QString QtDBusMenu::labelOfTitle(const std::string &title) {
    QString text = QString::fromStdString(title);
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator || character == QChar::ParagraphSeparator) {
            character = u' ';
        }
    }
    if (text.size() > LongestLabel) {
        const qsizetype tail = cutNear(text, text.size() - LongestLabel / 3);
        text = text.left(cutNear(text, LongestLabel - LongestLabel / 3 - 1)) + u'…' + text.mid(tail);
    }
    return text.replace(u'_', "__"_L1);
}

QString QtDBusMenu::textDirection() const {
    return QGuiApplication::isRightToLeft() ? u"rtl"_s : u"ltr"_s;
}

void QtDBusMenu::menuDidChange() {
    if (std::exchange(_willAnnounce, true)) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this] {
            _willAnnounce = false;
            _refresh();
            _announce();
        },
        Qt::QueuedConnection);
}

/// Takes over what the menu is now; true when that is different from what hosts could know.
bool QtDBusMenu::_refresh() {
    std::vector<Entry> entries;
    const std::size_t count = _menu == nullptr ? 0 : _menu->numberOfItems();
    entries.reserve(count);
    for (std::size_t index = 0; index < count; ++index) {
        const MenuItem &item = _menu->itemAtIndex(index);
        entries.push_back(
            {0, item.isSeparator ? std::string() : item.title, item.tag, item.isSeparator, item.isSeparator || item.isEnabled()});
    }
    _giveNumbers(entries);
    if (entries == _entries) {
        return false;
    }
    _entries = std::move(entries);
    ++_revision;
    return true;
}

void QtDBusMenu::_giveNumbers(std::vector<Entry> &entries) {
    const auto keyOf = [](const Entry &entry) { return std::tuple(entry.isSeparator, entry.tag, entry.title); };
    std::map<std::tuple<bool, int, std::string>, std::deque<int>> known;
    for (const Entry &entry : _entries) {
        known[keyOf(entry)].push_back(entry.id);
    }
    for (Entry &entry : entries) {
        const auto found = known.find(keyOf(entry));
        if (found == known.end() || found->second.empty()) {
            entry.id = ++_lastId;
            continue;
        }
        entry.id = found->second.front();
        found->second.pop_front();
    }
}

void QtDBusMenu::_announce() {
    if (_announced == _revision) {
        return;
    }
    _announced = _revision;
    Q_EMIT LayoutUpdated(_revision, RootId);
}

std::optional<std::size_t> QtDBusMenu::_indexOf(int id) const {
    for (std::size_t index = 0; index < _entries.size(); ++index) {
        if (_entries[index].id == id) {
            return index;
        }
    }
    return std::nullopt;
}

/// Properties that have their default value (enabled, visible, no icon) are left out, as the interface has it.
QVariantMap QtDBusMenu::_propertiesOf(const Entry &entry, const QStringList &names) {
    QVariantMap properties;
    const auto add = [&](const QString &name, const QVariant &value) {
        if (names.isEmpty() || names.contains(name)) {
            properties.insert(name, value);
        }
    };
    if (entry.isSeparator) {
        add(u"type"_s, u"separator"_s);
    } else {
        add(u"label"_s, labelOfTitle(entry.title));
    }
    if (!entry.isEnabled) {
        add(u"enabled"_s, false);
    }
    return properties;
}

uint QtDBusMenu::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames, DBusMenuLayout &layout) {
    if (_refresh()) {
        menuDidChange();
    }
    layout = {parentId, {}, {}};
    if (parentId != RootId) {
        if (const auto index = _indexOf(parentId)) {
            layout.properties = _propertiesOf(_entries[*index], propertyNames);
        } else {
            _refuse(parentId);
        }
        return _revision;
    }
    layout.properties = rootProperties(propertyNames);
    if (recursionDepth != 0) {
        for (const Entry &entry : _entries) {
            layout.children.append(QDBusVariant(QVariant::fromValue(DBusMenuLayout{entry.id, _propertiesOf(entry, propertyNames), {}})));
        }
    }
    return _revision;
}

QList<DBusMenuProperties> QtDBusMenu::GetGroupProperties(const QList<int> &ids, const QStringList &propertyNames) {
    QList<DBusMenuProperties> result;
    const auto isWanted = [&](int id) { return ids.isEmpty() || ids.contains(id); };
    if (isWanted(RootId)) {
        result.append({RootId, rootProperties(propertyNames)});
    }
    for (const Entry &entry : _entries) {
        if (isWanted(entry.id)) {
            result.append({entry.id, _propertiesOf(entry, propertyNames)});
        }
    }
    return result;
}

QDBusVariant QtDBusMenu::GetProperty(int id, const QString &name) {
    static const QVariantMap defaults{{u"type"_s, u"standard"_s}, {u"label"_s, QString()}, {u"enabled"_s, true}, {u"visible"_s, true}};
    const auto index = _indexOf(id);
    if (!index && id != RootId) {
        _refuse(id);
        return QDBusVariant(QString());
    }
    const QVariantMap properties = index ? _propertiesOf(_entries[*index], {}) : rootProperties({});
    const QVariant value = properties.value(name, defaults.value(name));
    if (!value.isValid() && calledFromDBus()) {
        sendErrorReply(QDBusError::InvalidArgs, u"There is no property %1."_s.arg(name));
    }
    return QDBusVariant(value.isValid() ? value : QVariant(QString()));
}

void QtDBusMenu::Event(int id, const QString &eventId, const QDBusVariant & /*data*/, uint /*timestamp*/) {
    if (!_handle(id, eventId)) {
        _refuse(id);
    }
}

QList<int> QtDBusMenu::EventGroup(const QList<DBusMenuEvent> &events) {
    QList<int> unknown;
    for (const DBusMenuEvent &event : events) {
        if (!_handle(event.id, event.type)) {
            unknown.append(event.id);
        }
    }
    if (!events.isEmpty() && unknown.size() == events.size()) {
        _refuse(unknown.front());
    }
    return unknown;
}

bool QtDBusMenu::AboutToShow(int id) {
    const bool needsUpdate = _refresh();
    if (needsUpdate) {
        menuDidChange();
    }
    if (id != RootId && !_indexOf(id)) {
        _refuse(id);
    }
    return needsUpdate;
}

QList<int> QtDBusMenu::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors) {
    const bool needsUpdate = _refresh();
    if (needsUpdate) {
        menuDidChange();
    }
    idErrors.clear();
    for (const int id : ids) {
        if (id != RootId && !_indexOf(id)) {
            idErrors.append(id);
        }
    }
    return needsUpdate && ids.contains(RootId) ? QList<int>{RootId} : QList<int>{};
}

/// False for an item that there is not. Of what can happen to one ("clicked", "hovered", "opened", "closed") only the first matters.
bool QtDBusMenu::_handle(int id, const QString &eventId) {
    if (id != RootId && !_indexOf(id)) {
        return false;
    }
    if (id != RootId && eventId == "clicked"_L1) {
        QMetaObject::invokeMethod(
            this, [this, id] { _run(id); }, Qt::QueuedConnection);
    }
    return true;
}

void QtDBusMenu::_run(int id) {
    if (_refresh()) {
        menuDidChange();
    }
    const auto index = _indexOf(id);
    if (_menu == nullptr || !index) {
        return; // gone between the choice and now
    }
    const bool isAllowed = _mayRun ? _mayRun(_menu->itemAtIndex(*index)) : !_isRunning;
    if (!isAllowed) {
        return;
    }
    const QPointer<QtDBusMenu> self(this); // the action may take the whole item away
    const bool wasRunning = std::exchange(_isRunning, true);
    const QtActivationToken token(std::exchange(_token, {}));
    _menu->performActionForItemAtIndex(*index);
    if (self) {
        _isRunning = wasRunning;
    }
}

void QtDBusMenu::_refuse(int id) {
    if (calledFromDBus()) {
        sendErrorReply(QDBusError::InvalidArgs, u"There is no menu item %1."_s.arg(id));
    }
}

} // namespace orvane
