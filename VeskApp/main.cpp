#include "ArgumentParser/Entry.h"
#include "VeskApp/Tree.h"

int main(int argc, char** argv) { ArgumentParser::main(appRoot(), argc, argv); }
