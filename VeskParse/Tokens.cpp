#include "VeskParse/Parser.h"

// Placeholder until this pass is written.
void Parser::takeTokens(Work&, State&, const DateResolver&) {}
void Parser::applyDueToken(std::string_view, State&, const DateResolver&) {}
std::optional<double> Parser::duration(std::string_view) { return std::nullopt; }
std::optional<Recurrence> Parser::recurrenceToken(std::string_view) { return std::nullopt; }
