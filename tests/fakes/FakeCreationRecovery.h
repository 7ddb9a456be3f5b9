#pragma once

#include "ports/CreationJournal.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace orvane {

/// Remains in memory. Removing takes all items of an entry away but for those that the test holds back.
class FakeCreationRecovery final : public CreationRecovery {
public:
    [[nodiscard]] std::vector<CreationRemains> remains() override {
        ++looks;
        std::vector<CreationRemains> seen;
        for (const CreationRemains &each : entries) {
            if (!busy.contains(each.entry)) {
                seen.push_back(each);
            }
        }
        return seen;
    }
    std::size_t remove(const CreationRemains &remains) override {
        if (busy.contains(remains.entry) || _forget(remains) == 0) {
            return 0;
        }
        removed.push_back(remains.topPath);
        if (whenRemoving) {
            whenRemoving();
        }
        return remains.items - std::min(remains.items, heldBack);
    }
    void keep(const CreationRemains &remains) override {
        if (_forget(remains) > 0) {
            kept.push_back(remains.topPath);
        }
    }

    std::vector<CreationRemains> entries;
    std::set<std::string> busy; ///< entries that another process works on
    std::size_t heldBack = 0;
    std::function<void()> whenRemoving;
    int looks = 0;
    std::vector<std::string> removed; ///< top folders
    std::vector<std::string> kept;    ///< top folders

private:
    std::size_t _forget(const CreationRemains &remains) {
        return std::erase_if(entries,
                             [&](const CreationRemains &each) { return each.entry == remains.entry && each.topPath == remains.topPath; });
    }
};

} // namespace orvane
