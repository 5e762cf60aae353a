#pragma once

#include <string>

#include "ArgumentParser/Tree.h"

// Help screens and usage lines.
namespace ArgumentParser {

// Where help texts begin, counted from the left edge.
constexpr int labelColumn = 26;

// "vesk places add [--json] [--at <at>] [--here] [--radius <radius>] <name>", or the
// command's own usage when it declares one.
std::string usageLine(const CommandPath& path);

// The help screen of the path's last command, for a screen this wide, without a final line feed.
std::string helpText(const CommandPath& path, int screenWidth);

// "Usage: ..." and the line that says where to find more, as in a usage error.
std::string usageText(const CommandPath& path);

}  // namespace ArgumentParser
