#include "VeskParse/Parser.h"

// Placeholder until this pass is written.
void Parser::takeDates(Work&, State&, const DateResolver&) {}
