#include "VeskApp/Geocoder.h"

#include <cmath>
#include <cstdlib>
#include <thread>

#include "Platform/JsonDecoder.h"
#include "Platform/Text.h"
#include "Platform/Version.h"
#include "VeskApp/Http.h"
#include "VeskIPC/Wire.h"

namespace {

std::string quoted(const std::string& text) { return "\u201c" + text + "\u201d"; }

// A coordinate as the service gives it: a decimal in a string, or a plain number.
std::optional<double> degrees(const JsonDecoder& value, double limit) {
    double number = 0;
    try {
        number = value.number();
    } catch (const DecodeError&) {
        const std::string text = value.string();
        char* end = nullptr;
        number = std::strtod(text.c_str(), &end);
        if (text.empty() || end != text.c_str() + text.size()) return std::nullopt;
    }
    if (!std::isfinite(number) || std::fabs(number) > limit) return std::nullopt;
    return number;
}

bool onThisMachine(const std::string& url) {
    for (const char* local : {"http://127.", "http://localhost", "http://[::1]"})
        if (url.starts_with(local)) return true;
    return false;
}

}  // namespace

Geocoder::Geocoder(std::string url, double timeoutSeconds) : url_(std::move(url)), timeoutSeconds_(timeoutSeconds) {}

std::string Geocoder::searchKey(std::string_view search) {
    return Text::lowercased(Text::trimWhitespaceAndNewlines(search));
}

std::variant<std::optional<Geocoder::Found>, std::string> Geocoder::read(std::string_view answer) {
    const auto document = JsonDocument::parse(answer);
    if (!document) return std::string("an answer that isn't JSON");
    try {
        const auto results = JsonDecoder(*document).elements();
        if (results.empty()) return std::optional<Found>();
        const JsonDecoder& first = results.front();
        auto latitude = degrees(first["lat"], 90);
        auto longitude = degrees(first["lon"], 180);
        if (!latitude || !longitude) return std::string("a result without coordinates");
        return std::optional(Found{*latitude, *longitude, first.optionalString("display_name").value_or("")});
    } catch (const DecodeError& error) {
        return "an answer of another shape (" + error.description + ")";
    }
}

Geocoder::Found Geocoder::search(const std::string& search, std::stop_token stop) {
    const std::string query = Text::trimWhitespaceAndNewlines(search);
    const std::string request = url_ + "/search?q=" + Http::escaped(query) + "&format=jsonv2&limit=1";
    const Http::Options options{timeoutSeconds_, std::string("vesk/") + veskVersion, !onThisMachine(url_)};
    auto unreachable = [&](const std::string& why) {
        return WireError{WireError::Code::unreachable, "Vesk couldn't look up " + quoted(query) + " at " + url_ + ": " +
                                                           why + ". Try again later, or give coordinates like " +
                                                           "--at \"52.37022, 4.89517\"."};
    };

    Http::Result result;
    {
        std::lock_guard guard(asking_);
        if (lastAsked_) std::this_thread::sleep_until(*lastAsked_ + spacing);
        lastAsked_ = std::chrono::steady_clock::now();
        result = Http::get(request, options, stop);
    }
    if (auto* failure = std::get_if<std::string>(&result)) throw unreachable(*failure);
    const Http::Answer& answer = std::get<Http::Answer>(result);
    if (answer.status != 200) throw unreachable("it answered with HTTP status " + std::to_string(answer.status));
    auto read = Geocoder::read(answer.body);
    if (auto* problem = std::get_if<std::string>(&read)) throw unreachable("it gave " + *problem);
    const auto& found = std::get<std::optional<Found>>(read);
    if (!found)
        throw WireError{WireError::Code::notFound, "Vesk found no place for " + quoted(query) +
                                                       ". Try a fuller address, with the town, or give coordinates " +
                                                       "like --at \"52.37022, 4.89517\"."};
    Found place = *found;
    if (Text::trimWhitespaceAndNewlines(place.address).empty()) place.address = query;
    return place;
}
