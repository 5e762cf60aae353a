#include "Platform/Descriptor.h"

#include <unistd.h>

#include <cerrno>

namespace Descriptor {

bool writeAll(int descriptor, std::string_view bytes) {
    size_t written = 0;
    while (written < bytes.size()) {
        ssize_t n = ::write(descriptor, bytes.data() + written, bytes.size() - written);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        written += static_cast<size_t>(n);
    }
    return true;
}

}  // namespace Descriptor
