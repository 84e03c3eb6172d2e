#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

namespace corvandi::testing {

inline constexpr uid_t nobody = 65534;

/// Runs `test` without the rights of the system administrator, for whom nothing is write-protected: in
/// a child process when this one has them. Returns what `test` returned.
template<class Test>
[[nodiscard]] bool withoutPrivileges(Test test)
{
    if (geteuid() != 0)
        return test();
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("no child process");
    if (child == 0) {
        const bool isDropped = setgid(nobody) == 0 && setuid(nobody) == 0;
        _exit(isDropped && test() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Hands `path` to the user as whom `withoutPrivileges` runs.
inline void giveAway(const char* path)
{
    if (geteuid() == 0 && chown(path, nobody, nobody) != 0)
        throw std::runtime_error("can't change the owner");
}

} // namespace corvandi::testing
