#include "VeskIPC/Listing.h"

#include <gtest/gtest.h>

#include "VeskNag/PlanTesting.h"

namespace {

using namespace PlanTesting;

BoardEntry entry(const char* key, BoardEntry::Status status, std::function<void(NagItem&)> change = {}) {
    NagItem item = PlanTesting::item(key, Style::repeatUntilDone(900), DateComponents{2026, 3, 14, 9, 5});
    if (change) change(item);
    return {item, std::move(status)};
}

TEST(Listing, RowsTellWhyAReminderStandsWhereItDoes) {
    const Date now = at("12:00");
    const PlaceTrigger home{PlaceTrigger::Edge::arrive, "home", 0}, work{PlaceTrigger::Edge::leave, "work", 600};
    struct Case {
        BoardEntry entry;
        ReminderDTO row;
    } cases[] = {
        {entry("due", BoardEntry::Due{at("09:05")},
               [&](NagItem& i) { i.trigger = home, i.deviceGate = DeviceGate::phone(); }),
         {1,
          "due",
          "due",
          {},
          "now",
          "due",
          "2026-03-14T08:05:00Z",
          "2026-03-14T09:05",
          "repeat",
          900,
          "home",
          "phone",
          "due 2 hours ago \u00b7 repeat every 15 min until done"}},
        {entry("gym", BoardEntry::WaitingForPlace{"gym", at("09:05")},
               [](NagItem& i) { i.gate = "gym", i.style = Style::escalate(); }),
         {1,
          "gym",
          "gym",
          {},
          "now",
          "waiting-for-place",
          "2026-03-14T08:05:00Z",
          "2026-03-14T09:05",
          "escalate",
          {},
          "gym",
          {},
          "waiting for gym \u00b7 escalate"}},
        {entry("mac", BoardEntry::WaitingForDevice{DeviceGate::anyMac(), at("09:05")},
               [](NagItem& i) { i.deviceGate = DeviceGate::anyMac(); }),
         {1,
          "mac",
          "mac",
          {},
          "now",
          "waiting-for-device",
          "2026-03-14T08:05:00Z",
          "2026-03-14T09:05",
          "repeat",
          900,
          {},
          "mac",
          "waiting for your Mac \u00b7 repeat every 15 min until done"}},
        {entry("named", BoardEntry::WaitingForDevice{DeviceGate::named("Studio"), at("09:05")}),
         {1,
          "named",
          "named",
          {},
          "now",
          "waiting-for-device",
          "2026-03-14T08:05:00Z",
          "2026-03-14T09:05",
          "repeat",
          900,
          {},
          "Studio",
          "waiting for Studio \u00b7 repeat every 15 min until done"}},
        {entry("later", BoardEntry::Later{at("21:05")}, [](NagItem& i) { i.style = Style::alarm(); }),
         {1,
          "later",
          "later",
          {},
          "now",
          "later",
          "2026-03-14T20:05:00Z",
          "2026-03-14T09:05",
          "alarm",
          {},
          {},
          {},
          "Sat, Mar 14 at 9:05 PM \u00b7 alarm"}},
        {entry("arrive", BoardEntry::WaitingForTrigger{home},
               [&](NagItem& i) { i.trigger = home, i.style = Style::once(), i.due.reset(); }),
         {1,
          "arrive",
          "arrive",
          {},
          "now",
          "waiting-for-trigger",
          {},
          {},
          "once",
          {},
          "home",
          {},
          "when you get to home \u00b7 once"}},
        {entry("leave", BoardEntry::WaitingForTrigger{work}, [&](NagItem& i) { i.trigger = work, i.gate = "office"; }),
         {1,
          "leave",
          "leave",
          {},
          "now",
          "waiting-for-trigger",
          {},
          "2026-03-14T09:05",
          "repeat",
          900,
          "office",
          {},
          "when you leave work \u00b7 repeat every 15 min until done"}},
    };
    for (const auto& c : cases) EXPECT_EQ(Listing::dto(c.entry, "now", 1, {}, now, amsterdam()), c.row) << c.entry.id();
}

TEST(Listing, NumbersRunAcrossNowLaterAndHidden) {
    Board board;
    board.now = {entry("a", BoardEntry::Due{at("09:00")}), entry("b", BoardEntry::Due{at("10:00")})};
    board.thisWeek = {entry("c", BoardEntry::Later{at("2026-03-18 09:00")})};
    board.hidden = {entry("d", BoardEntry::Later{at("2026-04-18 09:00")})};
    auto rows = Listing::reminders(board, {{"c", "Errands"}}, at("12:00"), amsterdam());
    std::string shown;
    for (const auto& row : rows)
        shown += std::to_string(row.number) + row.id + " " + row.section + " " + row.list.value_or("-") + "; ";
    EXPECT_EQ(shown, "1a now -; 2b now -; 3c later Errands; 4d hidden -; ");
    EXPECT_TRUE(Listing::reminders(Board{}, {}, at("12:00"), amsterdam()).empty());
}

TEST(Listing, ResolveFindsOneRowOrSaysWhy) {
    std::vector<ReminderDTO> rows;
    for (const char* title : {"Call", "Call mum", "42", "Call", "call Ann", "call Bo", "call Cy", "#tag it"}) {
        ReminderDTO row;
        row.number = static_cast<int64_t>(rows.size()) + 1;
        row.id = "id-" + std::to_string(row.number);
        row.title = title;
        rows.push_back(row);
    }
    const auto notFound = WireError::Code::notFound, invalid = WireError::Code::invalid;
    struct Case {
        const char* reference;
        int64_t number;  // 0: an error
        WireError::Code code = {};
        const char* message = "";
    } cases[] = {
        {"#3", 3},
        {"3", 3},
        {" 3\t", 3},
        {"+3", 3},
        {"03", 3},
        {"id-2", 2},
        {"CALL MUM", 2},
        {"#tag", 8},
        {"#", 8},
        {"ann", 5},
        {"9", 0, notFound, "No reminder #9. `vesk now` and `vesk later` show the numbers."},
        {"-1", 0, notFound, "No reminder #-1. `vesk now` and `vesk later` show the numbers."},
        {"42", 0, notFound, "No reminder #42. `vesk now` and `vesk later` show the numbers."},
        {"", 0, notFound, "No reminder matches \u201c\u201d."},
        {"dentist", 0, notFound, "No reminder matches \u201cdentist\u201d."},
        {"call", 0, invalid, "\u201ccall\u201d matches 2 reminders (#1 Call, #4 Call). Use a number or id."},
        {"al", 0, invalid,
         "\u201cal\u201d matches 6 reminders (#1 Call, #2 Call mum, #4 Call, #5 call Ann, #6 call Bo). Use a number or "
         "id."},
    };
    for (const auto& c : cases) {
        auto result = Listing::resolve(c.reference, rows);
        if (c.number) {
            ASSERT_TRUE(std::holds_alternative<ReminderDTO>(result)) << c.reference;
            EXPECT_EQ(std::get<ReminderDTO>(result).number, c.number) << c.reference;
        } else {
            ASSERT_TRUE(std::holds_alternative<WireError>(result)) << c.reference;
            EXPECT_EQ(std::get<WireError>(result), (WireError{c.code, c.message})) << c.reference;
        }
    }
    rows.erase(rows.begin() + 3);
    EXPECT_EQ(std::get<ReminderDTO>(Listing::resolve("call", rows)).title, "Call") << "an exact title ends the search";
}

}  // namespace
