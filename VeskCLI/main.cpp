#include "ArgumentParser/Entry.h"
#include "Platform/Heap.h"
#include "VeskCLI/Tree.h"

int main(int argc, char** argv) {
    Heap::keepFreedMemory();
    ArgumentParser::main(veskRoot(), argc, argv);
}
