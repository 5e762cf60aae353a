#pragma once

#include <string>
#include <string_view>

namespace ArgumentParser {

// Breaks `text` at blanks into lines of fewer than `width - indent` characters where it can,
// keeps its own line feeds, and indents every non-empty line by `indent` columns. A word
// longer than a line stands on a line of its own.
std::string wrapped(std::string_view text, int width, int indent = 0);

// Indents every line but the first by `indent` columns, leaving empty lines empty.
std::string hangingIndent(std::string_view text, int indent);

}  // namespace ArgumentParser
