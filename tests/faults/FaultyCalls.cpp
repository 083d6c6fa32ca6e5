// SPDX-License-Identifier: MIT

// A library to be preloaded (LD_PRELOAD): makes one of a program's system calls go wrong.
//
// It stands between the program's libraries and the system, and counts the calls that concern files
// of one directory, and those of other functions that are named. What becomes of the n-th is said
// by the environment:
//
//   FAULT_UNDER   the directory: it and what lies in it counts
//   FAULT_CALLS   names of further functions, separated by commas ("semget,semop")
//   FAULT_AT      n; 0 to count only
//   FAULT_KIND    NUMBER  the call fails, with this errno; "NUMBER+": and so do all that follow
//                 kill    the process is killed when the call is done
//                 tear    the process is killed in the middle of it: half of a write is done
//                 full    the disk is full then: half of a write is done, and from there on nothing
//                         can be written or made
//   FAULT_REPORT  a file that gets the name of each call that is counted, one a line
//
// The programs that the process starts are left alone.

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

enum Kind { Error, Kill, Tear, Full };
enum Fate { Succeed, Fail, DoHalf, DoAndDie, DoHalfAndDie };

struct Plan
{
    std::string under;
    std::string calls;
    int at;
    Kind kind;
    bool isForGood;
    int error;
    int report;
};

int const kNoFile = -1;
int const kMostFiles = 4096;

// Null until the libraries are up: what they do at their start does not count.
std::atomic<Plan const*> gPlan;
std::atomic<int> gCount;
std::atomic<bool> gIsUnder[kMostFiles];

template <typename Function> Function ofSystem(char const* symbol)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, symbol));
}

std::string take(char const* variable)
{
    char const* const text = std::getenv(variable);
    std::string const value = text ? text : "";
    unsetenv(variable);
    return value;
}

Kind kindOf(std::string const& word)
{
    if (word == "kill")
        return Kill;
    if (word == "tear")
        return Tear;
    return word == "full" ? Full : Error;
}

__attribute__((constructor)) void readPlan()
{
    std::string const report = take("FAULT_REPORT");
    std::string const kind = take("FAULT_KIND");
    Plan* const plan = new Plan;
    plan->under = take("FAULT_UNDER");
    plan->calls = "," + take("FAULT_CALLS") + ",";
    plan->at = std::atoi(take("FAULT_AT").c_str());
    plan->kind = kindOf(kind);
    plan->isForGood = kind.find('+') != std::string::npos;
    plan->error = plan->kind == Full ? ENOSPC : std::atoi(kind.c_str());
    plan->report = report.empty()
        ? kNoFile
        : ::open(report.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    unsetenv("LD_PRELOAD");
    gPlan = plan;
}

bool isUnder(char const* path)
{
    Plan const* const plan = gPlan;
    if (!plan || !path || plan->under.empty())
        return false;
    size_t const length = plan->under.size();
    return std::strncmp(path, plan->under.c_str(), length) == 0
        && (path[length] == '\0' || path[length] == '/');
}

bool isUnder(int file)
{
    return file >= 0 && file < kMostFiles && gIsUnder[file];
}

bool isNamed(char const* call)
{
    Plan const* const plan = gPlan;
    return plan && plan->calls.find(std::string(",") + call + ",") != std::string::npos;
}

void remember(int file, bool counts)
{
    if (file >= 0 && file < kMostFiles)
        gIsUnder[file] = counts;
}

ssize_t writeToSystem(int file, void const* data, size_t size)
{
    static auto const write = ofSystem<ssize_t (*)(int, void const*, size_t)>("write");
    return write(file, data, size);
}

void report(char const* call)
{
    std::string const line = std::string(call) + '\n';
    if (gPlan.load()->report != kNoFile)
        static_cast<void>(writeToSystem(gPlan.load()->report, line.data(), line.size()));
}

/// Counts a call.
///
/// @param takesRoom  whether it cannot be done on a disk that is full.
Fate nextFate(char const* call, bool takesRoom)
{
    Plan const& plan = *gPlan;
    int const number = ++gCount;
    report(call);
    if (plan.at == 0 || number < plan.at)
        return Succeed;
    if (plan.kind == Full)
        return !takesRoom ? Succeed : number == plan.at ? DoHalf : Fail;
    if (number > plan.at && !plan.isForGood)
        return Succeed;
    switch (plan.kind) {
    case Kill:
        return DoAndDie;
    case Tear:
        return DoHalfAndDie;
    default:
        return Fail;
    }
}

void die()
{
    ::kill(::getpid(), SIGKILL);
    ::pause();
}

int fail()
{
    errno = gPlan.load()->error;
    return -1;
}

/// A call that is done wholly or not at all.
template <typename Call> int carryOut(Fate fate, Call call)
{
    if (fate == Fail)
        return fail();
    int const result = call();
    if (fate == DoAndDie || fate == DoHalfAndDie)
        die();
    return result;
}

template <typename Call> int carryOut(char const* name, bool counts, Call call)
{
    return counts ? carryOut(nextFate(name, false), call) : call();
}

template <typename Call> ssize_t write(char const* name, int file, size_t size, Call call)
{
    if (!isUnder(file))
        return call(size);
    Fate const fate = nextFate(name, true);
    if (fate == Fail)
        return fail();
    bool const isHalf = fate == DoHalf || fate == DoHalfAndDie;
    ssize_t const written = call(isHalf ? (size + 1) / 2 : size);
    if (fate == DoAndDie || fate == DoHalfAndDie)
        die();
    return written;
}

template <typename Call> int open(char const* path, int flags, Call call)
{
    bool const counts = isUnder(path);
    if (!counts)
        return call();
    static auto const access = ofSystem<int (*)(char const*, int)>("access");
    bool const isNew
        = (flags & O_TMPFILE) == O_TMPFILE || ((flags & O_CREAT) && access(path, F_OK) != 0);
    Fate const fate = nextFate(isNew ? "create" : "open", isNew);
    int const file = carryOut(fate == DoHalf ? Fail : fate, call);
    remember(file, true);
    return file;
}

} // namespace

