#include "VeskParse/Parser.h"

// Placeholder until this pass is written.
void Parser::takeHide(Work&, State&) {}
