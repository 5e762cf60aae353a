#include "VeskApp/Watching.h"

#include <gtest/gtest.h>

namespace {

using Edge = PlaceTrigger::Edge;

const Calendar amsterdam("Europe/Amsterdam", "en_US");
const Date noon = *amsterdam.date({2026, 11, 18, 12, 0});

StoredReminder waiting(const std::string& key, PlaceTrigger trigger) {
    StoredReminder reminder;
    reminder.key = reminder.title = key;
    reminder.list = "list";
    reminder.meta.trigger = trigger;
    return reminder;
}

StoreData store() {
    StoreData data;
    data.lists["list"] = StoredList{"list", "Reminders", false};
    data.places["home"] = Place{"p1", "Home", 52.37, 4.89, 100, {}};
    data.places["work"] = Place{"p2", "Work", 52.30, 4.95, 100, {}};
    for (StoredReminder reminder : {
             waiting("plants", PlaceTrigger{Edge::arrive, "home", 0}),
             waiting("spoken with a capital", PlaceTrigger{Edge::arrive, "Home", 0}),
             waiting("leaving home", PlaceTrigger{Edge::leave, "home", 600}),
             waiting("at work", PlaceTrigger{Edge::arrive, "work", 0}),
             waiting("done", PlaceTrigger{Edge::arrive, "home", 0}),
         })
        data.reminders[reminder.key] = reminder;
    data.reminders["done"].completed = true;
    return data;
}

TEST(Watching, ACrossingFiresTheTriggersOfThatPlaceByItsKey) {
    StoreData data = store();
    Watching::cross(data, Crossing{"home", Edge::arrive, noon});
    for (const auto& [key, reminder] : data.reminders) {
        const bool fired = key == "plants" || key == "spoken with a capital";
        EXPECT_EQ(reminder.meta.triggeredAt, fired ? std::optional(noon) : std::nullopt) << key;
    }
}

TEST(Watching, OnlyStoredPlacesThatRemindersWaitOnAreWatched) {
    StoreData data = store();
    EXPECT_EQ(Watching::needed(data, Config{}, Device{}, noon, amsterdam), (std::vector<std::string>{"home", "work"}));
    data.places.erase("home");
    data.reminders.erase("at work");
    EXPECT_TRUE(Watching::needed(data, Config{}, Device{}, noon, amsterdam).empty());
}

}  // namespace
