#pragma once

#include "ports/Sentence.h"

#include <cstddef>
#include <string>
#include <vector>

namespace orvane {

/// A text of existing names that becomes a variable in their templates.
struct ORVImportVariable {
    std::string text; ///< not empty
    std::string name; ///< see `ORVIsVariableName`
};

/// Whether a new variable may have that name: not empty, without braces, backslash, ":" and "/", which names of variables
/// in file names cannot hold.
[[nodiscard]] bool ORVIsVariableName(const std::string &name);

/// Something that the templates cannot do.
struct ORVImportedNameProblem {
    std::size_t name;                   ///< position of the name that it is about
    FixedText format;                   ///< English with %1, %2 … for the arguments
    std::vector<std::string> arguments; ///< UTF-8, as they are
};

/// Templates for existing names.
struct ORVImportedNames {
    std::vector<std::string> templates; ///< one for each name, in order
    std::vector<ORVImportedNameProblem> problems;
};

/// Templates that give the names back: `names[0]` is the top-level folder's, the others those of its tree. Wherever one holds
/// a variable's text, its template has the variable; the longest text first, and never inside of what was turned before.
///
/// What a template has to look like depends on the whole preset. Without any variable, names are made from templates as
/// they stand, so every template is its name. With variables, a backslash before a brace is taken away, so every brace of a
/// name gets one. Names that look like variables need that taking away; where no variable was asked for, one is added
/// to the top-level folder's name, which gives the same names when it is left empty, and a problem says so. So does one for each
/// name that cannot be given back exactly.
[[nodiscard]] ORVImportedNames ORVImportNames(const std::vector<std::string> &names, const std::vector<ORVImportVariable> &variables);

} // namespace orvane
