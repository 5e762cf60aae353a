#pragma once

#include <cstdint>

#include "VeskApp/Config.h"
#include "VeskApp/Paths.h"

// `vesk-app plan`: this device's alerts for the next `hours` from the store, as lines or
// JSON. Reads the store only; works whether or not the app runs. Returns the exit status.
int printPlan(const Paths& paths, const Config& config, int64_t hours, bool json);
