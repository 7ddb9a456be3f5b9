#include "presets/ORVImportedNames.h"

#include "presets/ORVNameTemplate.h"
#include "presets/ORVPresetManager.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace orvane {

namespace {

constexpr FixedText VariableAdded =
    forTranslation("names that look like variables need a variable in the preset: '{%1}' was added to the name of the "
                   "top-level folder; leave it empty when you use the preset");
constexpr FixedText TextKept = forTranslation("'%1' in '%2' stays as it is: a variable behind a backslash would not be found");
constexpr FixedText NameChanges = forTranslation("'%1' cannot be given back exactly: it becomes '%2'");
constexpr FixedText PathChanges = forTranslation("'%1' is checked and opened as '%2'");

/// A stretch of a name: a text as it is, or one that becomes a variable.
struct Piece {
    std::string_view text;
    const ORVImportVariable *variable = nullptr;
};
using Pieces = std::vector<Piece>;

/// Splits the plain pieces at the variable's text.
void turnInto(Pieces &pieces, const ORVImportVariable &variable) {
    Pieces result;
    for (const Piece &piece : pieces) {
        std::size_t done = 0;
        for (std::size_t found = piece.variable == nullptr ? piece.text.find(variable.text) : std::string_view::npos;
             found != std::string_view::npos; found = piece.text.find(variable.text, done)) {
            if (found > done) {
                result.push_back({piece.text.substr(done, found - done)});
            }
            result.push_back({piece.text.substr(found, variable.text.size()), &variable});
            done = found + variable.text.size();
        }
        if (done < piece.text.size() || piece.variable != nullptr) {
            result.push_back({piece.text.substr(done), piece.variable});
        }
    }
    pieces = std::move(result);
}

bool isBehindBackslash(const Pieces &pieces, std::size_t index) {
    return index > 0 && pieces[index - 1].variable == nullptr && pieces[index - 1].text.ends_with('\\');
}

/// Joins neighbouring plain pieces, which borrow from one name and lie side by side.
void joinPlainPieces(Pieces &pieces) {
    Pieces result;
    for (const Piece &piece : pieces) {
        if (!result.empty() && piece.variable == nullptr && result.back().variable == nullptr) {
            result.back().text = std::string_view(result.back().text.data(), result.back().text.size() + piece.text.size());
        } else {
            result.push_back(piece);
        }
    }
    pieces = std::move(result);
}

/// The making of one preset's templates.
struct Import {
    const std::vector<std::string> &names;
    std::vector<Pieces> pieces = {};
    ORVImportedNames result = {};
    std::string added = {}; ///< name of the variable that was added, if any

    void split(const std::vector<ORVImportVariable> &variables) {
        std::vector<const ORVImportVariable *> longestFirst;
        longestFirst.reserve(variables.size());
        for (const ORVImportVariable &variable : variables) {
            longestFirst.push_back(&variable);
        }
        std::stable_sort(longestFirst.begin(), longestFirst.end(),
                         [](const auto *left, const auto *right) { return left->text.size() > right->text.size(); });
        for (const std::string &name : names) {
            pieces.push_back({{name}});
            for (const ORVImportVariable *variable : longestFirst) {
                turnInto(pieces.back(), *variable);
            }
        }
    }

    /// A variable is found only where no backslash stands before its brace, and replaced wherever it stands once it is
    /// found somewhere. Those that would be found nowhere are plain text again. Turning one back can put a backslash before
    /// another, hence the repetition, which ends because each round has fewer variables.
    void dropUnfindable() {
        for (bool changed = true; changed;) {
            changed = false;
            const auto found = findable();
            for (std::size_t i = 0; i < pieces.size(); ++i) {
                changed = dropUnfindableOf(i, found) || changed;
            }
        }
    }

    [[nodiscard]] std::unordered_set<std::string> findable() const {
        std::unordered_set<std::string> found;
        for (const Pieces &each : pieces) {
            for (std::size_t i = 0; i < each.size(); ++i) {
                if (each[i].variable != nullptr && !isBehindBackslash(each, i)) {
                    found.insert(each[i].variable->name);
                }
            }
        }
        return found;
    }

    bool dropUnfindableOf(std::size_t name, const std::unordered_set<std::string> &found) {
        bool changed = false;
        for (Piece &piece : pieces[name]) {
            if (piece.variable != nullptr && !found.contains(piece.variable->name)) {
                report(name, TextKept, {std::string(piece.text), names[name]});
                piece.variable = nullptr;
                changed = true;
            }
        }
        if (changed) {
            joinPlainPieces(pieces[name]);
        }
        return changed;
    }

