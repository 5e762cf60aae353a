#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ArgumentParser/Declaration.h"

// How declared inputs and commands are named on the command line.
namespace ArgumentParser {

// "dryRun" -> "dry-run", "PlacesList" -> "places-list", "URLSession" -> "url-session".
std::string dashCased(std::string_view identifier);

// The names of a flag or option: the declared ones, else the field as a long name.
std::vector<Name> namesOf(const Input& input);

// The names in the order help shows them: short names first, then the long ones.
std::vector<Name> namesForHelp(const Input& input);

// The first long name, else the first name.
Name preferredName(const Input& input);

// "<value>" without brackets: the declared value name, else the field with dashes.
std::string valueNameOf(const Input& input);

// The names under which a command's help is asked for, "--version", the tool-info dump.
Name versionName();
Name dumpHelpName();

}  // namespace ArgumentParser
