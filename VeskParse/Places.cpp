#include "VeskParse/Parser.h"

// Placeholder until this pass is written.
void Parser::takePlaces(Work&, State&) const {}
