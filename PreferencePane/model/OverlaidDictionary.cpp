#include "OverlaidDictionary.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace orvane {

namespace {

std::optional<PropertyList> entryOf(const PropertyList &dictionary, const std::string &key) {
    const PropertyListValue *value = dictionary.root().find(key);
    return value == nullptr ? std::nullopt : std::optional(dictionary.at(*value));
}

bool areEqual(const std::optional<PropertyList> &left, const std::optional<PropertyList> &right) {
    return left ? right && left->root().equals(right->root()) : !right;
}

} // namespace

class OverlaidDictionary::Change final : public EditChange {
public:
    Change(OverlaidDictionary &dictionary, std::string key, std::optional<Override> after)
        : _dictionary(dictionary), _key(std::move(key)), _after(std::move(after)), _epoch(dictionary._past.size()) {
        if (const auto found = dictionary._overrides.find(_key); found != dictionary._overrides.end()) {
            _before = found->second;
        }
    }
    void redo() override { _dictionary._put(_key, _after, _epoch); }
    void undo() override { _dictionary._put(_key, _before, _epoch); }
    bool absorb(EditChange &later) override {
        auto *other = dynamic_cast<Change *>(&later);
        if (other == nullptr || &other->_dictionary != &_dictionary || other->_key != _key || other->_epoch != _epoch) {
            return false;
        }
        _after = std::move(other->_after);
        return true;
    }

private:
    OverlaidDictionary &_dictionary;
    std::string _key;
    std::optional<Override> _before;
    std::optional<Override> _after;
    std::size_t _epoch;
};

OverlaidDictionary::OverlaidDictionary(EditHistory &history, std::function<void(const std::string &key)> didChange)
    : _history(history), _didChange(std::move(didChange)) {}

OverlaidDictionary::~OverlaidDictionary() {
    _history.clear();
}

void OverlaidDictionary::load(const PropertyList &dictionary) {
    _history.clear();
    _overrides.clear();
    _past.clear();
    rebase(dictionary);
}

void OverlaidDictionary::rebase(const PropertyList &dictionary) {
    const PropertyList before = std::exchange(_base, dictionary.root().isDictionary() ? dictionary : PropertyList());
    std::vector<std::string> changed;
    for (const PropertyListEntry &entry : before.root().dictionary()) {
        if (!areEqual(before.at(entry.value), entryOf(_base, std::string(entry.key)))) {
            changed.emplace_back(entry.key);
        }
    }
    for (const PropertyListEntry &entry : _base.root().dictionary()) {
        if (before.root().find(entry.key) == nullptr) {
            changed.emplace_back(entry.key);
        }
    }
    for (const std::string &key : changed) {
        _didChange(key);
    }
}

void OverlaidDictionary::commit(const PropertyList &dictionary) {
    if (!_overrides.empty()) {
        _past.push_back(_base);
        _overrides.clear();
    }
    rebase(dictionary);
}

std::optional<PropertyList> OverlaidDictionary::_resolved(const Override &override, const PropertyList &dictionary) const {
    switch (override.kind) {
    case Override::Kind::Value:
        return override.value;
    case Override::Kind::Absent:
        return std::nullopt;
    case Override::Kind::Renamed:
        break;
    }
    const auto value = entryOf(dictionary, override.from);
    return value ? value : entryOf(_base, override.from);
}

std::optional<PropertyList> OverlaidDictionary::value(const std::string &key) const {
    const auto found = _overrides.find(key);
    return found == _overrides.end() ? entryOf(_base, key) : _resolved(found->second, _base);
}

std::vector<std::string> OverlaidDictionary::keys() const {
    std::vector<std::string> result;
    for (const PropertyListEntry &entry : _base.root().dictionary()) {
        std::string key(entry.key);
        if (value(key)) {
            result.push_back(std::move(key));
        }
    }
    for (const auto &[key, override] : _overrides) {
        if (_base.root().find(key) == nullptr && value(key)) {
            result.push_back(key);
        }
    }
    return result;
}

void OverlaidDictionary::set(const std::string &key, const std::optional<PropertyList> &value) {
    if (areEqual(this->value(key), value)) {
        return;
    }
    if (areEqual(entryOf(_base, key), value)) {
        _lay(key, std::nullopt);
    } else if (value) {
        _lay(key, Override{Override::Kind::Value, *value, {}});
    } else {
        _lay(key, Override{Override::Kind::Absent, {}, {}});
    }
}

void OverlaidDictionary::rename(const std::string &from, const std::string &to) {
    const auto now = value(from);
    if (!now || from == to) {
        return;
    }
    const auto found = _overrides.find(from);
    // What was edited keeps its value; what was not keeps following the disk under its new name.
    Override moved = found == _overrides.end() ? Override{Override::Kind::Renamed, {}, from} : found->second;
    _lay(to, std::move(moved));
    set(from, std::nullopt);
}

void OverlaidDictionary::_lay(const std::string &key, std::optional<Override> override) {
    _history.perform(std::make_unique<Change>(*this, key, std::move(override)));
}

/// Puts what a change holds, which was made when edits had been stored `epoch` times, over the key.
void OverlaidDictionary::_put(const std::string &key, const std::optional<Override> &override, std::size_t epoch) {
    std::optional<Override> meant = override;
    if (epoch < _past.size() && (!override || override->kind == Override::Kind::Renamed)) {
        const auto old = override ? entryOf(_past[epoch], override->from) : entryOf(_past[epoch], key);
        meant = old ? Override{Override::Kind::Value, *old, {}} : Override{Override::Kind::Absent, {}, {}};
    }
    if (meant) {
        _overrides.insert_or_assign(key, std::move(*meant));
    } else {
        _overrides.erase(key);
    }
    _didChange(key);
}

PropertyList OverlaidDictionary::applied(const PropertyList &dictionary) const {
    PropertyListBuilder builder;
    std::vector<PropertyListEntry> entries;
    const PropertyListValue root = builder.adopt(dictionary);
    for (const PropertyListEntry &entry : root.dictionary()) {
        if (!_overrides.contains(std::string(entry.key))) {
            entries.push_back(entry);
            continue;
        }
        if (const auto value = _resolved(_overrides.at(std::string(entry.key)), dictionary)) {
            entries.push_back({entry.key, builder.adopt(*value)});
        }
    }
    for (const auto &[key, override] : _overrides) {
        const auto value = root.find(key) == nullptr ? _resolved(override, dictionary) : std::nullopt;
        if (value) {
            entries.push_back({key, builder.adopt(*value)});
        }
    }
    return builder.finish(builder.dictionary(entries));
}

} // namespace orvane
