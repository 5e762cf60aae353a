#include "VeskParse/Parser.h"

// Placeholder until this pass is written.
void Parser::takeRecurrence(Work&, State&, const DateResolver&) {}
Recurrence Parser::recurrence(int64_t amount, std::string_view, bool fromCompletion) { return {Recurrence::Frequency::yearly, amount, {}, fromCompletion}; }
