// The app reads a local model server's answers: anything but a reading is a failure in
// words, never a crash, and a reading's title is the answer's text.

#include <stdexcept>

#include "Fuzz.h"
#include "VeskApp/LocalModel.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    try {
        const ModelReading reading = LocalModel::reading(Fuzz::text(data, size));
        Fuzz::check(Fuzz::validUtf8(reading.title), "the title is valid UTF-8");
    } catch (const std::runtime_error&) {
    }
    return 0;
}
