#pragma once

#include <string_view>

// The command line's two streams.
namespace Output {

// Writes `text` and one line feed to standard output, and flushes, so nothing is lost
// when the process ends on the spot afterwards.
void print(std::string_view text);

// Writes `text` to standard error in one write.
void writeError(std::string_view text);

}  // namespace Output
