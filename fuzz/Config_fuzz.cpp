// The app's config file, whatever it holds: a config it reads names nothing empty, and
// a refusal names the line.

#include "Fuzz.h"
#include "VeskApp/Config.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto result = Config::parse(Fuzz::text(data, size));
    if (const auto* problem = std::get_if<std::string>(&result)) {
        Fuzz::check(problem->starts_with("config:"), "a refusal names the line");
        return 0;
    }
    const Config& config = std::get<Config>(result);
    Fuzz::check(!config.deviceName || !config.deviceName->empty(), "a device name is not empty");
    Fuzz::check(!config.defaultList || !config.defaultList->empty(), "a default list is not empty");
    for (const auto& name : config.ignoredLists)
        Fuzz::check(!name.empty() && name.find(',') == std::string::npos, "an ignored list is one name");
    return 0;
}
