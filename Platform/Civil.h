#pragma once

#include <cstdint>

// Days of the proleptic Gregorian calendar, counted from 1970-01-01.
namespace Civil {

struct Day {
    int64_t year, month, day;
};

inline int64_t floorDiv(int64_t a, int64_t b) { return a / b - (a % b != 0 && (a < 0) != (b < 0)); }

inline int64_t daysFrom(int64_t year, int64_t month, int64_t day) {
    year -= month <= 2;
    int64_t era = floorDiv(year, 400);
    int64_t yearOfEra = year - era * 400;
    int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468;
}

inline Day dayOf(int64_t days) {
    days += 719468;
    int64_t era = floorDiv(days, 146097);
    int64_t dayOfEra = days - era * 146097;
    int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    int64_t shifted = (5 * dayOfYear + 2) / 153;
    int64_t day = dayOfYear - (153 * shifted + 2) / 5 + 1;
    int64_t month = shifted < 10 ? shifted + 3 : shifted - 9;
    return {yearOfEra + era * 400 + (month <= 2), month, day};
}

}  // namespace Civil
