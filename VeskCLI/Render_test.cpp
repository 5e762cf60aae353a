#include "VeskCLI/Render.h"

#include <gtest/gtest.h>

namespace {

ReminderDTO reminder(int64_t number, std::string title, std::string detail) {
    ReminderDTO dto;
    dto.number = number;
    dto.title = std::move(title);
    dto.detail = std::move(detail);
    return dto;
}

std::string listed(std::optional<std::vector<ReminderDTO>> reminders) {
    Response response;
    response.reminders = std::move(reminders);
    return Render::listText(response);
}

TEST(RenderList, NumbersTakeTheWidthOfTheHighest) {
    EXPECT_EQ(listed(std::nullopt), "Nothing here.");
    EXPECT_EQ(listed(std::vector<ReminderDTO>{}), "Nothing here.");
    // The highest, not the last.
    EXPECT_EQ(listed(std::vector{reminder(12, "a", "x"), reminder(3, "b", "")}), "12  a\n    x\n 3  b\n    ");
}

// An address or the coordinates, and the radius truncated toward zero.
TEST(RenderPlaces, WhereAndHowManyWaitOnIt) {
    auto place = [](std::optional<std::string> address, double radius) {
        return PlaceDTO{"p1", "gym", 52.370216, 4.895168, radius, std::move(address), 0};
    };
    EXPECT_EQ(Render::where(place(std::nullopt, 150.9)), "52.37022, 4.89517 (150 m)");
    EXPECT_EQ(Render::where(place("x", -0.5)), "x (0 m)");
    EXPECT_EQ(Render::places({place("Kade 2", 50)}), "gym  Kade 2 (50 m)  0 reminders");
}

// The branches an unhealthy report in the end-to-end tests doesn't take.
TEST(RenderDoctor, FullReport) {
    EXPECT_EQ(
        Render::doctor(
            {"full", "allowed", true, "vesk-test", "Work", {"Groceries", "Old"}, 12, "Desk", "1.4", "on", "ready"}),
        "Reminders access  full\n"
        "Notifications     allowed\n"
        "This Mac          Desk (relay only)\n"
        "Writes to         Vesk Test only (debug build)\n"
        "Default list      Work\n"
        "Ignored lists     Groceries, Old\n"
        "Reminders         12 incomplete\n"
        "Sync              on\n"
        "On-device model   ready\n"
        "App version       1.4");
}

TEST(RenderJson, BadUtf8IsRepairedOrRefusedNeverThrown) {
    Response response;
    response.reminder = reminder(1, "bad \xff byte", "");
    auto text = Render::jsonText(response);
    EXPECT_TRUE(!text || text->find('\xff') == std::string::npos);
}

}  // namespace
