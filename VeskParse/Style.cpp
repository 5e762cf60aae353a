#include "VeskParse/Parser.h"

// How the reminder nags. The interval phrases are tried first; the four style words
// after them all run, so the last one that matches decides.
void Parser::takeStyle(Work& work, State& state) const {
    bool intervalRead = false;
    if (auto match = work.take(
            R"(\b(?:nag|bug|remind|ping) me every (?:(\d+|an?|one|two|three|four|five|six|seven|eight|nine|ten|eleven|twelve)\s*)?(minutes?|mins?|m|hours?|hrs?|h)\b)")) {
        auto amount = (*match)[1].empty() ? std::optional<int64_t>(1) : number((*match)[1]);
        if (amount) {
            if (auto seconds = DateResolver::seconds(*amount, (*match)[2])) {
                state.capture.style = Style::repeatUntilDone(*seconds);
                intervalRead = true;
            }
        }
    }
    if (!intervalRead && work.take(R"(\b(?:nag|bug) me(?: until (?:it[’']?s |i[’']?m )?done)?\b)")) {
        state.capture.style = Style::repeatUntilDone(settings.nagInterval);
    }

    if (work.take(R"(\bdon[’']?t let me (?:skip|forget|ignore) (?:it|this)\b)") || work.take(R"(\bescalate\b)")) {
        state.capture.style = Style::escalate();
    }
    if (work.take(R"(\b(?:just|only) once\b)")) {
        state.capture.style = Style::once();
    }
    if (work.take(R"(\bwake me(?: up)?\b)")) {
        state.capture.style = Style::alarm();
        state.morning = true;
    }
    if (work.take(R"((?:\b(?:as|with|set|ring|sound|use) an? |,\s*)alarm\b)")) {
        state.capture.style = Style::alarm();
    }
}
