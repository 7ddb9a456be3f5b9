#include "presets/ORVCheckedNames.h"

#include "presets/ORVNameTemplate.h"
#include "presets/ORVPresetManager.h"

#include <algorithm>
#include <utility>

namespace orvane {

namespace {

using Severity = ORVProblemSeverity;

/// Longest name of an item on Linux file systems in bytes (limits.h, NAME_MAX).
constexpr std::size_t LongestName = 255;
/// Longer templates are not searched for escaped keys, a search that takes more than linear time.
constexpr std::size_t LongestSearched = 4096;

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\n\v\f\r") == std::string_view::npos;
}

bool hasControlCharacter(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) { return (c >= 0 && c < ' ') || c == '\x7f'; });
}

/// Whether there is one half of a surrogate pair, which stands there as three bytes of its own (U+D800 to U+DFFF: a byte ED,
/// then one from A0 on).
bool hasUnpairedSurrogate(std::string_view text) {
    for (std::size_t at = text.find('\xED'); at != std::string_view::npos; at = text.find('\xED', at + 1)) {
        if (at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) >= 0xA0) {
            return true;
        }
    }
    return false;
}

std::string cleaned(std::string_view text) {
    return ORVPresetManager::cleanFilesystemEntities(text);
}

/// One template while it is looked at.
struct NameCheck {
    std::string_view name;
    const ORVVariableUse &variables;
    bool isTopFolder;
    std::vector<ORVNameProblem> problems = {};
    std::string literal = {}; ///< what stands outside the keys that will be replaced, as it will be in the name
    bool hasKeys = false;     ///< some of it will be replaced

    void add(Severity severity, const char *format, std::vector<std::string> arguments = {}) {
        problems.push_back({severity, format, std::move(arguments), false});
    }

    void checkAll() {
        // Names of the tree are scanned cleaned, which moves nothing.
        const ORVTemplateScan scan = ORVScanTemplate(isTopFolder ? std::string(name) : cleaned(name));
        checkEnding(scan);
        takeKeys(scan);
        checkEscapes(scan);
        checkLiteral();
    }

    void checkEnding(const ORVTemplateScan &scan) {
        if (scan.ending == ORVScanEnding::OpenBraceAtEnd) {
            add(Severity::Error, "the name '%1' ends in \"{\" without a backslash before it: looking for its variables never ends",
                {std::string(name)});
            problems.back().neverEnds = true;
        } else if (scan.ending == ORVScanEnding::EscapedCloseAtEnd) {
            add(Severity::Error,
                "the name '%1' ends in \"}\" with a backslash before it, behind an open \"{\": looking for its variables never ends",
                {std::string(name)});
            problems.back().neverEnds = true;
        } else if (scan.hasUnclosedKey) {
            add(Severity::Warning, "a \"{\" in '%1' has no closing \"}\": it stays in the name", {std::string(name)});
        }
    }

    void takeKeys(const ORVTemplateScan &scan) {
        std::size_t done = 0;
        for (const ORVTemplateKey &key : scan.keys) {
            const std::string_view written = name.substr(key.begin, key.end - key.begin);
            if (!isTopFolder && written.find_first_of(":/") != std::string_view::npos) {
                add(Severity::Warning,
                    "the variable '%1' is asked for as '%2' and not replaced here: names of variables in file names "
                    "may not hold \":\" or \"/\"",
                    {ORVUnescapeBraces(written.substr(1, written.size() - 2)), key.name});
                continue;
            }
            literal.append(name, done, key.begin - done);
            done = key.end;
            hasKeys = true;
        }
        literal.append(name, done, std::string_view::npos);
    }

