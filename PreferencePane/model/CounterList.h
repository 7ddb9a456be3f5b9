#pragma once

#include "OverlaidDictionary.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Told that counters may be others now.
class CounterListObserver {
public:
    virtual ~CounterListObserver() = default;
    virtual void countersDidChange() = 0;
};

/// The stored automatic variables: counters. The helper counts on while they are shown, which is never in the way of edits of other
/// counters, and an edit here holds against it. Names are exact: "AutoJob" and "autojob" are two. Main thread only.
class CounterList {
public:
    /// Borrows the history, which must live longer.
    explicit CounterList(EditHistory &history);

    /// Names of all counters, those on disk in their order.
    [[nodiscard]] std::vector<std::string> names() const { return _values.keys(); }
    [[nodiscard]] bool contains(const std::string &name) const { return _values.value(name).has_value(); }
    /// The last value as text; "" when there is none.
    [[nodiscard]] std::string value(const std::string &name) const;
    /// What the next creation will offer.
    [[nodiscard]] std::string nextValue(const std::string &name) const;

    void setValue(const std::string &name, std::string_view value);
    /// The next creation will offer "0". The counter stays in the list, with an empty value.
    void reset(const std::string &name);
    void remove(const std::string &name);
    /// Part of a variable's renaming, in its step.
    void rename(const std::string &from, const std::string &to) { _values.rename(from, to); }
    /// The same with the old one kept.
    void copy(const std::string &from, const std::string &to);

    /// For loading and storing.
    [[nodiscard]] OverlaidDictionary &values() { return _values; }
    [[nodiscard]] const OverlaidDictionary &values() const { return _values; }

    /// Borrowed; must be removed before it is destroyed.
    void addObserver(CounterListObserver &observer) { _observers.push_back(&observer); }
    void removeObserver(CounterListObserver &observer) { std::erase(_observers, &observer); }

private:
    EditHistory &_history;
    std::vector<CounterListObserver *> _observers;
    OverlaidDictionary _values;
};

} // namespace orvane
