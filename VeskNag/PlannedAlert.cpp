#include "VeskNag/PlannedAlert.h"

#include "VeskNag/Election.h"

std::string PlannedAlert::id() const { return key + "#" + std::to_string(ordinal); }

Uuid PlannedAlert::alarmID() const {
    const std::string text = id();
    const uint64_t halves[] = {VeskNag::stableHash(text), VeskNag::stableHash("vesk-alarm:" + text)};
    Uuid uuid;
    for (int half = 0; half < 2; ++half)
        for (int i = 0; i < 8; ++i) uuid.bytes[half * 8 + i] = static_cast<uint8_t>(halves[half] >> (56 - 8 * i));
    uuid.bytes[6] = 0x80 | (uuid.bytes[6] & 0x0f);  // version nibble 8
    uuid.bytes[8] = 0x80 | (uuid.bytes[8] & 0x3f);  // the variant of RFC 4122
    return uuid;
}