    void checkEscapes(const ORVTemplateScan &scan) {
        if (literal.find("\\{") == std::string::npos && literal.find("\\}") == std::string::npos) {
            return;
        }
        if (variables.isEmpty() && scan.ending != ORVScanEnding::Ends) {
            return;
        }
        if (variables.isEmpty()) {
            add(Severity::Note, "the preset uses no variables: the backslash before a brace in '%1' stays in the name",
                {std::string(name)});
            return;
        }
        checkEscapedKeys(scan);
        literal = ORVUnescapeBraces(literal);
        if (isTopFolder && ORVUnescapeBraces(literal) != literal) {
            add(Severity::Warning,
                "backslashes before braces in '%1' are taken away twice: the folder is made under another name than "
                "the one that is checked and opened",
                {std::string(name)});
        }
    }

    /// An escaped key that is also a variable is replaced all the same.
    void checkEscapedKeys(const ORVTemplateScan &scan) {
        const std::string text = ORVUnescapeBraces(name);
        if (text.size() > LongestSearched) {
            return;
        }
        for (std::size_t open = text.find('{'); open != std::string::npos; open = text.find('{', open + 1)) {
            for (std::size_t close = text.find('}', open); close != std::string::npos && close - open - 1 <= variables.longest();
                 close = text.find('}', close + 1)) {
                const std::string key = text.substr(open + 1, close - open - 1);
                const bool isMeant =
                    std::any_of(scan.keys.begin(), scan.keys.end(), [&](const ORVTemplateKey &each) { return each.name == key; });
                if (!isMeant && variables.contains(key)) {
                    add(Severity::Warning, "'%1' is a variable of this preset: it is replaced here, too, in spite of the backslash", {key});
                    return;
                }
            }
        }
    }

    void checkLiteral() {
        checkCharacters();
        if (literal.size() > LongestName) {
            add(Severity::Error,
                hasKeys ? "the name is %1 bytes long without its variables: no name may be longer than 255"
                        : "the name is %1 bytes long: no name may be longer than 255",
                {std::to_string(literal.size())});
        }
        if (hasKeys) {
            return;
        }
        if (literal == "." || literal == "..") {
            add(Severity::Error, "nothing can be named '%1': the creation will fail", {literal});
        } else if (isBlank(literal)) {
            add(Severity::Warning, "the name consists of blanks only");
        }
    }

    void checkCharacters() {
        if (literal.find('\0') != std::string::npos) {
            add(Severity::Error, "the name holds a NUL character: the creation will fail");
        } else if (hasControlCharacter(literal)) {
            add(Severity::Warning, "the name holds a control character, such as a line feed");
        }
        if (hasUnpairedSurrogate(literal)) {
            add(Severity::Warning, "the name holds half of a surrogate pair, which is no character: many programs cannot show such a name");
        }
        if (literal.find_first_of(":/") == std::string::npos) {
            return;
        }
        if (isTopFolder) {
            add(Severity::Warning,
                "\":\" and \"/\" become \"_\": the folder is made as '%1', but checked and opened under the "
                "name as it stands",
                {cleaned(name)});
        } else {
            add(Severity::Note, "\":\" and \"/\" become \"_\": the name will be '%1'", {cleaned(name)});
        }
    }
};

std::vector<ORVNameProblem> checkName(std::string_view name, const ORVVariableUse &variables, bool isTopFolder) {
    NameCheck check{name, variables, isTopFolder};
    check.checkAll();
    return std::move(check.problems);
}

/// What becomes of two items of one name. A folder goes into one that is there; a file, and a folder to be copied, which is a
/// file in the tree, empties a file that is there, and cannot be made over anything else.
ORVNameProblem problemOfSameName(ORVSiblingKind first, ORVSiblingKind second, std::vector<std::string> arguments) {
    using Kind = ORVSiblingKind;
    if (first == Kind::Folder && second == Kind::Folder) {
        return {Severity::Warning, "'%1' is also the name of children[%2]: both become one folder", std::move(arguments)};
    }
    if (first == Kind::CopiedFolder && second == Kind::Folder) {
        return {Severity::Warning,
                "'%1' is also the name of children[%2], a folder that is copied: both become one folder, in which a file that both hold "
                "is empty",
                std::move(arguments)};
    }
    if (first == Kind::Folder || first == Kind::CopiedFolder || second == Kind::Folder) {
        return {Severity::Error, "'%1' is also the name of children[%2]: the creation will fail", std::move(arguments)};
    }
    const bool losesSomething = first != Kind::EmptyFile || second != Kind::EmptyFile;
    return {losesSomething ? Severity::Error : Severity::Warning, "'%1' is also the name of children[%2]: they become one empty file",
            std::move(arguments)};
}

