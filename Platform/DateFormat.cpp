#include "Platform/DateFormat.h"

#include <memory>

#include <unicode/dtptngen.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace {

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

icu::TimeZone* zoneOf(const Calendar& calendar) {
    return icu::TimeZone::createTimeZone(unicode(calendar.timeZoneId()));
}

// English and POSIX locales get one fixed form with plain spaces, whatever the ICU data
// version says about separators.
bool isEnglish(const Calendar& calendar) {
    std::string id = calendar.localeId();
    return id.rfind("en", 0) == 0 && (id.size() == 2 || id[2] == '_' || id[2] == '-');
}

std::string format(Date date, const Calendar& calendar, const char* englishPattern, const char* skeleton) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale locale(isEnglish(calendar) ? "en_US_POSIX" : calendar.localeId().c_str());
    icu::UnicodeString pattern;
    if (isEnglish(calendar)) {
        pattern = englishPattern;
    } else {
        std::unique_ptr<icu::DateTimePatternGenerator> generator(
            icu::DateTimePatternGenerator::createInstance(locale, status));
        if (U_SUCCESS(status)) pattern = generator->getBestPattern(skeleton, status);
        if (U_FAILURE(status) || pattern.isEmpty()) {
            status = U_ZERO_ERROR;
            pattern = englishPattern;
        }
    }
    icu::SimpleDateFormat formatter(pattern, locale, status);
    if (U_FAILURE(status)) return "";
    formatter.adoptTimeZone(zoneOf(calendar));
    icu::UnicodeString text;
    formatter.format((date.seconds + Date::unixEpochOffset) * 1000.0, text);
    std::string result;
    text.toUTF8String(result);
    return result;
}

}  // namespace

namespace DateFormat {

std::optional<Date> parse(std::string_view text, std::string_view pattern, const Calendar& calendar) {
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat formatter(unicode(pattern), icu::Locale("en_US_POSIX"), status);
    if (U_FAILURE(status)) return std::nullopt;
    formatter.setLenient(false);
    formatter.adoptTimeZone(zoneOf(calendar));
    icu::UnicodeString subject = unicode(text);
    icu::ParsePosition position(0);
    UDate result = formatter.parse(subject, position);
    if (position.getErrorIndex() >= 0 || position.getIndex() != subject.length()) return std::nullopt;
    return Date{result / 1000.0 - Date::unixEpochOffset};
}

std::string weekdayMonthDayTime(Date date, const Calendar& calendar) {
    return format(date, calendar, "EEE, MMM d 'at' h:mm a", "EEEMMMdjmm");
}

std::string weekdayMonthDay(Date date, const Calendar& calendar) {
    return format(date, calendar, "EEE, MMM d", "EEEMMMd");
}

}  // namespace DateFormat
