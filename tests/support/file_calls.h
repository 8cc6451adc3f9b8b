// The process's calls for files below a folder, in a test's hands. To be included by one source of a program,
// which has to export its symbols (slate_file_calls() in tests/CMakeLists.txt): it replaces functions of the
// C library.

#pragma once

#include <QByteArray>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <functional>
#include <utility>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

/// One call. What a hook sets decides what becomes of it.
struct FileCall
{
    enum Kind { Look, Open, Lock, Read, Write, Sync, Truncate, Remove };

    Kind kind;
    const char *path; ///< of the file; the folder's where the file has gone
    int error = 0; ///< not 0: the call fails with it
    bool half = false; ///< of a write half goes through
};

/**
 * While an object of this lives, `hook` is asked before each call for what lies below `folder`, on whatever
 * thread the call comes. It may call for files itself, which nobody is asked about, and it may wait. Nothing
 * there is written through to the disk: no test pulls the plug. One at a time; it must outlive the files that
 * are opened meanwhile.
 */
class FileCalls
{
public:
    using Hook = std::function<void(FileCall &)>;

    FileCalls(const QByteArray &folder, Hook hook)
        : m_folder(folder)
        , m_hook(std::move(hook))
    {
        s_current = this;
    }
    ~FileCalls()
    {
        s_current = nullptr;
        for (std::atomic<bool> &descriptor : s_watched)
            descriptor = false;
    }
    FileCalls(const FileCalls &) = delete;
    FileCalls &operator=(const FileCalls &) = delete;

    /// What the functions below do with a call.
    struct Verdict
    {
        bool fails = false;
        bool half = false;
        bool watched = false;
    };
    static Verdict ask(FileCall::Kind kind, const char *path)
    {
        FileCalls *const current = s_current;
        char target[4096] = {};
        if (path && QByteArrayView(path).startsWith("/proc/self/fd/")
            && ::readlink(path, target, sizeof(target) - 1) > 0)
            path = target;
        if (!current || s_asking || !path || !QByteArrayView(path).startsWith(current->m_folder))
            return {};
        s_asking = true;
        FileCall call{kind, path};
        current->m_hook(call);
        s_asking = false;
        if (call.error != 0)
            errno = call.error;
        return {call.error != 0, call.half, true};
    }
    static Verdict ask(FileCall::Kind kind, int descriptor)
    {
        if (!isWatched(descriptor) || s_asking)
            return {};
        char link[64];
        std::snprintf(link, sizeof(link), "/proc/self/fd/%d", descriptor);
        Verdict verdict = ask(kind, link);
        verdict.watched = true;
        return verdict;
    }
    static int opened(int descriptor, bool watched)
    {
        if (descriptor >= 0 && std::size_t(descriptor) < std::size(s_watched))
            s_watched[descriptor] = watched;
        return descriptor;
    }

private:
    static bool isWatched(int descriptor)
    {
        return descriptor >= 0 && std::size_t(descriptor) < std::size(s_watched) && s_watched[descriptor];
    }

    static inline std::atomic<FileCalls *> s_current = nullptr;
    static inline std::atomic<bool> s_watched[1024] = {};
    static inline thread_local bool s_asking = false;

    QByteArray m_folder;
    Hook m_hook;
};

