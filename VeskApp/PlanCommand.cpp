#include "VeskApp/PlanCommand.h"

#include <unistd.h>

#include <filesystem>
#include <iostream>

#include <nlohmann/json.hpp>

#include "Platform/DateFormat.h"
#include "Platform/Json.h"
#include "Platform/Text.h"
#include "VeskApp/Activity.h"
#include "VeskApp/Scheduler.h"
#include "VeskApp/Store.h"

namespace {

const char* levelName(AlertLevel level) {
    switch (level) {
        case AlertLevel::notification: return "notification";
        case AlertLevel::timeSensitive: return "timeSensitive";
        case AlertLevel::alarm: return "alarm";
    }
    return "notification";
}

}  // namespace

int printPlan(const Paths& paths, const Config& config, int64_t hours, bool json) {
    const Date now = Date::now();
    const Calendar calendar = Calendar::current();
    std::vector<PlannedAlert> alerts;
    if (std::filesystem::exists(paths.database())) {
        Store store(paths.database(), Database::Mode::readOnly);
        if (auto failure = store.failure()) {
            std::cerr << "vesk-app: " << *failure << "\n";
            return 3;
        }
        auto data = store.data();
        Activity activity(config, data->device);
        alerts = Scheduler::upcoming(*data, config, activity.me(now), now, calendar, static_cast<double>(hours) * 3600);
    }

    if (json) {
        Json list = Json::array();
        for (const PlannedAlert& alert : alerts) {
            list.push_back({{"key", alert.key},
                            {"title", alert.title},
                            {"fireDate", DateFormat::iso8601(alert.fireDate)},
                            {"level", levelName(alert.level)},
                            {"ordinal", alert.ordinal},
                            {"id", alert.id()},
                            {"alarmID", alert.alarmID().text()}});
        }
        std::cout << JsonText::pretty(list).value_or("[]") << "\n";
        return 0;
    }
    if (alerts.empty()) {
        std::cout << "Nothing planned in the next " << hours << (hours == 1 ? " hour.\n" : " hours.\n");
        return 0;
    }
    for (const PlannedAlert& alert : alerts) {
        std::string when = DateFormat::weekdayMonthDayTime(alert.fireDate, calendar);
        std::string level = levelName(alert.level);
        std::cout << when << std::string(when.size() < 26 ? 26 - when.size() : 2, ' ') << level
                  << std::string(15 - level.size(), ' ') << alert.title << "\n";
    }
    return 0;
}
