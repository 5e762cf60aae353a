// `vesk done`, `snooze` and `delete` name a reminder by number, id or title: resolving
// any text against a fixed listing never crashes, and a row it returns is one of the listing's.

#include <algorithm>
#include <vector>

#include "Fuzz.h"
#include "VeskIPC/Listing.h"

namespace {

const std::vector<ReminderDTO>& rows() {
    static const std::vector<ReminderDTO> rows = [] {
        std::vector<ReminderDTO> made;
        for (const char* title : {"Call", "Call mum", "42", "Call", "call Ann", "call Bo", "call Cy", "#tag it",
                                  "Straße fegen", "İstanbul trip", "ΣΊΣΥΦΟΣ", "", " padded "}) {
            ReminderDTO row;
            row.number = static_cast<int64_t>(made.size()) + 1;
            row.id = "id-" + std::to_string(row.number);
            row.title = title;
            made.push_back(row);
        }
        return made;
    }();
    return rows;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto result = Listing::resolve(Fuzz::text(data, size), rows());
    if (const auto* row = std::get_if<ReminderDTO>(&result))
        Fuzz::check(std::find(rows().begin(), rows().end(), *row) != rows().end(), "the row is one of the listing's");
    else
        Fuzz::check(!std::get<WireError>(result).message.empty(), "a refusal says why");
    return 0;
}
