#include "Platform/DateFormat.h"

#include <memory>

#include <unicode/dtptngen.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include "Platform/Text.h"

namespace {

const char* const weekdayNames[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
const char* const monthNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// English and POSIX locales get one fixed form with plain spaces, whatever the ICU data
// version says about separators. Writing it by hand also spares every run the loading
// of ICU's locale data.
bool isEnglish(const Calendar& calendar) {
    std::string id = calendar.localeId();
    return id.rfind("en", 0) == 0 && (id.size() == 2 || id[2] == '_' || id[2] == '-');
}

std::string english(Date date, const Calendar& calendar, bool withTime) {
    DateComponents c = calendar.components(date);
    int64_t weekday = calendar.component(CalendarComponent::weekday, date);
    std::string text = Text::format("%s, %s %lld", weekdayNames[(weekday + 6) % 7], monthNames[(*c.month + 11) % 12],
                                    static_cast<long long>(*c.day));
    if (!withTime) return text;
    int64_t hour = *c.hour % 12 == 0 ? 12 : *c.hour % 12;
    return text + Text::format(" at %lld:%02lld %s", static_cast<long long>(hour), static_cast<long long>(*c.minute),
                               *c.hour < 12 ? "AM" : "PM");
}

std::string localized(Date date, const Calendar& calendar, const char* skeleton) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale locale(calendar.localeId().c_str());
    std::unique_ptr<icu::DateTimePatternGenerator> generator(icu::DateTimePatternGenerator::createInstance(locale, status));
    if (U_FAILURE(status)) return "";
    icu::UnicodeString pattern = generator->getBestPattern(skeleton, status);
    icu::SimpleDateFormat formatter(pattern, locale, status);
    if (U_FAILURE(status)) return "";
    formatter.adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(calendar.timeZoneId())));
    icu::UnicodeString text;
    formatter.format((date.seconds + Date::unixEpochOffset) * 1000.0, text);
    std::string result;
    text.toUTF8String(result);
    return result;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

namespace DateFormat {

// Reads the numeric fields y, M, d, H and m, quoted literals and punctuation. Each field
// takes one or more digits. The fields must name an existing wall time of the calendar:
// 30 February and a time that a clock change skips are refused, as a strict parser does.
std::optional<Date> parse(std::string_view text, std::string_view pattern, const Calendar& calendar) {
    DateComponents components{1970, 1, 1, 0, 0};
    size_t at = 0;
    for (size_t p = 0; p < pattern.size();) {
        char letter = pattern[p];
        if (letter == '\'') {
            size_t close = pattern.find('\'', p + 1);
            if (close == std::string_view::npos) return std::nullopt;
            std::string_view literal = pattern.substr(p + 1, close - p - 1);
            if (text.substr(at, literal.size()) != literal) return std::nullopt;
            at += literal.size();
            p = close + 1;
            continue;
        }
        size_t run = pattern.find_first_not_of(letter, p) - p;
        if (run > pattern.size()) run = pattern.size() - p;
        std::optional<int64_t>* field = nullptr;
        switch (letter) {
            case 'y': field = &components.year; break;
            case 'M': field = &components.month; break;
            case 'd': field = &components.day; break;
            case 'H': field = &components.hour; break;
            case 'm': field = &components.minute; break;
            default: break;
        }
        if (!field) {
            if (text.substr(at, run) != pattern.substr(p, run)) return std::nullopt;
            at += run;
        } else {
            size_t start = at;
            while (at < text.size() && isDigit(text[at]) && at - start < 9) ++at;
            if (at == start) return std::nullopt;
            *field = *Text::parseInt64(text.substr(start, at - start));
        }
        p += run;
    }
    if (at != text.size()) return std::nullopt;
    auto date = calendar.date(components);
    if (!date || calendar.components(*date) != components) return std::nullopt;
    return date;
}

std::string weekdayMonthDayTime(Date date, const Calendar& calendar) {
    return isEnglish(calendar) ? english(date, calendar, true) : localized(date, calendar, "EEEMMMdjmm");
}

std::string weekdayMonthDay(Date date, const Calendar& calendar) {
    return isEnglish(calendar) ? english(date, calendar, false) : localized(date, calendar, "EEEMMMd");
}

}  // namespace DateFormat
