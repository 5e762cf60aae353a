#include "VeskCLI/Output.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace Output {

void print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

void writeError(std::string_view text) {
    std::fflush(stderr);
    size_t written = 0;
    while (written < text.size()) {
        ssize_t n = ::write(STDERR_FILENO, text.data() + written, text.size() - written);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return;
        written += static_cast<size_t>(n);
    }
}

}  // namespace Output
