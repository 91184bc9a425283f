/* The libc entry points that can reach "/_admin/..." or "/etc/mtab", and the descriptor calls
   that carry command-file traffic. Each real function is looked up once and cached. */
#undef _FORTIFY_SOURCE
#define _GNU_SOURCE
#define _LARGEFILE64_SOURCE

#include "glue.h"

#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <mntent.h>
#include <stdarg.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#define EXPORT __attribute__((visibility("default")))
#define PATHBUF 8192

/* REAL(name) is the next definition of name after this library, resolved on first use. */
#define REAL(name)                                                                                 \
  ({                                                                                               \
    static __typeof__(&(name)) real_##name;                                                        \
    if (!real_##name) real_##name = (__typeof__(&(name)))dlsym(RTLD_NEXT, #name);                  \
    real_##name;                                                                                   \
  })

/* Looks up functions that the system headers no longer declare. */
#define REAL_T(type, name)                                                                         \
  ({                                                                                               \
    static type real_##name;                                                                       \
    if (!real_##name) real_##name = (type)dlsym(RTLD_NEXT, #name);                                 \
    if (!real_##name) real_##name = missing_##name;                                                \
    real_##name;                                                                                   \
  })

#define REDIRECT(p)                                                                                \
  char qs_buf_[PATHBUF];                                                                           \
  const char *rp = qs_redirect((p), qs_buf_, sizeof qs_buf_);                                      \
  if (!rp) return -1;

#define REDIRECT_PTR(p)                                                                            \
  char qs_buf_[PATHBUF];                                                                           \
  const char *rp = qs_redirect((p), qs_buf_, sizeof qs_buf_);                                      \
  if (!rp) return NULL;

#define MODE_ARG(flags)                                                                            \
  mode_t mode = 0;                                                                                 \
  if ((flags) & (O_CREAT | __O_TMPFILE)) {                                                         \
    va_list ap;                                                                                    \
    va_start(ap, flags);                                                                           \
    mode = (mode_t)va_arg(ap, int);                                                                \
    va_end(ap);                                                                                    \
  }

typedef int (*__open_2_fn)(const char *, int);
typedef int (*__open64_2_fn)(const char *, int);
typedef int (*__openat_2_fn)(int, const char *, int);
typedef int (*__openat64_2_fn)(int, const char *, int);
typedef int (*__xstat_fn)(int, const char *, struct stat *);
typedef int (*__xstat64_fn)(int, const char *, struct stat64 *);
typedef int (*__lxstat_fn)(int, const char *, struct stat *);
typedef int (*__lxstat64_fn)(int, const char *, struct stat64 *);
typedef int (*__fxstatat_fn)(int, int, const char *, struct stat *, int);
typedef int (*__fxstatat64_fn)(int, int, const char *, struct stat64 *, int);
typedef ssize_t (*__read_chk_fn)(int, void *, size_t, size_t);
typedef ssize_t (*__pread_chk_fn)(int, void *, size_t, off_t, size_t);
typedef ssize_t (*__pread64_chk_fn)(int, void *, size_t, off64_t, size_t);

/* Stand-ins for entry points this libc does not have (older or newer spellings). */
static int missing___open_2(const char *unused0, int unused1) {
  errno = ENOSYS;
  return -1;
}
static int missing___open64_2(const char *unused0, int unused1) {
  errno = ENOSYS;
  return -1;
}
static int missing___openat_2(int unused0, const char *unused1, int unused2) {
  errno = ENOSYS;
  return -1;
}
static int missing___openat64_2(int unused0, const char *unused1, int unused2) {
  errno = ENOSYS;
  return -1;
}
static int missing___xstat(int unused0, const char *unused1, struct stat *unused2) {
  errno = ENOSYS;
  return -1;
}
static int missing___xstat64(int unused0, const char *unused1, struct stat64 *unused2) {
  errno = ENOSYS;
  return -1;
}
static int missing___lxstat(int unused0, const char *unused1, struct stat *unused2) {
  errno = ENOSYS;
  return -1;
}
static int missing___lxstat64(int unused0, const char *unused1, struct stat64 *unused2) {
  errno = ENOSYS;
  return -1;
}
static int missing___fxstatat(int unused0, int unused1, const char *unused2, struct stat *unused3,
                              int unused4) {
  errno = ENOSYS;
  return -1;
}
static int missing___fxstatat64(int unused0, int unused1, const char *unused2,
                                struct stat64 *unused3, int unused4) {
  errno = ENOSYS;
  return -1;
}
static ssize_t missing___read_chk(int unused0, void *unused1, size_t unused2, size_t unused3) {
  errno = ENOSYS;
  return -1;
}
static ssize_t missing___pread_chk(int unused0, void *unused1, size_t unused2, off_t unused3,
                                   size_t unused4) {
  errno = ENOSYS;
  return -1;
}
static ssize_t missing___pread64_chk(int unused0, void *unused1, size_t unused2, off64_t unused3,
                                     size_t unused4) {
  errno = ENOSYS;
  return -1;
}

static int track(int fd, const char *path, const char *rp) {
  if (fd >= 0 && rp != path) qs_opened(fd, path);
  return fd;
}

/* Files a program may have made (in /tmp) are recorded, so that leftovers can be found. */
static int track_created(int fd, int flags, const char *path, const char *rp) {
  if (fd >= 0 && (flags & O_CREAT)) qs_created(path);
  return track(fd, path, rp);
}

static FILE *stream_created(FILE *stream, const char *path, const char *mode) {
  if (stream && path && mode && (mode[0] == 'w' || mode[0] == 'a')) qs_created(path);
  return stream;
}

static int made_temporary(int fd, const char *name) {
  if (fd >= 0) qs_created(name);
  return fd;
}

/* ---- opening ---------------------------------------------------------------------------- */

EXPORT int open(const char *path, int flags, ...) {
  MODE_ARG(flags);
  REDIRECT(path);
  return track_created(REAL(open)(rp, flags, mode), flags, path, rp);
}

EXPORT int open64(const char *path, int flags, ...) {
  MODE_ARG(flags);
  REDIRECT(path);
  return track_created(REAL(open64)(rp, flags, mode), flags, path, rp);
}

EXPORT int openat(int dirfd, const char *path, int flags, ...) {
  MODE_ARG(flags);
  REDIRECT(path);
  return track_created(REAL(openat)(dirfd, rp, flags, mode), flags, path, rp);
}

EXPORT int openat64(int dirfd, const char *path, int flags, ...) {
  MODE_ARG(flags);
  REDIRECT(path);
  return track_created(REAL(openat64)(dirfd, rp, flags, mode), flags, path, rp);
}

EXPORT int __open_2(const char *path, int flags) {
  REDIRECT(path);
  return track(REAL_T(__open_2_fn, __open_2)(rp, flags), path, rp);
}

EXPORT int __open64_2(const char *path, int flags) {
  REDIRECT(path);
  return track(REAL_T(__open64_2_fn, __open64_2)(rp, flags), path, rp);
}

EXPORT int __openat_2(int dirfd, const char *path, int flags) {
  REDIRECT(path);
  return track(REAL_T(__openat_2_fn, __openat_2)(dirfd, rp, flags), path, rp);
}

EXPORT int __openat64_2(int dirfd, const char *path, int flags) {
  REDIRECT(path);
  return track(REAL_T(__openat64_2_fn, __openat64_2)(dirfd, rp, flags), path, rp);
}

EXPORT int creat(const char *path, mode_t mode) {
  REDIRECT(path);
  return track_created(REAL(creat)(rp, mode), O_CREAT, path, rp);
}

EXPORT int creat64(const char *path, mode_t mode) {
  REDIRECT(path);
  return track_created(REAL(creat64)(rp, mode), O_CREAT, path, rp);
}

/* Streams read through libc's own internal calls, so a command file opened as a stream is a
   plain (empty) file; info files and the mount table only need the redirection. */
EXPORT FILE *fopen(const char *path, const char *mode) {
  REDIRECT_PTR(path);
  return stream_created(REAL(fopen)(rp, mode), path, mode);
}

EXPORT FILE *fopen64(const char *path, const char *mode) {
  REDIRECT_PTR(path);
  return stream_created(REAL(fopen64)(rp, mode), path, mode);
}

EXPORT FILE *freopen(const char *path, const char *mode, FILE *stream) {
  if (!path) return REAL(freopen)(path, mode, stream);
  REDIRECT_PTR(path);
  return stream_created(REAL(freopen)(rp, mode, stream), path, mode);
}

EXPORT FILE *freopen64(const char *path, const char *mode, FILE *stream) {
  if (!path) return REAL(freopen64)(path, mode, stream);
  REDIRECT_PTR(path);
  return stream_created(REAL(freopen64)(rp, mode, stream), path, mode);
}

/* libc opens the table with its internal fopen, which no wrapper sees. */
EXPORT FILE *setmntent(const char *path, const char *mode) {
  REDIRECT_PTR(path);
  return REAL(setmntent)(rp, mode);
}

EXPORT DIR *opendir(const char *path) {
  REDIRECT_PTR(path);
  return REAL(opendir)(rp);
}

/* Temporary files made from a template: the name is known only after the call. */
EXPORT int mkstemp(char *name) { return made_temporary(REAL(mkstemp)(name), name); }

EXPORT int mkstemp64(char *name) { return made_temporary(REAL(mkstemp64)(name), name); }

EXPORT int mkostemp(char *name, int flags) {
  return made_temporary(REAL(mkostemp)(name, flags), name);
}

EXPORT int mkostemp64(char *name, int flags) {
  return made_temporary(REAL(mkostemp64)(name, flags), name);
}

/* ---- status and access ------------------------------------------------------------------ */

EXPORT int stat(const char *path, struct stat *st) {
  REDIRECT(path);
  return REAL(stat)(rp, st);
}

EXPORT int stat64(const char *path, struct stat64 *st) {
  REDIRECT(path);
  return REAL(stat64)(rp, st);
}

EXPORT int lstat(const char *path, struct stat *st) {
  REDIRECT(path);
  return REAL(lstat)(rp, st);
}

EXPORT int lstat64(const char *path, struct stat64 *st) {
  REDIRECT(path);
  return REAL(lstat64)(rp, st);
}

EXPORT int fstatat(int dirfd, const char *path, struct stat *st, int flags) {
  REDIRECT(path);
  return REAL(fstatat)(dirfd, rp, st, flags);
}

EXPORT int fstatat64(int dirfd, const char *path, struct stat64 *st, int flags) {
  REDIRECT(path);
  return REAL(fstatat64)(dirfd, rp, st, flags);
}

EXPORT int __xstat(int ver, const char *path, struct stat *st) {
  REDIRECT(path);
  return REAL_T(__xstat_fn, __xstat)(ver, rp, st);
}

EXPORT int __xstat64(int ver, const char *path, struct stat64 *st) {
  REDIRECT(path);
  return REAL_T(__xstat64_fn, __xstat64)(ver, rp, st);
}

EXPORT int __lxstat(int ver, const char *path, struct stat *st) {
  REDIRECT(path);
  return REAL_T(__lxstat_fn, __lxstat)(ver, rp, st);
}

EXPORT int __lxstat64(int ver, const char *path, struct stat64 *st) {
  REDIRECT(path);
  return REAL_T(__lxstat64_fn, __lxstat64)(ver, rp, st);
}

EXPORT int __fxstatat(int ver, int dirfd, const char *path, struct stat *st, int flags) {
  REDIRECT(path);
  return REAL_T(__fxstatat_fn, __fxstatat)(ver, dirfd, rp, st, flags);
}

EXPORT int __fxstatat64(int ver, int dirfd, const char *path, struct stat64 *st, int flags) {
  REDIRECT(path);
  return REAL_T(__fxstatat64_fn, __fxstatat64)(ver, dirfd, rp, st, flags);
}

EXPORT int statx(int dirfd, const char *path, int flags, unsigned int mask, struct statx *st) {
  REDIRECT(path);
  return REAL(statx)(dirfd, rp, flags, mask, st);
}

EXPORT int access(const char *path, int mode) {
  REDIRECT(path);
  return REAL(access)(rp, mode);
}

EXPORT int faccessat(int dirfd, const char *path, int mode, int flags) {
  REDIRECT(path);
  return REAL(faccessat)(dirfd, rp, mode, flags);
}

EXPORT int euidaccess(const char *path, int mode) {
  REDIRECT(path);
  return REAL(euidaccess)(rp, mode);
}

EXPORT int eaccess(const char *path, int mode) {
  REDIRECT(path);
  return REAL(eaccess)(rp, mode);
}

/* ---- command-file traffic --------------------------------------------------------------- */

#define IS_CMD(fd) ((unsigned)(fd) < QS_MAX_FD && qs_fd_kind[fd])

EXPORT ssize_t read(int fd, void *buf, size_t count) {
  if (IS_CMD(fd)) return qs_read(fd, buf, count);
  return REAL(read)(fd, buf, count);
}

EXPORT ssize_t __read_chk(int fd, void *buf, size_t count, size_t buflen) {
  if (IS_CMD(fd)) return qs_read(fd, buf, count < buflen ? count : buflen);
  return REAL_T(__read_chk_fn, __read_chk)(fd, buf, count, buflen);
}

EXPORT ssize_t pread(int fd, void *buf, size_t count, off_t offset) {
  if (IS_CMD(fd)) return qs_pread(fd, buf, count, offset);
  return REAL(pread)(fd, buf, count, offset);
}

EXPORT ssize_t pread64(int fd, void *buf, size_t count, off64_t offset) {
  if (IS_CMD(fd)) return qs_pread(fd, buf, count, (off_t)offset);
  return REAL(pread64)(fd, buf, count, offset);
}

EXPORT ssize_t __pread_chk(int fd, void *buf, size_t count, off_t offset, size_t buflen) {
  if (IS_CMD(fd)) return qs_pread(fd, buf, count < buflen ? count : buflen, offset);
  return REAL_T(__pread_chk_fn, __pread_chk)(fd, buf, count, offset, buflen);
}

EXPORT ssize_t __pread64_chk(int fd, void *buf, size_t count, off64_t offset, size_t buflen) {
  if (IS_CMD(fd)) return qs_pread(fd, buf, count < buflen ? count : buflen, (off_t)offset);
  return REAL_T(__pread64_chk_fn, __pread64_chk)(fd, buf, count, offset, buflen);
}

EXPORT ssize_t write(int fd, const void *buf, size_t count) {
  if (IS_CMD(fd)) return qs_write(fd, buf, count);
  return REAL(write)(fd, buf, count);
}

EXPORT ssize_t pwrite(int fd, const void *buf, size_t count, off_t offset) {
  if (IS_CMD(fd)) return qs_pwrite(fd, buf, count, offset);
  return REAL(pwrite)(fd, buf, count, offset);
}

EXPORT ssize_t pwrite64(int fd, const void *buf, size_t count, off64_t offset) {
  if (IS_CMD(fd)) return qs_pwrite(fd, buf, count, (off_t)offset);
  return REAL(pwrite64)(fd, buf, count, offset);
}

EXPORT off_t lseek(int fd, off_t offset, int whence) {
  if (IS_CMD(fd)) return qs_lseek(fd, offset, whence);
  return REAL(lseek)(fd, offset, whence);
}

EXPORT off64_t lseek64(int fd, off64_t offset, int whence) {
  if (IS_CMD(fd)) return (off64_t)qs_lseek(fd, (off_t)offset, whence);
  return REAL(lseek64)(fd, offset, whence);
}

EXPORT int close(int fd) {
  if (IS_CMD(fd)) qs_closing(fd);
  return REAL(close)(fd);
}

EXPORT int dup(int oldfd) {
  int fd = REAL(dup)(oldfd);
  if (fd >= 0 && IS_CMD(oldfd)) qs_duped(oldfd, fd);
  return fd;
}

EXPORT int dup2(int oldfd, int newfd) {
  if (oldfd != newfd && IS_CMD(newfd)) qs_closing(newfd);
  int fd = REAL(dup2)(oldfd, newfd);
  if (fd >= 0 && oldfd != newfd && IS_CMD(oldfd)) qs_duped(oldfd, fd);
  return fd;
}

EXPORT int dup3(int oldfd, int newfd, int flags) {
  if (oldfd != newfd && IS_CMD(newfd)) qs_closing(newfd);
  int fd = REAL(dup3)(oldfd, newfd, flags);
  if (fd >= 0 && IS_CMD(oldfd)) qs_duped(oldfd, fd);
  return fd;
}