std::string withBlanksReplaced(std::string text) {
    std::replace(text.begin(), text.end(), ' ', '_');
    return text;
}

} // namespace

void ORVVariableUse::add(std::string_view scannedText, const ORVProblemPlace &place) {
    if (scannedText.find('{') == std::string_view::npos) {
        return;
    }
    for (ORVTemplateKey &key : ORVScanTemplate(scannedText).keys) {
        ORVProblemPlace at = place;
        at.key = at.isInTree ? "filename" : "directoryName";
        if (_places.try_emplace(key.name, std::move(at)).second) {
            _longest = std::max(_longest, key.name.size());
            _names.push_back(std::move(key.name));
        }
    }
}

std::vector<ORVVariableProblem> ORVVariableUse::problems(bool hasScript, TextCase &textCase) const {
    std::vector<ORVVariableProblem> result;
    std::unordered_map<std::string, const std::string *> inUpperCase;
    std::unordered_map<std::string, const std::string *> inScript;
    for (const std::string &name : _names) {
        const std::string upper = textCase.uppercase(name);
        const std::string variable = "P_" + withBlanksReplaced(upper);
        const auto [same, isNew] = inUpperCase.try_emplace(upper, &name);
        const auto [sameInScript, isNewInScript] = inScript.try_emplace(variable, &name);
        if (!isNew) {
            result.push_back({_places.at(name),
                              hasScript ? "the variables '%1' and '%2' differ only in case and are two; the script sees only the later one"
                                        : "the variables '%1' and '%2' differ only in case and are two",
                              {*same->second, name}});
        } else if (hasScript && !isNewInScript) {
            result.push_back({_places.at(name),
                              "the variables '%1' and '%2' both reach the script as %3: it sees only the later one",
                              {*sameInScript->second, name, variable}});
        }
        if (hasScript && name.find_first_of(std::string_view("=\0", 2)) != std::string::npos) {
            result.push_back(
                {_places.at(name), "the variable '%1' cannot reach the script: its name holds \"=\" or a NUL character", {name}});
        }
    }
    return result;
}

std::optional<ORVNameProblem> ORVSiblingNames::add(std::string_view filename, std::size_t index, ORVSiblingKind kind,
                                                   const ORVVariableUse &variables, TextCase &textCase) {
    const std::string name = cleaned(variables.isEmpty() ? std::string(filename) : ORVUnescapeBraces(filename));
    const auto [same, isNew] = _names.try_emplace(name, Sibling{index, kind});
    const auto [sameInUpperCase, isNewInUpperCase] = _namesInUpperCase.try_emplace(textCase.uppercase(name), index);
    if (!isNew) {
        return problemOfSameName(same->second.kind, kind, {name, std::to_string(same->second.index)});
    }
    if (!isNewInUpperCase) {
        return ORVNameProblem{Severity::Warning,
                              "the name differs only in case from that of children[%1]: some file systems take them for one",
                              {std::to_string(sameInUpperCase->second)}};
    }
    return std::nullopt;
}

std::vector<ORVNameProblem> ORVCheckNodeName(std::string_view name, const ORVVariableUse &variables) {
    return checkName(name, variables, false);
}

std::vector<ORVNameProblem> ORVCheckFolderName(std::string_view name, const ORVVariableUse &variables) {
    return checkName(name, variables, true);
}

} // namespace orvane
