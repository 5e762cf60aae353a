#include "VeskParse/Parser.h"

// On which device the reminder applies.
void Parser::takeDeviceGate(Work& work, State& state) {
    if (work.take(R"(\b(?:next time|when|once|whenever) i[’']?m (?:at|on) (?:my |a )?(?:mac|computer|laptop|desk)\b)") ||
        work.take(R"(\bon my (?:mac|computer)\b)")) {
        state.capture.deviceGate = DeviceGate::anyMac();
    } else if (work.take(R"(\b(?:next time|when|once|whenever) i[’']?m on my phone\b)")) {
        state.capture.deviceGate = DeviceGate::phone();
    }
}
