#include "SettingsMerge.h"

#include "presets/ORVPropertyListReading.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace orvane {

namespace {

using Kind = MergeConflict::Kind;
using Indexes = std::vector<std::optional<std::size_t>>;

std::vector<PropertyList> recordsOf(const PropertyList &list) {
    std::vector<PropertyList> records;
    if (list.root().isArray()) {
        for (const PropertyListValue &record : list.root().array()) {
            records.push_back(list.at(record));
        }
    }
    return records;
}

bool areEqual(const PropertyList &left, const PropertyList &right) {
    return left.root().equals(right.root());
}

PropertyList entryOf(const PropertyList &record, std::string_view key) {
    const PropertyListValue *value = record.root().find(key);
    return value == nullptr ? PropertyList() : record.at(*value);
}

std::string labelOf(const PropertyList &record) {
    return ORVTextValue(record.root().find("label"));
}

/// What people know the preset by.
std::string titleOf(const PropertyList &record) {
    std::string label = labelOf(record);
    return label.empty() ? ORVTextValue(record.root().find("directoryName")) : label;
}

/// Which of the base's records each of theirs is.
class Matching {
public:
    Matching(const std::vector<PropertyList> &base, const std::vector<PropertyList> &theirs)
        : _base(base), _theirs(theirs), _matches(theirs.size()), _isTaken(base.size(), false) {}

    Indexes run() {
        for (std::size_t i = 0; i < std::min(_base.size(), _theirs.size()); ++i) {
            if (areEqual(_base[i], _theirs[i])) {
                _match(i, i);
            }
        }
        _matchWhere(areEqual);
        _matchWhere([](const PropertyList &base, const PropertyList &other) {
            const std::string label = labelOf(base);
            return !label.empty() && label == labelOf(other);
        });
        _matchWhere([](const PropertyList &base, const PropertyList &other) {
            const PropertyList tree = entryOf(base, "fileHierarchy");
            const PropertyListValue *children = tree.root().find("children");
            return children != nullptr && !children->array().empty() && areEqual(tree, entryOf(other, "fileHierarchy"));
        });
        for (std::size_t i = 0; i < std::min(_base.size(), _theirs.size()); ++i) {
            const std::string name = ORVTextValue(_base[i].root().find("directoryName"));
            const bool isFree = !_matches[i] && !_isTaken[i];
            if (isFree && !name.empty() && name == ORVTextValue(_theirs[i].root().find("directoryName"))) {
                _match(i, i);
            }
        }
        return std::move(_matches);
    }

private:
    template <typename Test> void _matchWhere(const Test &test) {
        for (std::size_t i = 0; i < _theirs.size(); ++i) {
            for (std::size_t b = 0; b < _base.size() && !_matches[i]; ++b) {
                if (!_isTaken[b] && test(_base[b], _theirs[i])) {
                    _match(i, b);
                }
            }
        }
    }
    void _match(std::size_t theirs, std::size_t base) {
        _matches[theirs] = base;
        _isTaken[base] = true;
    }

    const std::vector<PropertyList> &_base;
    const std::vector<PropertyList> &_theirs;
    Indexes _matches;
    std::vector<bool> _isTaken;
};

/// One merge on its way.
class Merge {
public:
    Merge(const PropertyList &base, const std::vector<MergeableRecord> &mine, const PropertyList &theirs, const MergeDecision &decide)
        : _base(recordsOf(base)), _mine(mine), _theirs(recordsOf(theirs)), _decide(decide), _theirsBase(Matching(_base, _theirs).run()) {}

    MergedPresets run() {
        _pair();
        for (std::size_t b = 0; b < _base.size(); ++b) {
            _mergeOne(b);
        }
        _takeNew();
        _order();
        return std::move(_result);
    }

private:
    void _pair() {
        _mineOf.resize(_base.size());
        _theirsOf.resize(_base.size());
        for (std::size_t i = 0; i < _mine.size(); ++i) {
            if (_mine[i].base && *_mine[i].base < _base.size()) {
                _mineOf[*_mine[i].base] = i;
            }
        }
        for (std::size_t i = 0; i < _theirs.size(); ++i) {
            if (_theirsBase[i]) {
                _theirsOf[*_theirsBase[i]] = i;
            }
        }
    }

