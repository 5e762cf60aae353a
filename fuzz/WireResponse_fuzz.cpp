// The command line reads the app's responses: decoding never crashes, and what decodes
// goes back and forth over the wire unchanged.

#include "RoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Fuzz::wireRoundTrip(Fuzz::text(data, size), decodeResponse);
    return 0;
}
