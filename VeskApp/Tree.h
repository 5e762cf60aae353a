#pragma once

#include "ArgumentParser/Declaration.h"

// The command tree of `vesk-app`: serving (the default) and `plan`.
const ArgumentParser::Command& appRoot();
