// The command line reads any arguments against the vesk tree. The input is the
// arguments, separated by NUL bytes as in argv; the command itself never runs. Whatever
// is printed instead is valid UTF-8 with a known status.

#include <string>
#include <vector>

#include "ArgumentParser/Entry.h"
#include "Fuzz.h"
#include "VeskCLI/Tree.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    // As the program's entry passes them on.
    std::vector<std::string> arguments;
    for (std::string_view piece : Text::split(Fuzz::text(data, size), '\0')) arguments.push_back(Text::repairUtf8(piece));
    const ArgumentParser::Environment environment{"100", std::nullopt, "/bin/bash"};

    const auto parsed = ArgumentParser::parse(veskRoot(), arguments, environment);
    if (const auto* invocation = std::get_if<ArgumentParser::Invocation>(&parsed)) {
        Fuzz::check(!invocation->path.empty() && invocation->path.front() == &veskRoot(),
                    "an invocation's path starts at the root");
        return 0;
    }
    const auto& outcome = std::get<ArgumentParser::Outcome>(parsed);
    Fuzz::check(outcome.status == 0 || outcome.status == 1 || outcome.status == 64, "a known status");
    Fuzz::check(Fuzz::validUtf8(outcome.standardOutput) && Fuzz::validUtf8(outcome.standardError),
                "what is printed is valid UTF-8");
    return 0;
}