// The names are the system's, with types that are compatible as far as calling goes: its own
// declarations differ from one version to the next.
extern "C" {
int faultyOpen(char const* path, int flags, mode_t mode) __asm__("open");
int faultyOpen64(char const* path, int flags, mode_t mode) __asm__("open64");
int faultyClose(int file) __asm__("close");
int faultyStat64(char const* path, void* result) __asm__("stat64");
int faultyLstat64(char const* path, void* result) __asm__("lstat64");
int faultyFstat64(int file, void* result) __asm__("fstat64");
int faultyStatx(int file, char const* path, int flags, unsigned mask,
                void* result) __asm__("statx");
int faultyAccess(char const* path, int mode) __asm__("access");
ssize_t faultyRead(int file, void* data, size_t size) __asm__("read");
ssize_t faultyPread64(int file, void* data, size_t size, off64_t offset) __asm__("pread64");
ssize_t faultyWrite(int file, void const* data, size_t size) __asm__("write");
ssize_t faultyPwrite64(int file, void const* data, size_t size, off64_t offset) __asm__("pwrite64");
int faultyFsync(int file) __asm__("fsync");
int faultyFdatasync(int file) __asm__("fdatasync");
int faultyFtruncate64(int file, off64_t size) __asm__("ftruncate64");
int faultyFtruncate(int file, off_t size) __asm__("ftruncate");
int faultyFcntl64(int file, int command, void* argument) __asm__("fcntl64");
int faultyFchmod(int file, mode_t mode) __asm__("fchmod");
int faultyFchown(int file, uid_t user, gid_t group) __asm__("fchown");
int faultyUnlink(char const* path) __asm__("unlink");
int faultyRename(char const* from, char const* to) __asm__("rename");
int faultyLinkat(int from, char const* path, int to, char const* newPath,
                 int flags) __asm__("linkat");
int faultyMkostemp(char* name, int flags) __asm__("mkostemp");
int faultySemget(int key, int count, int flags) __asm__("semget");
int faultySemop(int set, void* operations, size_t count) __asm__("semop");
}

int faultyOpen(char const* path, int flags, mode_t mode)
{
    static auto const system = ofSystem<int (*)(char const*, int, mode_t)>("open");
    return open(path, flags, [=] { return system(path, flags, mode); });
}

int faultyOpen64(char const* path, int flags, mode_t mode)
{
    static auto const system = ofSystem<int (*)(char const*, int, mode_t)>("open64");
    return open(path, flags, [=] { return system(path, flags, mode); });
}

int faultyClose(int file)
{
    static auto const system = ofSystem<int (*)(int)>("close");
    if (!isUnder(file))
        return system(file);
    remember(file, false);
    // The descriptor is gone, whatever the call answers.
    int const result = system(file);
    return carryOut("close", true, [=] { return result; });
}

int faultyStat64(char const* path, void* result)
{
    static auto const system = ofSystem<int (*)(char const*, void*)>("stat64");
    return carryOut("stat", isUnder(path), [=] { return system(path, result); });
}

int faultyLstat64(char const* path, void* result)
{
    static auto const system = ofSystem<int (*)(char const*, void*)>("lstat64");
    return carryOut("stat", isUnder(path), [=] { return system(path, result); });
}

