// The grammar reads any sentence a user types. The input is the sentence, then the
// user's place names, separated by NUL bytes. The title is what the passes left of the
// sentence: valid UTF-8, no longer than the sentence, and each of its words a piece of it.

#include <string>
#include <vector>

#include "Fuzz.h"
#include "VeskModel/NagSettings.h"
#include "VeskParse/Parser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto pieces = Text::split(Fuzz::text(data, size), '\0');
    // Place names reach the grammar from the store, which holds valid UTF-8 only.
    std::vector<std::string> places;
    for (size_t i = 1; i < pieces.size(); ++i) places.push_back(Text::repairUtf8(pieces[i]));
    const Parser parser{Fuzz::amsterdam(), std::move(places), NagSettings{}};

    const std::string sentence = Text::repairUtf8(pieces[0]);
    const std::string title = parser.parse(pieces[0], Fuzz::now()).capture.title;
    Fuzz::check(Fuzz::validUtf8(title), "the title is valid UTF-8");
    Fuzz::check(title.size() <= sentence.size(), "the title is no longer than the sentence");
    for (std::string_view word : Text::split(title, ' '))
        Fuzz::check(sentence.find(word) != std::string::npos, "every word of the title is in the sentence");
    return 0;
}
