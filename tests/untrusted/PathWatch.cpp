// SPDX-License-Identifier: MIT

#include "untrusted/PathWatch.h"

#include <QDir>
#include <QFile>
#include <QRegExp>

#include <cstring>
#include <mutex>
#include <set>
#include <string>

#include <dlfcn.h>
#include <sys/types.h>

namespace {

std::mutex gMutex;
std::set<std::string>* gPaths = nullptr;

/// Whether the call comes from a sanitizer, which reads the programs for what it has to say.
bool isSanitizer(void* caller)
{
    Dl_info library;
    return dladdr(caller, &library) && library.dli_fname
        && (std::strstr(library.dli_fname, "/libtsan.")
            || std::strstr(library.dli_fname, "/libasan."));
}

void note(char const* path, void* caller)
{
    std::lock_guard<std::mutex> const locker(gMutex);
    if (gPaths && path && *path && !isSanitizer(caller))
        gPaths->insert(path);
}

template <typename Function> Function ofSystem(char const* symbol)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, symbol));
}

} // namespace

// The names are the system's, with types that are compatible as far as calling goes: its own
// declarations differ from one version to the next.
extern "C" {
int watchedOpen(char const* path, int flags, mode_t mode) __asm__("open");
int watchedOpen64(char const* path, int flags, mode_t mode) __asm__("open64");
int watchedStat(char const* path, void* result) __asm__("stat");
int watchedStat64(char const* path, void* result) __asm__("stat64");
int watchedLstat64(char const* path, void* result) __asm__("lstat64");
int watchedStatx(int directory, char const* path, int flags, unsigned mask,
                 void* result) __asm__("statx");
int watchedAccess(char const* path, int mode) __asm__("access");
void* watchedOpendir(char const* path) __asm__("opendir");
ssize_t watchedReadlink(char const* path, char* target, size_t size) __asm__("readlink");
int watchedMkdir(char const* path, mode_t mode) __asm__("mkdir");
int watchedUnlink(char const* path) __asm__("unlink");
int watchedRename(char const* from, char const* to) __asm__("rename");
}

int watchedOpen(char const* path, int flags, mode_t mode)
{
    static auto const open = ofSystem<int (*)(char const*, int, mode_t)>("open");
    note(path, __builtin_return_address(0));
    return open(path, flags, mode);
}

int watchedOpen64(char const* path, int flags, mode_t mode)
{
    static auto const open = ofSystem<int (*)(char const*, int, mode_t)>("open64");
    note(path, __builtin_return_address(0));
    return open(path, flags, mode);
}

int watchedStat(char const* path, void* result)
{
    static auto const stat = ofSystem<int (*)(char const*, void*)>("stat");
    note(path, __builtin_return_address(0));
    return stat(path, result);
}

int watchedStat64(char const* path, void* result)
{
    static auto const stat = ofSystem<int (*)(char const*, void*)>("stat64");
    note(path, __builtin_return_address(0));
    return stat(path, result);
}

int watchedLstat64(char const* path, void* result)
{
    static auto const lstat = ofSystem<int (*)(char const*, void*)>("lstat64");
    note(path, __builtin_return_address(0));
    return lstat(path, result);
}

int watchedStatx(int directory, char const* path, int flags, unsigned mask, void* result)
{
    static auto const statx = ofSystem<int (*)(int, char const*, int, unsigned, void*)>("statx");
    note(path, __builtin_return_address(0));
    return statx(directory, path, flags, mask, result);
}

int watchedAccess(char const* path, int mode)
{
    static auto const access = ofSystem<int (*)(char const*, int)>("access");
    note(path, __builtin_return_address(0));
    return access(path, mode);
}

void* watchedOpendir(char const* path)
{
    static auto const opendir = ofSystem<void* (*)(char const*)>("opendir");
    note(path, __builtin_return_address(0));
    return opendir(path);
}

ssize_t watchedReadlink(char const* path, char* target, size_t size)
{
    static auto const readlink = ofSystem<ssize_t (*)(char const*, char*, size_t)>("readlink");
    note(path, __builtin_return_address(0));
    return readlink(path, target, size);
}

int watchedMkdir(char const* path, mode_t mode)
{
    static auto const mkdir = ofSystem<int (*)(char const*, mode_t)>("mkdir");
    note(path, __builtin_return_address(0));
    return mkdir(path, mode);
}

int watchedUnlink(char const* path)
{
    static auto const unlink = ofSystem<int (*)(char const*)>("unlink");
    note(path, __builtin_return_address(0));
    return unlink(path);
}

int watchedRename(char const* from, char const* to)
{
    static auto const rename = ofSystem<int (*)(char const*, char const*)>("rename");
    note(from, __builtin_return_address(0));
    note(to, __builtin_return_address(0));
    return rename(from, to);
}

PathWatch::PathWatch()
{
    std::lock_guard<std::mutex> const locker(gMutex);
    gPaths = new std::set<std::string>;
}

PathWatch::~PathWatch()
{
    std::lock_guard<std::mutex> const locker(gMutex);
    delete gPaths;
    gPaths = nullptr;
}

QStringList PathWatch::paths() const
{
    std::lock_guard<std::mutex> const locker(gMutex);
    QStringList paths;
    for (std::string const& path : *gPaths)
        paths.append(QFile::decodeName(path.c_str()));
    return paths;
}

bool PathWatch::isExpected(QString const& path, QString const& baseDir)
{
    static QRegExp const fixed(QLatin1String(
        "/etc/NetworkManager/system-connections(/[A-Za-z-]*|/\\.zelvo-view-[A-Za-z0-9]{6})?"
        // Qt 4.6 looks at these too when it lists a directory.
        "|/etc/NetworkManager/system-connections/\\.\\.?"
        "|/etc/wlox-display-prefs/prefs\\.conf"
        "|/tmp/last-apply-command|/tmp/\\.wireless-disabled"
        "|/tmp/wlox-zelvo-view-[A-Za-z0-9]{6}"
        "|/tmp|/tmp/[A-Za-z0-9_]*\\.[A-Za-z0-9]{6}"
        // A semaphore is named after the apply request, by its letters and a checksum.
        "|/tmp/qipc_systemsem_[A-Za-z]*[0-9a-f]{40}"
        // What the toolkit and the bus look at for themselves.
        "|/[A-Za-z0-9_./-]*/(qtlogging\\.ini|qt\\.conf)"
        "|/proc/.*|/dev/.*|/run/dbus/.*|/var/lib/dbus/machine-id|/etc/machine-id"));
    QString const wrappers = baseDir + QLatin1String("/wrappers");
    if (path == wrappers || path.startsWith(wrappers + QLatin1Char('/')))
        return path == QDir::cleanPath(path);
    return QRegExp(fixed).exactMatch(path);
}
