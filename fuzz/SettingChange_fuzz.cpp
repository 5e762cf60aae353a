// `vesk settings set KEY VALUE` with any key and value. The input is lines of KEY=VALUE,
// applied in turn: a refusal changes nothing, and after an accepted change every field
// lies within its range.

#include "Fuzz.h"
#include "VeskModel/NagSettings.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    NagSettings settings;
    for (std::string_view line : Text::split(Fuzz::text(data, size), '\n')) {
        const size_t equals = line.find('=');
        if (equals == std::string_view::npos) continue;
        const NagSettings before = settings;
        if (settings.set(line.substr(0, equals), line.substr(equals + 1))) {
            Fuzz::check(settings == before, "a refused change changes nothing");
            continue;
        }
        for (NagSettings::Field field : NagSettings::allFields()) {
            const auto [low, high] = NagSettings::range(field);
            const int64_t value = settings.get(field);
            Fuzz::check(low <= value && value <= high, "every field lies within its range");
        }
    }
    return 0;
}
