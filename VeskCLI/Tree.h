#pragma once

#include "ArgumentParser/Declaration.h"

// The whole `vesk` command tree, built once. The root's default subcommand is `add`.
const ArgumentParser::Command& veskRoot();
