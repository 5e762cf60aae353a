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

TEST(Listing, ARowTellsWhyAReminderStandsWhereItDoes) {
    const PlaceTrigger home{PlaceTrigger::Edge::arrive, "home", 0}, work{PlaceTrigger::Edge::leave, "work", 600};
    auto row = [](const BoardEntry& entry) { return Listing::dto(entry, "now", 1, {}, at("12:00"), amsterdam()); };
    EXPECT_EQ(row(entry("due", BoardEntry::Due{at("09:05")},
                        [&](NagItem& i) { i.trigger = home, i.deviceGate = DeviceGate::phone(); })),
              ReminderDTO(1, "due", "due", {}, "now", "due", "2026-03-14T08:05:00Z", "2026-03-14T09:05", "repeat", 900,
                          "home", "phone", "due 2 hours ago \u00b7 repeat every 15 min until done"));

    // status | at | place | device | detail
    const std::pair<BoardEntry, const char*> cases[] = {
        // clang-format off
        {entry("gym", BoardEntry::WaitingForPlace{"gym", at("09:05")}, [](NagItem& i) { i.gate = "gym", i.style = Style::escalate(); }),
         "waiting-for-place | 2026-03-14T08:05:00Z | gym | - | waiting for gym \u00b7 escalate"},
        {entry("mac", BoardEntry::WaitingForDevice{DeviceGate::anyMac(), at("09:05")}, [](NagItem& i) { i.style = Style::once(); }),
         "waiting-for-device | 2026-03-14T08:05:00Z | - | mac | waiting for your Mac \u00b7 once"},
        {entry("phone", BoardEntry::WaitingForDevice{DeviceGate::phone(), at("09:05")}, [](NagItem& i) { i.style = Style::once(); }),
         "waiting-for-device | 2026-03-14T08:05:00Z | - | phone | waiting for your iPhone \u00b7 once"},
        {entry("named", BoardEntry::WaitingForDevice{DeviceGate::named("Studio"), at("09:05")}, [](NagItem& i) { i.style = Style::once(); }),
         "waiting-for-device | 2026-03-14T08:05:00Z | - | Studio | waiting for Studio \u00b7 once"},
        {entry("later", BoardEntry::Later{at("21:05")}, [](NagItem& i) { i.style = Style::alarm(); }),
         "later | 2026-03-14T20:05:00Z | - | - | Sat, Mar 14 at 9:05 PM \u00b7 alarm"},
        {entry("arrive", BoardEntry::WaitingForTrigger{home}, [&](NagItem& i) { i.trigger = home, i.style = Style::once(); }),
         "waiting-for-trigger | - | home | - | when you get to home \u00b7 once"},
        {entry("leave", BoardEntry::WaitingForTrigger{work}, [&](NagItem& i) { i.trigger = work, i.gate = "office"; }),
         "waiting-for-trigger | - | office | - | when you leave work \u00b7 repeat every 15 min until done"},
        // clang-format on
    };
    for (const auto& [entry, expected] : cases) {
        ReminderDTO dto = row(entry);
        EXPECT_EQ(dto.status + " | " + dto.at.value_or("-") + " | " + dto.place.value_or("-") + " | " +
                      dto.device.value_or("-") + " | " + dto.detail,
                  expected);
    }
}

TEST(Listing, NumbersRunAcrossNowLaterAndHidden) {
    Board board;
    board.now = {entry("a", BoardEntry::Due{at("09:00")}), entry("b", BoardEntry::Due{at("10:00")})};
    board.thisWeek = {entry("c", BoardEntry::Later{at("2026-03-18 09:00")})};
    board.hidden = {entry("d", BoardEntry::Later{at("2026-04-18 09:00")})};
    std::string shown;
    for (const auto& row : Listing::reminders(board, {{"c", "Errands"}}, at("12:00"), amsterdam()))
        shown += std::to_string(row.number) + row.id + " " + row.section + " " + row.list.value_or("-") + "; ";
    EXPECT_EQ(shown, "1a now -; 2b now -; 3c later Errands; 4d hidden -; ");
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
    const std::pair<const char*, std::string> cases[] = {
        // clang-format off
        {"#3", "#3"}, {" 3\t", "#3"}, {"id-2", "#2"}, {"CALL MUM", "#2"}, {"#tag", "#8"}, {"#", "#8"}, {"ann", "#5"},
        {"42", "not-found: No reminder #42. `vesk now` and `vesk later` show the numbers."},
        {"", "not-found: No reminder matches \u201c\u201d."},
        {"dentist", "not-found: No reminder matches \u201cdentist\u201d."},
        {"call", "invalid: \u201ccall\u201d matches 2 reminders (#1 Call, #4 Call). Use a number or id."},
        {"al", "invalid: \u201cal\u201d matches 6 reminders (#1 Call, #2 Call mum, #4 Call, #5 call Ann, #6 call Bo). Use a number or id."},
        // clang-format on
    };
    auto shown = [](const std::variant<ReminderDTO, WireError>& result) {
        if (const auto* row = std::get_if<ReminderDTO>(&result)) return "#" + std::to_string(row->number);
        const auto& error = std::get<WireError>(result);
        return WireError::rawValue(error.code) + std::string(": ") + error.message;
    };
    for (const auto& [reference, expected] : cases) EXPECT_EQ(shown(Listing::resolve(reference, rows)), expected);
    rows.erase(rows.begin() + 3);
    EXPECT_EQ(shown(Listing::resolve("call", rows)), "#1") << "an exact title ends the search";
}

}  // namespace
