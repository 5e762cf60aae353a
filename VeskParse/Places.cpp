#include "VeskParse/Parser.h"

#include <cstdio>

#include "Platform/Text.h"

namespace {

// `name` as a pattern that matches it literally. ASCII letters, digits and blanks stay;
// every other character is written as \x{...}, so no name can open a group, a class or a
// quote, whatever it holds. Invalid UTF-8 becomes U+FFFD, as it does in the text.
std::string escaped(std::string_view name) {
    std::string valid = Text::repairUtf8(name);
    std::string out;
    out.reserve(valid.size() * 2);
    size_t i = 0;
    while (i < valid.size()) {
        unsigned char c = static_cast<unsigned char>(valid[i]);
        if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ' ') {
            out += static_cast<char>(c);
            ++i;
            continue;
        }
        size_t length = c < 0x80 ? 1 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
        uint32_t point = length == 1 ? c : length == 2 ? (c & 0x1F) : length == 3 ? (c & 0x0F) : (c & 0x07);
        for (size_t k = 1; k < length && i + k < valid.size(); ++k) {
            point = (point << 6) | (static_cast<unsigned char>(valid[i + k]) & 0x3F);
        }
        char buffer[16];
        std::snprintf(buffer, sizeof buffer, "\\x{%X}", point);
        out += buffer;
        i += length;
    }
    return out;
}

// Lowercased, without a leading "the ".
std::string placeName(std::string_view written) {
    std::string lower = Text::lowercased(written);
    if (lower.starts_with("the ")) lower.erase(0, 4);
    return lower;
}

}  // namespace

// Place triggers ("when I get home"), place gates ("only if I'm at the gym") and the
// delay of a trigger ("and give me 5 minutes").
void Parser::takePlaces(Work& work, State& state) const {
    std::string names = "home|work";
    for (const auto& place : places) {
        names += "|";
        names += escaped(place);
    }
    // A known name, with or without "the", or "the" and any one word.
    const std::string place = "((?:the )?(?:" + names + ")|the \\w+)\\b";

    bool triggerRead = false;
    if (auto match = work.take(R"(\b(\d+)\s*(minutes?|mins?|hours?) after i (?:get|arrive|am|[’']?m)(?: back)?(?: (?:to|at|in))? )" + place)) {
        if (auto amount = Text::parseInt64((*match)[1])) {
            double delay = DateResolver::seconds(*amount, (*match)[2]).value_or(0);
            state.capture.trigger = PlaceTrigger{PlaceTrigger::Edge::arrive, placeName((*match)[3]), delay};
            triggerRead = true;
        }
    }
    if (!triggerRead) {
        if (auto match = work.take(R"(\b(?:when|once|after|as soon as) i (?:get|arrive|am|[’']?m)(?: back)?(?: (?:to|at|in))? )" + place)) {
            state.capture.trigger = PlaceTrigger{PlaceTrigger::Edge::arrive, placeName((*match)[1]), 0};
        } else if (auto match = work.take(R"(\b(?:when|once|after|as soon as|before) i leave )" + place)) {
            state.capture.trigger = PlaceTrigger{PlaceTrigger::Edge::leave, placeName((*match)[1]), 0};
        }
    }

    if (auto match = work.take(R"(\b(?:but )?only (?:if |when )?(?:i[’']?m )?(?:at|in) )" + place)) {
        state.capture.gate = placeName((*match)[1]);
    }

    // Only a trigger has a delay; without one the phrase stays in the title.
    if (state.capture.trigger) {
        if (auto match = work.take(R"(\b(?:and )?give me (\d+)\s*(minutes?|mins?|m|hours?|hrs?|h)\b)")) {
            if (auto amount = Text::parseInt64((*match)[1])) {
                if (auto seconds = DateResolver::seconds(*amount, (*match)[2])) state.capture.trigger->delay = *seconds;
            }
        }
    }
}
