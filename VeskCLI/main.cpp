#include "ArgumentParser/Entry.h"
#include "VeskCLI/Tree.h"

int main(int argc, char** argv) { ArgumentParser::main(veskRoot(), argc, argv); }
