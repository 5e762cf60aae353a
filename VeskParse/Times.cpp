#include "VeskParse/Parser.h"

// Placeholder until this pass is written.
void Parser::takeTimes(Work&, State&) {}
std::optional<TimeOfDay> Parser::timeOfDay(const std::optional<std::string>&) { return std::nullopt; }
