// The records the store keeps as JSON. The first byte picks the record, the rest is its
// JSON: what decodes encodes, and decodes again to the same record.

#include "RoundTrip.h"
#include "VeskModel/Capture.h"
#include "VeskModel/NagSettings.h"
#include "VeskModel/ReminderMeta.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const std::string_view json = Fuzz::text(data + 1, size - 1);
    switch (data[0] % 4) {
    case 0: Fuzz::recordRoundTrip<Capture>(json); break;
    case 1: Fuzz::recordRoundTrip<NagSettings>(json); break;
    case 2: Fuzz::recordRoundTrip<ReminderMeta>(json); break;
    case 3: Fuzz::recordRoundTrip<Place>(json); break;
    }
    return 0;
}
