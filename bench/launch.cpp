// Starts one program and reports what it cost. A small static program does this, and not the script around it, because
// the kernel counts the memory of whoever starts a program towards that program's peak: from here the floor is less than
// a megabyte, from an interpreter it is the interpreter.
//
// usage: launch REPORT NOFILE PROGRAM [ARGUMENT]...
// REPORT is a descriptor to which one line goes: wall, user and system time in nanoseconds, peak memory in KiB, exit
// status (128 + signal when killed). NOFILE is the limit of open descriptors for the program, soft and hard, 0 to leave it.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

long long nanosecondsOf(const timeval &time) {
    return static_cast<long long>(time.tv_sec) * 1'000'000'000LL + static_cast<long long>(time.tv_usec) * 1'000LL;
}

long long now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<long long>(time.tv_sec) * 1'000'000'000LL + time.tv_nsec;
}

} // namespace

int main(int argc, char **argv) {
    if (argc < 4) {
        std::fputs("usage: launch REPORT NOFILE PROGRAM [ARGUMENT]...\n", stderr);
        return 2;
    }
    const int report = std::atoi(argv[1]);
    fcntl(report, F_SETFD, FD_CLOEXEC);
    if (const rlim_t limit = std::strtoul(argv[2], nullptr, 10); limit != 0) {
        const rlimit both{limit, limit};
        setrlimit(RLIMIT_NOFILE, &both);
    }
    const long long started = now();
    const pid_t child = vfork();
    if (child == 0) {
        execv(argv[3], argv + 3);
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child) {
        std::perror("launch");
        return 1;
    }
    const long long ended = now();
    dprintf(report, "%lld %lld %lld %ld %d\n", ended - started, nanosecondsOf(usage.ru_utime), nanosecondsOf(usage.ru_stime),
            usage.ru_maxrss, WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
    return 0;
}
