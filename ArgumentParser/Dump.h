#pragma once

#include <string>

#include "ArgumentParser/Tree.h"
#include "ArgumentParserToolInfo/ToolInfo.h"

namespace ArgumentParser {

// The tool-info record of the path's last command and everything below it.
ArgumentParserToolInfo::ToolInfoV0 toolInfo(const CommandPath& path);

// The printed form of `toolInfo`, without a final line feed.
std::string dumpText(const CommandPath& path);

}  // namespace ArgumentParser