    MergeSide _ask(MergeConflict conflict) {
        const auto side = _decide ? _decide(conflict) : std::nullopt;
        if (!side) {
            _result.conflicts.push_back(std::move(conflict));
        }
        return side.value_or(MergeSide::Mine);
    }

    void _mergeOne(std::size_t b) {
        const auto mine = _mineOf[b];
        const auto theirs = _theirsOf[b];
        if (mine && theirs) {
            _merged.push_back({_mergedRecord(_base[b], _mine[*mine].record, _theirs[*theirs]), mine, theirs});
        } else if (mine && !areEqual(_mine[*mine].record, _base[b])) {
            const PropertyList &record = _mine[*mine].record;
            if (_ask({Kind::PresetDeletedThere, titleOf(record), "", record, {}}) == MergeSide::Mine) {
                _merged.push_back({record, mine, std::nullopt});
            }
        } else if (theirs && !areEqual(_theirs[*theirs], _base[b])) {
            const PropertyList &record = _theirs[*theirs];
            if (_ask({Kind::PresetDeletedHere, titleOf(record), "", {}, record}) == MergeSide::Theirs) {
                _merged.push_back({record, std::nullopt, theirs});
            }
        }
    }

    PropertyList _mergedRecord(const PropertyList &base, const PropertyList &mine, const PropertyList &theirs) {
        if (areEqual(mine, base) || areEqual(mine, theirs)) {
            return theirs;
        }
        if (areEqual(theirs, base)) {
            return mine;
        }
        if (!mine.root().isDictionary() || !theirs.root().isDictionary()) {
            return _ask({Kind::PresetValue, titleOf(mine), "", mine, theirs}) == MergeSide::Mine ? mine : theirs;
        }
        PropertyListBuilder builder;
        std::vector<PropertyListEntry> entries;
        const auto take = [&](std::string_view key) {
            const PropertyList value = _mergedValue(base, mine, theirs, key);
            if (value.root().type() != PropertyListType::Null) {
                entries.push_back({key, builder.adopt(value)});
            }
        };
        for (const PropertyListEntry &entry : theirs.root().dictionary()) {
            take(entry.key);
        }
        for (const PropertyListEntry &entry : mine.root().dictionary()) {
            if (theirs.root().find(entry.key) == nullptr) {
                take(entry.key);
            }
        }
        return builder.finish(builder.dictionary(entries));
    }

    PropertyList _mergedValue(const PropertyList &base, const PropertyList &mine, const PropertyList &theirs, std::string_view key) {
        const PropertyList before = entryOf(base, key);
        PropertyList here = entryOf(mine, key);
        PropertyList there = entryOf(theirs, key);
        if (areEqual(here, before) || areEqual(here, there)) {
            return there;
        }
        if (areEqual(there, before)) {
            return here;
        }
        return _ask({Kind::PresetValue, titleOf(mine), std::string(key), here, there}) == MergeSide::Mine ? here : there;
    }

    /// Presets that only one side has. Both may have got the same one, by adding one file, say.
    void _takeNew() {
        std::vector<bool> isTaken(_theirs.size(), false);
        for (std::size_t i = 0; i < _mine.size(); ++i) {
            if (_mine[i].base && *_mine[i].base < _base.size()) {
                continue;
            }
            std::optional<std::size_t> same;
            for (std::size_t t = 0; t < _theirs.size() && !same; ++t) {
                if (!_theirsBase[t] && !isTaken[t] && areEqual(_theirs[t], _mine[i].record)) {
                    same = t;
                    isTaken[t] = true;
                }
            }
            _merged.push_back({_mine[i].record, i, same});
        }
        for (std::size_t t = 0; t < _theirs.size(); ++t) {
            if (!_theirsBase[t] && !isTaken[t]) {
                _merged.push_back({_theirs[t], std::nullopt, t});
            }
        }
    }

