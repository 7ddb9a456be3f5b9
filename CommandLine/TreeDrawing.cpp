#include "TreeDrawing.h"

#include "Command.h"
#include "Translation.h"

#include "ports/FinderLabel.h"

#include <algorithm>
#include <array>
#include <cstdio>

// Whether an item is the last one of its folder, which decides between the two kinds of branch, is known once what follows
// was seen: so it is found in a first pass from the end, and the lines are written in a second one from the start.

namespace orvane {

namespace {

constexpr std::size_t DeepestDrawn = 200;

struct Branches {
    std::string_view tee, corner, line, blank, dot, mark;
};
constexpr Branches Drawn = {"├── ", "└── ", "│   ", "    ", "●", "⚠"};
constexpr Branches Typed = {"|-- ", "`-- ", "|   ", "    ", "*", "!"};

// Select Graphic Rendition (ECMA-48, 8.3.117).
constexpr std::string_view Plain = "\033[0m";
constexpr std::string_view FolderColor = "\033[1;34m";
constexpr std::string_view Quiet = "\033[2m";
constexpr std::string_view ProblemColor = "\033[1;31m";
/// By label number; orange is none of the eight basic colours, so it comes from the palette of 256.
constexpr std::array<std::string_view, 8> LabelColors = {"",         "\033[90m", "\033[32m", "\033[35m",
                                                         "\033[34m", "\033[33m", "\033[31m", "\033[38;5;208m"};

/// By label number.
constexpr std::array<const char *, 8> ColorNames = {"",
                                                    forTranslation("gray"),
                                                    forTranslation("green"),
                                                    forTranslation("purple"),
                                                    forTranslation("blue"),
                                                    forTranslation("yellow"),
                                                    forTranslation("red"),
                                                    forTranslation("orange")};

/// For each item, whether no later one stands in the same folder.
std::vector<bool> lastOnes(std::span<const TreeItem> tree) {
    std::vector<bool> isLast(tree.size());
    std::vector<bool> seen; ///< by depth: an item of the folder that is open there stands further down
    for (std::size_t i = tree.size(); i-- > 0;) {
        const std::size_t depth = tree[i].depth;
        const bool later = depth < seen.size() && seen[depth];
        isLast[i] = !later;
        seen.resize(depth + 1, false);
        seen[depth] = true;
    }
    return isLast;
}

class Drawing {
public:
    explicit Drawing(const TextStyle &style) : _style(style), _branches(style.unicode ? Drawn : Typed) {}

    void add(const TreeItem &item, bool isLast) {
        _addBranch(item, isLast);
        _addColored(item.isFolder ? FolderColor : "", _shown(item.name.empty() ? std::string_view(localized("(no name)")) : item.name));
        _text += item.isFolder ? "/" : "";
        _addDetails(item);
        if (!item.problem.empty()) {
            _text += "  ";
            _addColored(ProblemColor, std::string(_branches.mark) + " " + _shown(item.problem));
        }
        _text += '\n';
    }
    [[nodiscard]] std::string take() { return std::move(_text); }

private:
    [[nodiscard]] std::string _shown(std::string_view text) const { return printable(text); }

    void _addBranch(const TreeItem &item, bool isLast) {
        if (item.depth == 0) {
            return;
        }
        const std::size_t drawn = std::min(item.depth, DeepestDrawn);
        _isOpen.resize(drawn, false);
        _isOpen[drawn - 1] = !isLast;
        for (std::size_t level = 0; level + 1 < drawn; ++level) {
            _text += _isOpen[level] ? _branches.line : _branches.blank;
        }
        _text += isLast ? _branches.corner : _branches.tee;
        if (item.depth > DeepestDrawn) {
            _text += localized("[level %1]", {std::to_string(item.depth)}) + " ";
        }
    }

    void _addDetails(const TreeItem &item) {
        if (item.mode) {
            std::array<char, 16> octal{};
            std::snprintf(octal.data(), octal.size(), "  %03o", *item.mode);
            _addColored(Quiet, octal.data());
        }
        if (item.label > 0) {
            const auto label = static_cast<std::size_t>(item.label);
            _text += "  ";
            _addColored(LabelColors[label], _branches.dot);
            _addColored(Quiet, std::string(" ") + localized(ColorNames[label]));
        }
        if (!item.content.empty()) {
            _addColored(Quiet, "  <- " + _shown(item.content));
        }
    }

    void _addColored(std::string_view color, std::string_view text) {
        const bool colored = _style.color && !color.empty();
        _text.append(colored ? color : "").append(text).append(colored ? Plain : "");
    }

    const TextStyle &_style;
    const Branches &_branches;
    std::vector<bool> _isOpen; ///< by depth - 1: more items follow in that folder
    std::string _text;
};

void writeItem(JSONWriter &writer, const TreeItem &item) {
    writer.beginObject().key("name").string(item.name).key("folder").boolean(item.isFolder);
    if (item.label > 0) {
        writer.key("label").string(FinderLabelColors[static_cast<std::size_t>(item.label)]);
    }
    if (item.mode) {
        std::array<char, 16> octal{};
        std::snprintf(octal.data(), octal.size(), "%03o", *item.mode);
        writer.key("mode").string(octal.data());
    }
    if (!item.content.empty()) {
        writer.key("content").string(item.content);
    }
    if (!item.problem.empty()) {
        writer.key("problem").string(item.problem);
    }
    if (item.isFolder) {
        writer.key("children").beginArray();
    }
}

} // namespace

std::string drawTree(std::span<const TreeItem> tree, const TextStyle &style) {
    const std::vector<bool> isLast = lastOnes(tree);
    Drawing drawing(style);
    for (std::size_t i = 0; i < tree.size(); ++i) {
        drawing.add(tree[i], isLast[i]);
    }
    return drawing.take();
}

void writeTree(JSONWriter &writer, std::span<const TreeItem> tree) {
    if (tree.empty()) {
        writer.null();
        return;
    }
    std::vector<bool> openAreFolders; ///< items that have been begun and not ended
    const auto end = [&] {
        if (openAreFolders.back()) {
            writer.endArray();
        }
        writer.endObject();
        openAreFolders.pop_back();
    };
    for (const TreeItem &item : tree) {
        while (openAreFolders.size() > item.depth) {
            end();
        }
        writeItem(writer, item);
        openAreFolders.push_back(item.isFolder);
    }
    while (!openAreFolders.empty()) {
        end();
    }
}

std::string countOfTree(std::span<const TreeItem> tree) {
    const auto folders =
        static_cast<std::size_t>(std::count_if(tree.begin(), tree.end(), [](const TreeItem &item) { return item.isFolder; }));
    const std::string text = localizedCount("%1 folder", "%1 folders", folders);
    return text + ", " + localizedCount("%1 file", "%1 files", tree.size() - folders);
}

} // namespace orvane
