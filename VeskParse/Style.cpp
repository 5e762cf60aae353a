#include "VeskParse/Parser.h"

// Placeholder until this pass is written.
void Parser::takeStyle(Work&, State&) const {}
