#include "PrivateHome.h"

#include <pwd.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <stdexcept>

namespace {

[[noreturn]] void failWith(const std::string& what) {
    throw std::runtime_error("private home: " + what + ": " + std::strerror(errno));
}

// Once per process: mounts made from here on are seen by this process and its children
// alone. Root may make a mount namespace as it is; anyone else first makes a user namespace
// in which the same user id owns it. The process also becomes the reaper of its orphans,
// so that programs that put themselves in the background can be waited for.
void enterPrivateNamespace() {
    static std::once_flag once;
    std::call_once(once, [] {
        const std::string uid = std::to_string(getuid()), gid = std::to_string(getgid());
        if (unshare(CLONE_NEWNS) != 0) {
            if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) failWith("cannot make a private mount namespace");
            std::ofstream("/proc/self/setgroups") << "deny";
            std::ofstream("/proc/self/uid_map") << uid << " " << uid << " 1";
            std::ofstream("/proc/self/gid_map") << gid << " " << gid << " 1";
        }
        if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) failWith("cannot make / private");
        prctl(PR_SET_CHILD_SUBREAPER, 1);
    });
}

}  // namespace

PrivateHome::PrivateHome() {
    enterPrivateNamespace();
    const passwd* entry = getpwuid(getuid());
    if (!entry || !entry->pw_dir || !*entry->pw_dir) throw std::runtime_error("private home: no home directory");
    realHome_ = entry->pw_dir;
    char name[] = "/tmp/vesk-e2e-XXXXXX";
    if (!mkdtemp(name)) failWith("cannot make a temporary directory");
    base_ = name;
    home_ = base_ + "/home";
    std::filesystem::create_directory(home_);
    if (mount(home_.c_str(), realHome_.c_str(), nullptr, MS_BIND, nullptr) != 0) {
        int code = errno;
        std::filesystem::remove_all(base_);
        errno = code;
        failWith("cannot mount " + home_ + " over " + realHome_);
    }
}

PrivateHome::~PrivateHome() {
    umount2(realHome_.c_str(), MNT_DETACH);
    std::error_code ignored;
    std::filesystem::remove_all(base_, ignored);
}
