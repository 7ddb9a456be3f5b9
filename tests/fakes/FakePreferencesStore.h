#pragma once

#include "ports/PreferencesStore.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane {

/// A preferences domain in memory. `disk` is the file that other programs see; tests may read and change it at any time.
/// Keeps a journal of calls and can refuse the n-th call of an operation.
class FakePreferencesStore final : public PreferencesStore {
public:
    /// The file: nothing when it is missing.
    std::optional<PropertyList> disk;
    /// The file stands there but cannot be read: it is then never written either.
    bool unreadable = false;
    /// Another program holds the domain, and does not let go of it.
    bool heldElsewhere = false;
    /// One line a call, in order: "synchronize", "copyAppValue KEY", "setAppValue KEY", "dictionaryWithContentsOfFile",
    /// "lock", "unlock".
    std::vector<std::string> journal;

    /// Makes the n-th call (counted from 1, from now on) of `operation` fail: "synchronize" stores nothing and returns false,
    /// "dictionaryWithContentsOfFile" finds nothing, "lock" returns null.
    void failAt(const std::string &operation, int n) { _failAt[operation] = n; }
    /// Changes one key of the file behind the store's back, as another program would.
    void writeToDisk(std::string_view key, const PropertyList &value) { disk = _with(disk, key, value); }
    /// Locks that are held now.
    [[nodiscard]] int locksHeld() const { return _locks; }

    /// Runs before each `synchronize()`, so that a test can interfere.
    std::function<void()> beforeSynchronize;

    bool synchronize() override {
        if (beforeSynchronize) {
            beforeSynchronize();
        }
        const bool refused = _enter("synchronize");
        const bool stored = !refused && !_damaged();
        if (stored) {
            for (const auto &[key, value] : _pending) {
                disk = _with(disk, key, value);
            }
        }
        const bool dropped = !stored && !_pending.empty();
        _pending.clear();
        _domain = _damaged() ? std::nullopt : disk;
        return !refused && !dropped && !_damaged();
    }

    [[nodiscard]] std::optional<PropertyList> copyAppValue(std::string_view key) override {
        _enter("copyAppValue", key);
        for (auto entry = _pending.rbegin(); entry != _pending.rend(); ++entry) {
            if (entry->first == key) {
                return entry->second;
            }
        }
        const PropertyListValue *value = _domain ? _domain->root().find(key) : nullptr;
        return value == nullptr ? std::nullopt : std::optional(_domain->at(*value));
    }

    void setAppValue(std::string_view key, const PropertyList &value) override {
        _enter("setAppValue", key);
        _pending.emplace_back(key, value);
    }

    /// A stand-in for the real rule: no text with a NUL in it.
    [[nodiscard]] bool canStoreText(std::string_view text) override { return text.find('\0') == std::string_view::npos; }

    [[nodiscard]] std::optional<PropertyList> dictionaryWithContentsOfFile() override {
        return _enter("dictionaryWithContentsOfFile") || _damaged() ? std::nullopt : disk;
    }

    [[nodiscard]] std::unique_ptr<Lock> lock() override {
        if (_enter("lock") || heldElsewhere) {
            return nullptr;
        }
        return std::make_unique<Held>(*this);
    }

    [[nodiscard]] bool isHeldElsewhere() const override { return heldElsewhere; }

private:
    class Held final : public Lock {
    public:
        explicit Held(FakePreferencesStore &store) : _store(store) { ++_store._locks; }
        Held(const Held &) = delete;
        Held &operator=(const Held &) = delete;
        ~Held() override {
            --_store._locks;
            _store.journal.emplace_back("unlock");
        }

    private:
        FakePreferencesStore &_store;
    };

    /// Notes the call; true when it is to fail.
    bool _enter(const std::string &operation, std::string_view key = {}) {
        journal.push_back(key.empty() ? operation : operation + " " + std::string(key));
        const auto planned = _failAt.find(operation);
        return planned != _failAt.end() && --planned->second == 0;
    }

    [[nodiscard]] bool _damaged() const { return unreadable || (disk && !disk->root().isDictionary()); }

    static PropertyList _with(const std::optional<PropertyList> &before, std::string_view key, const PropertyList &value) {
        PropertyListBuilder builder;
        std::vector<PropertyListEntry> entries;
        bool replaced = false;
        if (before) {
            const auto old = builder.adopt(*before).dictionary();
            entries.assign(old.begin(), old.end());
        }
        for (PropertyListEntry &entry : entries) {
            if (entry.key == key) {
                entry.value = builder.adopt(value);
                replaced = true;
            }
        }
        if (!replaced) {
            entries.push_back({key, builder.adopt(value)});
        }
        return builder.finish(builder.dictionary(entries));
    }

    std::map<std::string, int> _failAt;
    std::vector<std::pair<std::string, PropertyList>> _pending;
    std::optional<PropertyList> _domain;
    int _locks = 0;
};

} // namespace orvane