namespace file_calls {

/// The C library's own. A type for each: a pointer in a function is looked up once.
template <typename Function>
Function *real(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

inline int open(const char *name, const char *path, int flags, mode_t mode)
{
    const FileCalls::Verdict verdict = FileCalls::ask(FileCall::Open, path);
    return verdict.fails
        ? -1
        : FileCalls::opened(real<int(const char *, int, ...)>(name)(path, flags, mode), verdict.watched);
}

inline std::FILE *openStream(const char *name, const char *path, const char *mode)
{
    const FileCalls::Verdict verdict = FileCalls::ask(FileCall::Open, path);
    if (verdict.fails)
        return nullptr;
    std::FILE *const file = real<std::FILE *(const char *, const char *)>(name)(path, mode);
    if (file)
        FileCalls::opened(::fileno(file), verdict.watched);
    return file;
}

inline int look(const char *name, int descriptor, void *status)
{
    if (FileCalls::ask(FileCall::Look, descriptor).fails)
        return -1;
    return real<int(int, void *)>(name)(descriptor, status);
}

/// Of what fcntl() does, locking alone is a call for the file.
inline int control(const char *name, int descriptor, int command, void *argument)
{
    const bool isLock = command == F_SETLK || command == F_SETLKW || command == F_GETLK;
    if (isLock && FileCalls::ask(FileCall::Lock, descriptor).fails)
        return -1;
    return real<int(int, int, ...)>(name)(descriptor, command, argument);
}

} // namespace file_calls

// Under names of their own for the compiler: the headers turn some into others.
extern "C" {
int fileCallsOpen(const char *path, int flags, ...) __asm__("open");
int fileCallsOpen64(const char *path, int flags, ...) __asm__("open64");
std::FILE *fileCallsFopen(const char *path, const char *mode) __asm__("fopen");
std::FILE *fileCallsFopen64(const char *path, const char *mode) __asm__("fopen64");
int fileCallsClose(int descriptor) __asm__("close");
int fileCallsStat(const char *path, void *status) __asm__("stat");
int fileCallsStat64(const char *path, void *status) __asm__("stat64");
int fileCallsFstat(int descriptor, void *status) __asm__("fstat");
int fileCallsFstat64(int descriptor, void *status) __asm__("fstat64");
int fileCallsFcntl(int descriptor, int command, ...) __asm__("fcntl");
int fileCallsFcntl64(int descriptor, int command, ...) __asm__("fcntl64");
ssize_t fileCallsRead(int descriptor, void *bytes, std::size_t size) __asm__("read");
ssize_t fileCallsPread64(int descriptor, void *bytes, std::size_t size, off64_t place) __asm__("pread64");
std::size_t fileCallsFread(void *bytes, std::size_t size, std::size_t count,
                           std::FILE *file) __asm__("fread");
ssize_t fileCallsWrite(int descriptor, const void *bytes, std::size_t size) __asm__("write");
ssize_t fileCallsPwrite64(int descriptor, const void *bytes, std::size_t size,
                          off64_t place) __asm__("pwrite64");
int fileCallsFdatasync(int descriptor) __asm__("fdatasync");
int fileCallsFsync(int descriptor) __asm__("fsync");
int fileCallsFtruncate64(int descriptor, off64_t size) __asm__("ftruncate64");
int fileCallsUnlink(const char *path) __asm__("unlink");

int fileCallsOpen(const char *path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = va_arg(rest, mode_t); // there only where a file is made, and harmless elsewhere
    va_end(rest);
    return file_calls::open("open", path, flags, mode);
}

int fileCallsOpen64(const char *path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = va_arg(rest, mode_t);
    va_end(rest);
    return file_calls::open("open64", path, flags, mode);
}

std::FILE *fileCallsFopen(const char *path, const char *mode)
{
    return file_calls::openStream("fopen", path, mode);
}

std::FILE *fileCallsFopen64(const char *path, const char *mode)
{
    return file_calls::openStream("fopen64", path, mode);
}

int fileCallsClose(int descriptor)
{
    static const auto real = file_calls::real<int(int)>("close");
    FileCalls::opened(descriptor, false);
    return real(descriptor);
}

int fileCallsStat(const char *path, void *status)
{
    static const auto real = file_calls::real<int(const char *, void *)>("stat");
    return FileCalls::ask(FileCall::Look, path).fails ? -1 : real(path, status);
}

int fileCallsStat64(const char *path, void *status)
{
    static const auto real = file_calls::real<int(const char *, void *)>("stat64");
    return FileCalls::ask(FileCall::Look, path).fails ? -1 : real(path, status);
}

int fileCallsFstat(int descriptor, void *status)
{
    return file_calls::look("fstat", descriptor, status);
}

int fileCallsFstat64(int descriptor, void *status)
{
    return file_calls::look("fstat64", descriptor, status);
}

int fileCallsFcntl(int descriptor, int command, ...)
{
    va_list rest;
    va_start(rest, command);
    void *const argument = va_arg(rest, void *); // as wide as any there is
    va_end(rest);
    return file_calls::control("fcntl", descriptor, command, argument);
}

int fileCallsFcntl64(int descriptor, int command, ...)
{
    va_list rest;
    va_start(rest, command);
    void *const argument = va_arg(rest, void *);
    va_end(rest);
    return file_calls::control("fcntl64", descriptor, command, argument);
}

ssize_t fileCallsRead(int descriptor, void *bytes, std::size_t size)
{
    static const auto real = file_calls::real<ssize_t(int, void *, std::size_t)>("read");
    return FileCalls::ask(FileCall::Read, descriptor).fails ? -1 : real(descriptor, bytes, size);
}

ssize_t fileCallsPread64(int descriptor, void *bytes, std::size_t size, off64_t place)
{
    static const auto real = file_calls::real<ssize_t(int, void *, std::size_t, off64_t)>("pread64");
    return FileCalls::ask(FileCall::Read, descriptor).fails ? -1 : real(descriptor, bytes, size, place);
}

std::size_t fileCallsFread(void *bytes, std::size_t size, std::size_t count, std::FILE *file)
{
    static const auto real
        = file_calls::real<std::size_t(void *, std::size_t, std::size_t, std::FILE *)>("fread");
    return FileCalls::ask(FileCall::Read, ::fileno(file)).fails ? 0 : real(bytes, size, count, file);
}

ssize_t fileCallsWrite(int descriptor, const void *bytes, std::size_t size)
{
    static const auto real = file_calls::real<ssize_t(int, const void *, std::size_t)>("write");
    const FileCalls::Verdict verdict = FileCalls::ask(FileCall::Write, descriptor);
    return verdict.fails ? -1 : real(descriptor, bytes, verdict.half ? size / 2 : size);
}

ssize_t fileCallsPwrite64(int descriptor, const void *bytes, std::size_t size, off64_t place)
{
    static const auto real = file_calls::real<ssize_t(int, const void *, std::size_t, off64_t)>("pwrite64");
    const FileCalls::Verdict verdict = FileCalls::ask(FileCall::Write, descriptor);
    return verdict.fails ? -1 : real(descriptor, bytes, verdict.half ? size / 2 : size, place);
}

int fileCallsFdatasync(int descriptor)
{
    static const auto real = file_calls::real<int(int)>("fdatasync");
    const FileCalls::Verdict verdict = FileCalls::ask(FileCall::Sync, descriptor);
    if (verdict.watched)
        return verdict.fails ? -1 : 0;
    return real(descriptor);
}

int fileCallsFsync(int descriptor)
{
    static const auto real = file_calls::real<int(int)>("fsync");
    const FileCalls::Verdict verdict = FileCalls::ask(FileCall::Sync, descriptor);
    if (verdict.watched)
        return verdict.fails ? -1 : 0;
    return real(descriptor);
}

int fileCallsFtruncate64(int descriptor, off64_t size)
{
    static const auto real = file_calls::real<int(int, off64_t)>("ftruncate64");
    return FileCalls::ask(FileCall::Truncate, descriptor).fails ? -1 : real(descriptor, size);
}

int fileCallsUnlink(const char *path)
{
    static const auto real = file_calls::real<int(const char *)>("unlink");
    return FileCalls::ask(FileCall::Remove, path).fails ? -1 : real(path);
}
}
