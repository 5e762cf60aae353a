#pragma once

#include <string>

#include "Platform/Calendar.h"
#include "VeskIPC/ParseOutput.h"

// How a sentence was read, as labelled lines joined by line feeds, no line feed at the end.
struct Summary {
    std::string text;

    // `calendar` gives the time zone and locale in which the due date is shown.
    Summary(const ParseOutput& output, const Calendar& calendar);

    // "2026-03-14T09:05" as "Sat, Mar 14 at 9:05 AM", "2026-03-14" as "Sat, Mar 14" in the
    // calendar's locale; a text that doesn't read as either comes back unchanged.
    static std::string humanDate(const std::string& text, const Calendar& calendar);
};
