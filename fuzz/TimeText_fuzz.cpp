// Times of day and night windows as users write them: what reads writes back with
// text() and reads again to the same value.

#include "Fuzz.h"
#include "VeskModel/NagSettings.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text = Fuzz::text(data, size);
    if (const auto time = TimeOfDay::fromText(text)) {
        Fuzz::check(time->hour >= 0 && time->hour <= 23 && time->minute >= 0 && time->minute <= 59,
                    "a time of day lies within the day");
        Fuzz::check(TimeOfDay::fromText(time->text()) == time, "a time of day reads back from its text");
    }
    if (const auto night = NightWindow::fromText(text))
        Fuzz::check(NightWindow::fromText(night->text()) == night, "a night window reads back from its text");
    return 0;
}