    [[nodiscard]] bool hasVariables() const {
        return std::any_of(pieces.begin(), pieces.end(), [](const Pieces &each) {
            return std::any_of(each.begin(), each.end(), [](const Piece &piece) { return piece.variable != nullptr; });
        });
    }

    [[nodiscard]] bool allNamesPassAsTemplates() const {
        return std::all_of(names.begin(), names.end(), [](const std::string &name) {
            const ORVTemplateScan scan = ORVScanTemplate(name);
            return scan.keys.empty() && scan.ending == ORVScanEnding::Ends;
        });
    }

    void addVariable() {
        added = names[0].ends_with('\\') ? "Prefix" : "Suffix";
        const std::string base = added;
        const auto isTaken = [&](const std::string &name) { return name.find("{" + added + "}") != std::string::npos; };
        for (int number = 2; std::any_of(names.begin(), names.end(), isTaken); ++number) {
            added = base + " " + std::to_string(number);
        }
        report(0, VariableAdded, {added});
    }

    [[nodiscard]] std::string escapedTemplate(std::size_t name) const {
        std::string text;
        for (const Piece &piece : pieces[name]) {
            if (piece.variable == nullptr) {
                // The top-level folder's name is unescaped twice on its way to the disk, the second time as a finished name.
                const std::string once = ORVEscapeBraces(piece.text);
                text += name == 0 && ORVUnescapeBraces(piece.text) != piece.text ? ORVEscapeBraces(once) : once;
                continue;
            }
            text += text.ends_with('\\') ? "\\{" : "{";
            text += piece.variable->name + "}";
        }
        if (name == 0 && !added.empty()) {
            text = text.ends_with('\\') ? "{" + added + "}" + text : text + "{" + added + "}";
        }
        return text;
    }

    /// The prompt's rows, each filled with the first text that its variable stands for.
    [[nodiscard]] std::vector<PromptValueRow> originalRows() const {
        std::vector<PromptValueRow> rows;
        std::unordered_map<std::string, std::string> values;
        for (const Pieces &each : pieces) {
            for (const Piece &piece : each) {
                if (piece.variable != nullptr) {
                    values.try_emplace(piece.variable->name, piece.text);
                }
            }
        }
        std::unordered_set<std::string> listed;
        for (std::size_t i = 0; i < names.size(); ++i) {
            for (ORVTemplateKey &key : ORVScanTemplate(result.templates[i]).keys) {
                if (listed.insert(key.name).second || i == 0) {
                    const auto value = values.find(key.name);
                    rows.push_back({key.name, value == values.end() ? "" : value->second});
                }
            }
        }
        return rows;
    }

    [[nodiscard]] std::string wantedName(std::size_t name, const std::vector<PromptValueRow> &rows) const {
        std::string wanted;
        for (const Piece &piece : pieces[name]) {
            const auto row = piece.variable == nullptr ? rows.end() : std::find_if(rows.begin(), rows.end(), [&](const auto &each) {
                return each.key == piece.variable->name;
            });
            wanted += row == rows.end() ? std::string(piece.text) : row->value;
        }
        return wanted;
    }

    /// Creates every name and compares.
    void verify() {
        const std::vector<PromptValueRow> rows = originalRows();
        for (std::size_t i = 0; i < names.size(); ++i) {
            const std::string filled = ORVFillTemplate(result.templates[i], rows);
            const std::string made = ORVPresetManager::cleanFilesystemEntities(i == 0 ? ORVFillTemplate(filled, rows) : filled);
            const std::string wanted = wantedName(i, rows);
            if (made != wanted) {
                report(i, NameChanges, {wanted, made});
            }
            if (i == 0 && filled != made) {
                report(i, PathChanges, {made, filled});
            }
        }
    }

    void report(std::size_t name, FixedText format, std::vector<std::string> arguments) {
        result.problems.push_back({name, format, std::move(arguments)});
    }
};

} // namespace

bool ORVIsVariableName(const std::string &name) {
    return !name.empty() && name.find_first_of(std::string_view("{}\\:/\0", 6)) == std::string::npos;
}

ORVImportedNames ORVImportNames(const std::vector<std::string> &names, const std::vector<ORVImportVariable> &variables) {
    Import import{names};
    import.split(variables);
    import.dropUnfindable();
    const bool substitutes = import.hasVariables() || !import.allNamesPassAsTemplates();
    if (substitutes && !import.hasVariables()) {
        import.addVariable();
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        import.result.templates.push_back(substitutes ? import.escapedTemplate(i) : names[i]);
    }
    import.verify();
    return std::move(import.result);
}

} // namespace orvane
