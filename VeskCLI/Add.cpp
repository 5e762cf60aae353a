#include "VeskCLI/Add.h"

#include "Platform/Text.h"
#include "VeskCLI/Output.h"

namespace Add {

const std::set<std::string>& verbs() {
    static const std::set<std::string> words{"now",    "later",  "done",     "snooze", "delete",
                                             "lists",  "places", "settings", "doctor", "parse"};
    return words;
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (size_t i = 0; i < words.size(); ++i) {
        if (i > 0) text += ' ';
        text += words[i];
    }
    return text;
}

std::optional<std::string> refusal(const std::vector<std::string>& words, const std::vector<std::string>& arguments) {
    if (Text::trimBlanks(joined(words)).empty()) return "Say what to remind you about.";

    // Written after `vesk add`, any first word is part of the sentence.
    for (const auto& argument : arguments) {
        if (argument.starts_with("-")) continue;
        if (argument == "add") return std::nullopt;
        break;
    }

    std::string word = Text::lowercased(words.front());
    if (!verbs().contains(word)) return std::nullopt;
    return "Put options after the command, as in `vesk " + word + " --json`. To save a reminder that starts with “" +
           word + "”, use `vesk add`.";
}

int invalid(std::string_view message) {
    Output::writeError("Error: " + std::string(message) + "\n");
    return 1;
}

}  // namespace Add
