#include "Platform/Date.h"

#include <ctime>

Date Date::now() {
    timespec ts{};
    clock_gettime(CLOCK_REALTIME, &ts);
    return fromUnix(static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) / 1e9);
}
