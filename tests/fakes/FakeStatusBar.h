#pragma once

#include "ports/StatusBar.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// One item of a `FakeStatusBar`, as it was set up.
class FakeStatusItem final : public StatusItem {
public:
    FakeStatusItem(std::vector<std::string> &journal, double itsLength) : length(itsLength), _journal(journal) {}
    void setTitle(std::string_view text) override {
        title = text;
        _journal.push_back("setTitle '" + title + "'");
    }
    void setImage(std::string_view name) override {
        image = name;
        _journal.push_back("setImage " + image);
    }
    void setHighlightMode(bool mode) override {
        highlights = mode;
        _journal.emplace_back(mode ? "setHighlightMode 1" : "setHighlightMode 0");
    }
    void setMenu(Menu *shown) override {
        menu = shown;
        _journal.emplace_back(shown != nullptr ? "setMenu" : "setMenu none");
    }

    double length;
    std::string title = "(not set)";
    std::string image;
    bool highlights = false;
    Menu *menu = nullptr;

private:
    std::vector<std::string> &_journal;
};

/// A status bar in memory. The journal has one line for every call of it and of its items.
class FakeStatusBar final : public StatusBar {
public:
    [[nodiscard]] std::shared_ptr<StatusItem> statusItemWithLength(double length) override {
        journal.push_back("statusItemWithLength " + std::to_string(length));
        if (isFull) {
            return nullptr;
        }
        ++made;
        items.push_back(std::make_shared<FakeStatusItem>(journal, length));
        return items.back();
    }
    void removeStatusItem(const std::shared_ptr<StatusItem> &item) override {
        journal.emplace_back(item ? "removeStatusItem" : "removeStatusItem none");
        std::erase(items, item);
    }

    std::vector<std::shared_ptr<FakeStatusItem>> items; ///< what is shown
    bool isFull = false;                                ///< there is no room for another item
    int made = 0;
    std::vector<std::string> journal;
};

} // namespace orvane
