// Linked into every program of a sanitizer build (VESK_SANITIZE), and only there.
//
// The tests run vesk and vesk-app under faketime, which wraps clock_gettime and looks up
// the real functions on its first call. With its default options the sanitizer's allocator
// reads the monotonic clock while it holds a lock, the first time it maps a size class;
// that read ends in faketime's look-up, which allocates, and the process waits on itself
// for ever. Never handing memory back to the system is the one option that keeps the
// allocator off the clock.
extern "C" const char* __asan_default_options() { return "allocator_release_to_os_interval_ms=-1"; }
