#include "Platform/Uuid.h"

#include <sys/random.h>

#include <cerrno>
#include <cstdlib>

std::string Uuid::text() const {
    static const char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(36);
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 0xf];
    }
    return text;
}

Uuid Uuid::random() {
    Uuid uuid;
    size_t filled = 0;
    while (filled < uuid.bytes.size()) {
        ssize_t got = getrandom(uuid.bytes.data() + filled, uuid.bytes.size() - filled, 0);
        if (got > 0) {
            filled += static_cast<size_t>(got);
        } else if (errno != EINTR) {
            // Without the kernel's randomness an identifier could repeat; nothing may go on.
            std::abort();
        }
    }
    uuid.bytes[6] = 0x40 | (uuid.bytes[6] & 0x0f);
    uuid.bytes[8] = 0x80 | (uuid.bytes[8] & 0x3f);
    return uuid;
}