int faultyFstat64(int file, void* result)
{
    static auto const system = ofSystem<int (*)(int, void*)>("fstat64");
    return carryOut("stat", isUnder(file), [=] { return system(file, result); });
}

int faultyStatx(int file, char const* path, int flags, unsigned mask, void* result)
{
    static auto const system = ofSystem<int (*)(int, char const*, int, unsigned, void*)>("statx");
    return carryOut("stat", isUnder(path) || isUnder(file),
                    [=] { return system(file, path, flags, mask, result); });
}

int faultyAccess(char const* path, int mode)
{
    static auto const system = ofSystem<int (*)(char const*, int)>("access");
    return carryOut("access", isUnder(path), [=] { return system(path, mode); });
}

ssize_t faultyRead(int file, void* data, size_t size)
{
    static auto const system = ofSystem<ssize_t (*)(int, void*, size_t)>("read");
    return carryOut("read", isUnder(file), [=] { return int(system(file, data, size)); });
}

ssize_t faultyPread64(int file, void* data, size_t size, off64_t offset)
{
    static auto const system = ofSystem<ssize_t (*)(int, void*, size_t, off64_t)>("pread64");
    return carryOut("read", isUnder(file), [=] { return int(system(file, data, size, offset)); });
}

ssize_t faultyWrite(int file, void const* data, size_t size)
{
    return write("write", file, size, [=](size_t part) { return writeToSystem(file, data, part); });
}

ssize_t faultyPwrite64(int file, void const* data, size_t size, off64_t offset)
{
    static auto const system = ofSystem<ssize_t (*)(int, void const*, size_t, off64_t)>("pwrite64");
    return write("write", file, size,
                 [=](size_t part) { return system(file, data, part, offset); });
}

int faultyFsync(int file)
{
    static auto const system = ofSystem<int (*)(int)>("fsync");
    return carryOut("sync", isUnder(file), [=] { return system(file); });
}

int faultyFdatasync(int file)
{
    static auto const system = ofSystem<int (*)(int)>("fdatasync");
    return carryOut("sync", isUnder(file), [=] { return system(file); });
}

int faultyFtruncate64(int file, off64_t size)
{
    static auto const system = ofSystem<int (*)(int, off64_t)>("ftruncate64");
    return carryOut("truncate", isUnder(file), [=] { return system(file, size); });
}

int faultyFtruncate(int file, off_t size)
{
    static auto const system = ofSystem<int (*)(int, off_t)>("ftruncate");
    return carryOut("truncate", isUnder(file), [=] { return system(file, size); });
}

int faultyFcntl64(int file, int command, void* argument)
{
    static auto const system = ofSystem<int (*)(int, int, void*)>("fcntl64");
    return carryOut("lock", isUnder(file), [=] { return system(file, command, argument); });
}

int faultyFchmod(int file, mode_t mode)
{
    static auto const system = ofSystem<int (*)(int, mode_t)>("fchmod");
    return carryOut("chmod", isUnder(file), [=] { return system(file, mode); });
}

int faultyFchown(int file, uid_t user, gid_t group)
{
    static auto const system = ofSystem<int (*)(int, uid_t, gid_t)>("fchown");
    return carryOut("chown", isUnder(file), [=] { return system(file, user, group); });
}

int faultyUnlink(char const* path)
{
    static auto const system = ofSystem<int (*)(char const*)>("unlink");
    return carryOut("unlink", isUnder(path), [=] { return system(path); });
}

int faultyRename(char const* from, char const* to)
{
    static auto const system = ofSystem<int (*)(char const*, char const*)>("rename");
    return carryOut("rename", isUnder(to), [=] { return system(from, to); });
}

int faultyLinkat(int from, char const* path, int to, char const* newPath, int flags)
{
    static auto const system = ofSystem<int (*)(int, char const*, int, char const*, int)>("linkat");
    return carryOut("link", isUnder(newPath),
                    [=] { return system(from, path, to, newPath, flags); });
}

int faultyMkostemp(char* name, int flags)
{
    static auto const system = ofSystem<int (*)(char*, int)>("mkostemp");
    return carryOut("mkostemp", isNamed("mkostemp"), [=] { return system(name, flags); });
}

int faultySemget(int key, int count, int flags)
{
    static auto const system = ofSystem<int (*)(int, int, int)>("semget");
    return carryOut("semget", isNamed("semget"), [=] { return system(key, count, flags); });
}

int faultySemop(int set, void* operations, size_t count)
{
    static auto const system = ofSystem<int (*)(int, void*, size_t)>("semop");
    return carryOut("semop", isNamed("semop"), [=] { return system(set, operations, count); });
}
