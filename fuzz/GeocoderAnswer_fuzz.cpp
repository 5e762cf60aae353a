// The app reads a geocoder's answers: anything but a list of results is a failure in words,
// never a crash, and what it finds is a point on the earth that the region logic can place.

#include <cmath>

#include "Fuzz.h"
#include "VeskApp/Geocoder.h"
#include "VeskApp/Regions.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto read = Geocoder::read(Fuzz::text(data, size));
    const auto* found = std::get_if<std::optional<Geocoder::Found>>(&read);
    if (!found || !*found) return 0;
    const Geocoder::Found& place = **found;
    Fuzz::check(std::fabs(place.latitude) <= 90 && std::fabs(place.longitude) <= 180, "coordinates in range");
    Fuzz::check(Fuzz::validUtf8(place.address), "the address is valid UTF-8");
    const std::map<std::string, Place> places{{"home", Place{"1", "Home", 52.37022, 4.89517, 100, {}}}};
    const auto update = Regions::apply(places, {}, Fix{place.latitude, place.longitude, 10}, Date{});
    Fuzz::check(update.presence.size() == 1 && update.crossings.empty(), "a first fix is known and crosses nothing");
    return 0;
}