    // Order.

    /// Those of the outcome that a side has, in its order.
    [[nodiscard]] std::vector<std::size_t> _sequence(std::optional<std::size_t> MergedRecord::*side) const {
        std::vector<std::size_t> sequence;
        for (std::size_t i = 0; i < _merged.size(); ++i) {
            if (_merged[i].*side) {
                sequence.push_back(i);
            }
        }
        std::sort(sequence.begin(), sequence.end(),
                  [&](std::size_t left, std::size_t right) { return _merged[left].*side < _merged[right].*side; });
        return sequence;
    }

    [[nodiscard]] bool _isCommon(std::size_t i) const { return _merged[i].mine && _merged[i].theirs; }

    void _order() {
        std::vector<std::size_t> mine = _sequence(&MergedRecord::mine);
        std::vector<std::size_t> theirs = _sequence(&MergedRecord::theirs);
        const auto commonOf = [this](std::vector<std::size_t> sequence) {
            std::erase_if(sequence, [this](std::size_t i) { return !_isCommon(i); });
            return sequence;
        };
        // Common ones stand in the order of the base in `_merged`, those that both added behind them.
        const auto commonMine = commonOf(mine);
        const auto commonTheirs = commonOf(theirs);
        const bool movedHere = !std::is_sorted(commonMine.begin(), commonMine.end());
        const bool movedThere = !std::is_sorted(commonTheirs.begin(), commonTheirs.end());
        bool isTheirs = movedThere && !movedHere;
        if (movedHere && movedThere && commonMine != commonTheirs) {
            isTheirs = _ask({Kind::PresetOrder, "", "", _labels(commonMine), _labels(commonTheirs)}) == MergeSide::Theirs;
        }
        _weave(isTheirs ? theirs : mine, isTheirs ? mine : theirs);
    }

    [[nodiscard]] PropertyList _labels(const std::vector<std::size_t> &sequence) const {
        PropertyListBuilder builder;
        std::vector<PropertyListValue> labels;
        labels.reserve(sequence.size());
        for (const std::size_t i : sequence) {
            labels.push_back(builder.string(titleOf(_merged[i].record)));
        }
        return builder.finish(builder.array(labels));
    }

    /// The first order, and what only the second has behind its neighbour there.
    void _weave(std::vector<std::size_t> order, const std::vector<std::size_t> &other) {
        std::size_t last = std::numeric_limits<std::size_t>::max();
        for (const std::size_t i : other) {
            if (std::find(order.begin(), order.end(), i) == order.end()) {
                const auto before = std::find(order.begin(), order.end(), last);
                order.insert(before == order.end() ? order.begin() : before + 1, i);
            }
            last = i;
        }
        for (const std::size_t i : order) {
            _result.presets.push_back(std::move(_merged[i]));
        }
    }

    std::vector<PropertyList> _base;
    const std::vector<MergeableRecord> &_mine;
    std::vector<PropertyList> _theirs;
    const MergeDecision &_decide;
    Indexes _theirsBase;
    Indexes _mineOf;
    Indexes _theirsOf;
    std::vector<MergedRecord> _merged;
    MergedPresets _result;
};

} // namespace

bool MergeConflict::isSame(const MergeConflict &other) const {
    return kind == other.kind && label == other.label && key == other.key && areEqual(mine, other.mine) && areEqual(theirs, other.theirs);
}

MergedPresets mergePresets(const PropertyList &base, const std::vector<MergeableRecord> &mine, const PropertyList &theirs,
                           const MergeDecision &decide) {
    return Merge(base, mine, theirs, decide).run();
}

} // namespace orvane
