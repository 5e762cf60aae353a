#include "VeskCLI/Render.h"

#include <gtest/gtest.h>

namespace {

ReminderDTO reminder(int64_t number, std::string title, std::string detail) {
    ReminderDTO dto;
    dto.number = number;
    dto.id = "id-" + std::to_string(number);
    dto.title = std::move(title);
    dto.section = "now";
    dto.status = "due";
    dto.style = "repeat";
    dto.detail = std::move(detail);
    return dto;
}

Response withReminders(std::vector<ReminderDTO> reminders) {
    Response response;
    response.reminders = std::move(reminders);
    return response;
}

PlaceDTO place(std::string name, std::optional<std::string> address, double radius, int64_t reminders) {
    return {"p-" + name, name, 52.370216, 4.895168, radius, std::move(address), reminders};
}

TEST(RenderList, NothingHereForAbsentOrEmpty) {
    EXPECT_EQ(Render::listText(Response{}), "Nothing here.");
    EXPECT_EQ(Render::listText(withReminders({})), "Nothing here.");
}

TEST(RenderList, NumbersAlignToTheWidestAndEveryDetailGetsItsLine) {
    auto response = withReminders({reminder(9, "call mom", "due 10:00"), reminder(10, "water plants", "")});
    EXPECT_EQ(Render::listText(response), " 9  call mom\n    due 10:00\n10  water plants\n    ");
}

TEST(RenderList, HundredPadsToThreeColumns) {
    std::vector<ReminderDTO> reminders;
    for (int64_t n = 1; n <= 100; ++n) reminders.push_back(reminder(n, "t", "d"));
    std::string text = Render::listText(withReminders(reminders));
    EXPECT_TRUE(text.starts_with("  1  t\n     d\n  2  t\n")) << text;
    EXPECT_TRUE(text.ends_with("\n 99  t\n     d\n100  t\n     d")) << text;
}

TEST(RenderList, WidthComesFromTheHighestNumberNotTheLast) {
    auto response = withReminders({reminder(12, "a", "x"), reminder(3, "b", "y")});
    EXPECT_EQ(Render::listText(response), "12  a\n    x\n 3  b\n    y");
}

TEST(RenderWhere, AddressOrCoordinatesAndTruncatedRadius) {
    EXPECT_EQ(Render::where(place("home", "1 Main St", 100, 0)), "1 Main St (100 m)");
    EXPECT_EQ(Render::where(place("home", std::nullopt, 150.9, 0)), "52.37022, 4.89517 (150 m)");
    EXPECT_EQ(Render::where(place("home", "", 99.99, 0)), " (99 m)");
    EXPECT_EQ(Render::where(place("home", "x", -0.5, 0)), "x (0 m)");
}

TEST(RenderPlaces, CountsReminders) {
    EXPECT_EQ(Render::places({place("home", "1 Main St", 100, 1), place("gym", std::nullopt, 50, 0),
                              place("work", "Kade 2", 200, 2)}),
              "home  1 Main St (100 m)  1 reminder\n"
              "gym  52.37022, 4.89517 (50 m)  0 reminders\n"
              "work  Kade 2 (200 m)  2 reminders");
}

TEST(RenderSettings, SixAlignedLines) {
    EXPECT_EQ(Render::settings({60, 15, 10, 9, 9, "22:00-07:00"}),
              "repeat          60 min   repeat until done, when the words give no interval\n"
              "nag             15 min   “nag me” with no number\n"
              "stagger         10 min   between alerts due together\n"
              "alarm-repeat    9 min   a stopped alarm rings again\n"
              "date-only-hour  9   when a date-only reminder alerts\n"
              "night           22:00-07:00   escalation stops at Time Sensitive");
}

TEST(RenderDoctor, FullReport) {
    DoctorDTO doctor{"full", "allowed", true, "any-list", "Work", {"Groceries", "Old"}, 12, "Desk", "1.4", "on", "ready"};
    EXPECT_EQ(Render::doctor(doctor),
              "Reminders access  full\n"
              "Notifications     allowed\n"
              "This Mac          Desk (relay only)\n"
              "Writes to         any list\n"
              "Default list      Work\n"
              "Ignored lists     Groceries, Old\n"
              "Reminders         12 incomplete\n"
              "Sync              on\n"
              "On-device model   ready\n"
              "App version       1.4");
}

TEST(RenderDoctor, Fallbacks) {
    DoctorDTO doctor{"denied", "unknown", false, "vesk-test", std::nullopt, {}, 0, "Desk", "1.4", std::nullopt,
                     std::nullopt};
    EXPECT_EQ(Render::doctor(doctor),
              "Reminders access  denied\n"
              "Notifications     unknown\n"
              "This Mac          Desk\n"
              "Writes to         Vesk Test only (debug build)\n"
              "Default list      Reminders’ default\n"
              "Ignored lists     none\n"
              "Reminders         0 incomplete\n"
              "Sync              off in this build\n"
              "On-device model   unknown\n"
              "App version       1.4");
}

TEST(RenderJson, ErrorBeforeSchemaWithSpacedColons) {
    Response response;
    response.error = WireError{WireError::Code::unreachable, "Couldn't reach the Vesk app. Is it installed on this Mac?"};
    EXPECT_EQ(Render::jsonText(response),
              "{\n"
              "  \"error\" : {\n"
              "    \"code\" : \"unreachable\",\n"
              "    \"message\" : \"Couldn't reach the Vesk app. Is it installed on this Mac?\"\n"
              "  },\n"
              "  \"schema\" : 1\n"
              "}");
}

TEST(RenderJson, EmptyArrayUnescapedTextAndNoSlashEscapes) {
    auto response = withReminders({});
    response.lists = std::vector<ListDTO>{{"a/b", "Café “x”", true}};
    EXPECT_EQ(Render::jsonText(response),
              "{\n"
              "  \"lists\" : [\n"
              "    {\n"
              "      \"id\" : \"a/b\",\n"
              "      \"ignored\" : true,\n"
              "      \"name\" : \"Café “x”\"\n"
              "    }\n"
              "  ],\n"
              "  \"reminders\" : [\n"
              "\n"
              "  ],\n"
              "  \"schema\" : 1\n"
              "}");
}

TEST(RenderJson, BadUtf8IsRepairedOrRefusedNeverThrown) {
    Response response;
    response.reminder = reminder(1, std::string("bad \xff byte"), "");
    auto text = Render::jsonText(response);
    if (text) {
        EXPECT_EQ(text->find('\xff'), std::string::npos);
    }
}

}  // namespace
