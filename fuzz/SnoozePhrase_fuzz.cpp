// `vesk snooze` reads any phrase: a moment it resolves lies after now (exactly now only
// for a duration of zero, "0m"), and a duration it reads is a finite number of seconds,
// not negative.

#include <cmath>

#include "Fuzz.h"
#include "VeskModel/NagSettings.h"
#include "VeskParse/SnoozeTime.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view phrase = Fuzz::text(data, size);
    if (const auto seconds = SnoozeTime::duration(phrase))
        Fuzz::check(std::isfinite(*seconds) && *seconds >= 0, "a duration is finite and not negative");
    const auto until = SnoozeTime::resolve(phrase, Fuzz::now(), Fuzz::amsterdam(), NagSettings{});
    if (!until) return 0;
    Fuzz::check(std::isfinite(until->seconds), "a snooze ends at a finite moment");
    const bool zero = SnoozeTime::duration(Text::lowercased(Text::trimBlanks(phrase))) == 0.0;
    Fuzz::check(*until > Fuzz::now() || (zero && *until == Fuzz::now()), "a snooze ends after now");
    return 0;
}
