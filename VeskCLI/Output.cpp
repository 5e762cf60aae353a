#include "VeskCLI/Output.h"

#include <unistd.h>

#include <cstdio>

#include "Platform/Descriptor.h"

namespace Output {

void print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

void writeError(std::string_view text) {
    std::fflush(stderr);
    Descriptor::writeAll(STDERR_FILENO, text);
}

}  // namespace Output
