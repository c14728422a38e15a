#pragma once

#include <csignal>
#include <cstdio>
#include <functional>
#include <string>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

/// Runs a function in a process of its own, for what cannot be taken back: limits, other rights.
/// The function returns "" or what went wrong.
inline std::string inAChildProcess(const std::function<std::string()>& run)
{
    int ends[2];
    if (::pipe(ends) != 0) return "no pipe";
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        const std::string problem = run();
        const bool told = ::write(ends[1], problem.data(), problem.size()) ==
                          static_cast<ssize_t>(problem.size());
        ::_exit(told ? 0 : 1);
    }
    ::close(ends[1]);
    std::string answer;
    char bytes[256];
    for (ssize_t n; (n = ::read(ends[0], bytes, sizeof bytes)) > 0;)
        answer.append(bytes, static_cast<std::size_t>(n));
    ::close(ends[0]);
    int status = -1;
    if (::waitpid(child, &status, 0) != child || status != 0) answer += " (it did not end well)";
    return answer;
}

/// From now on no file of this process may grow beyond so many bytes: as on a full device, the
/// write that would do it fails.
inline void fillTheDevice(rlim_t bytes)
{
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

/// From now on the rights of files count, also where the tests run as root. FALSE if that cannot
/// be had.
inline bool becomeNobody()
{
    constexpr uid_t nobody = 65534;
    return ::geteuid() != 0 ||
           (::setresgid(nobody, nobody, nobody) == 0 && ::setresuid(nobody, nobody, nobody) == 0);
}
