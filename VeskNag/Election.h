#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "Platform/Date.h"
#include "VeskNag/PlanContext.h"
#include "VeskNag/PlannedAlert.h"

// Which of the user's devices alerts: every device computes the same plan and keeps the
// alerts it owns, so that one device rings and not all of them.
namespace VeskNag {

// FNV-1a over 64 bits of the UTF-8 bytes: the one hash that may cross a process or a
// device. (The standard library's hashes may differ between runs and builds.)
uint64_t stableHash(std::string_view text);
// The hash of a text that begins with what `seed` is the hash of, followed by `text`.
uint64_t stableHash(std::string_view text, uint64_t seed);

// The start of the current stretch of activity: `previous` while the stretch runs, a new
// start at `lastActive`, absent once `lastActive` is older than `window`.
std::optional<Date> activeSince(std::optional<Date> previous, std::optional<Date> lastActive, Date now, double window);

// Whether this device alerts when no active device can be asked, and for every alarm
// without a device gate: the phones when there is one, else every device not relay-only.
bool fallsBackToMe(const PlanContext& context);

bool owns(const PlannedAlert& alert, const PlanContext& context);
bool owns(const std::optional<DeviceGate>& gate, AlertLevel level, Date fireDate, const PlanContext& context);

}  // namespace VeskNag
