#pragma once

#include "EditHistory.h"
#include "PresetDocument.h"

#include "unit/presetfiles/Presets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <vector>

namespace orvane::test {

/// Keeps its own picture of the tree from what it is told, as an item view does, and checks each message against it.
class TreeMirror final : public PresetDocumentObserver {
public:
    explicit TreeMirror(PresetDocument &document) : _document(document) {
        document.addObserver(*this);
        _readAll();
    }
    TreeMirror(const TreeMirror &) = delete;
    TreeMirror &operator=(const TreeMirror &) = delete;
    ~TreeMirror() override { _document.removeObserver(*this); }

    std::vector<std::string> changed; ///< "ITEM KEY" for each value that changed
    std::size_t messages = 0;

    /// Whether the picture is the document.
    [[nodiscard]] bool isRight() const { return _rows == _pictureOf(PresetList); }

    void documentWillBeReplaced() override {}
    void documentWasReplaced() override { _readAll(); }
    void itemsWillBeInserted(ItemID parent, std::size_t first, std::size_t) override {
        ++messages;
        EXPECT_LE(first, _rows[parent].size());
    }
    void itemsWereInserted(ItemID parent, std::size_t first, std::size_t count) override {
        auto &rows = _rows[parent];
        for (std::size_t i = 0; i < count; ++i) {
            const ItemID item = _document.childAt(parent, first + i);
            rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(first + i), item);
            _rows.merge(_pictureOf(item));
        }
    }
    void itemsWillBeRemoved(ItemID parent, std::size_t first, std::size_t count) override {
        ++messages;
        EXPECT_LE(first + count, _rows[parent].size());
    }
    void itemsWereRemoved(ItemID parent, std::size_t first, std::size_t count) override {
        auto &rows = _rows[parent];
        const auto begin = rows.begin() + static_cast<std::ptrdiff_t>(first);
        const std::vector<ItemID> gone(begin, begin + static_cast<std::ptrdiff_t>(count));
        rows.erase(begin, begin + static_cast<std::ptrdiff_t>(count));
        for (const ItemID item : gone) {
            _forget(item);
        }
    }
    void itemWillMove(ItemID oldParent, std::size_t from, ItemID newParent, std::size_t to) override {
        ++messages;
        // What an item model asserts: never onto its own place.
        EXPECT_FALSE(oldParent == newParent && (to == from || to == from + 1));
    }
    void itemDidMove(ItemID oldParent, std::size_t from, ItemID newParent, std::size_t to) override {
        auto &old = _rows[oldParent];
        const ItemID item = old[from];
        old.erase(old.begin() + static_cast<std::ptrdiff_t>(from));
        auto &rows = _rows[newParent];
        const std::size_t place = oldParent == newParent && to > from ? to - 1 : to;
        rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(place), item);
    }
    void itemDidChange(ItemID item, std::string_view key) override {
        ++messages;
        EXPECT_TRUE(_document.contains(item));
        changed.push_back(std::to_string(static_cast<std::uint32_t>(item)) + " " + std::string(key));
    }

private:
    using Rows = std::map<ItemID, std::vector<ItemID>>;

    [[nodiscard]] Rows _pictureOf(ItemID top) const {
        Rows rows;
        const auto take = [&](ItemID item) {
            auto &children = rows[item];
            for (std::size_t i = 0; i < _document.numberOfChildren(item); ++i) {
                children.push_back(_document.childAt(item, i));
            }
            return true;
        };
        take(top);
        _document.forEachBelow(top, take);
        return rows;
    }
    void _readAll() { _rows = _pictureOf(PresetList); }
    void _forget(ItemID top) {
        std::vector<ItemID> open{top};
        while (!open.empty()) {
            const ItemID item = open.back();
            open.pop_back();
            open.insert(open.end(), _rows[item].begin(), _rows[item].end());
            _rows.erase(item);
        }
    }

    PresetDocument &_document;
    Rows _rows;
};

/// A history and a document over it.
class DocumentTest : public testing::Test {
protected:
    void load(const std::vector<PropertyListValue> &presets) { document.load(make.document(make.list(presets))); }

    [[nodiscard]] ItemID tree(std::size_t preset = 0) const { return document.treeOf(document.presetAt(preset)); }
    /// The item at these positions below the first preset's tree.
    [[nodiscard]] ItemID at(std::vector<std::uint32_t> place) const { return document.itemAtPlace(document.presetAt(0), place); }
    /// Names below an item, as in "a(b,c),d".
    [[nodiscard]] std::string names(ItemID top) const {
        std::string result;
        for (std::size_t i = 0; i < document.numberOfChildren(top); ++i) {
            const ItemID item = document.childAt(top, i);
            const std::string inside = names(item);
            result += (i > 0 ? "," : "") + document.filename(item) + (inside.empty() ? "" : "(" + inside + ")");
        }
        return result;
    }
    [[nodiscard]] std::string names() const { return names(tree()); }
    [[nodiscard]] std::vector<std::string> labels() const {
        std::vector<std::string> result;
        for (std::size_t i = 0; i < document.numberOfPresets(); ++i) {
            result.push_back(document.label(document.presetAt(i)));
        }
        return result;
    }
    PropertyListValue labelled(std::string_view label) {
        return make.dictionary({{"label", make.text(label)}, {"directoryName", make.text("{Name}")}});
    }

    PresetMaker make;
    EditHistory history;
    PresetDocument document{history};
};

} // namespace orvane::test
