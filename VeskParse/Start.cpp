#include "VeskParse/Parser.h"

// Placeholder until this pass is written.
void Parser::takeStart(Work&, State&, const DateResolver&) {}
