#pragma once

#include <string_view>
#include <vector>

#include "ArgumentParser/Declaration.h"

// The command tree as the framework walks it: the declared commands, and a `help` child that
// the root gets when it has subcommands.
namespace ArgumentParser {

using CommandPath = std::vector<const Command*>;

// `help [subcommands ...]`: shows the help of the command that the names lead to.
const Command& helpCommand();

// The children of the last command of the path, in order, `help` last at the root.
std::vector<const Command*> childrenOf(const CommandPath& path);

// The child of the path's last command called `name` (or with that alias), exactly.
const Command* childNamed(const CommandPath& path, std::string_view name);

// The names of the commands on the path, joined by blanks: "vesk places add".
std::string pathName(const CommandPath& path);

}  // namespace ArgumentParser
