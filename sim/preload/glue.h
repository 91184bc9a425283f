/* Interface between the libc wrappers (C) and the simulator (C++). Internal to the library. */
#ifndef QUILLSIM_GLUE_H
#define QUILLSIM_GLUE_H

#include <stddef.h>
#include <sys/types.h>

#ifdef __cplusplus
extern "C" {
#endif

#define QS_HIDDEN __attribute__((visibility("hidden")))
#define QS_MAX_FD 4096

/* Non-zero for descriptors that are open on a simulated command file. */
QS_HIDDEN extern unsigned char qs_fd_kind[QS_MAX_FD];

/* The path to use for a path the program gave: the path itself, or buf holding its place in the
   sandbox. NULL (errno set) when the sandbox path does not fit. */
QS_HIDDEN const char *qs_redirect(const char *path, char *buf, size_t size);

/* Called after a successful open of a redirected path, with the program's own path. */
QS_HIDDEN void qs_opened(int fd, const char *path);

QS_HIDDEN ssize_t qs_read(int fd, void *buf, size_t count);
QS_HIDDEN ssize_t qs_pread(int fd, void *buf, size_t count, off_t offset);
QS_HIDDEN ssize_t qs_write(int fd, const void *buf, size_t count);
QS_HIDDEN ssize_t qs_pwrite(int fd, const void *buf, size_t count, off_t offset);
QS_HIDDEN off_t qs_lseek(int fd, off_t offset, int whence);
/* Called before the real close of a command-file descriptor. */
QS_HIDDEN void qs_closing(int fd);
/* Called after a successful dup of a command-file descriptor. */
QS_HIDDEN void qs_duped(int oldfd, int newfd);
/* Called after a call that may have created path (open with O_CREAT, fopen for writing, mkstemp):
   a file made directly in /tmp is recorded in the sandbox, so that what a run leaves there can be
   found without looking at other programs' files. */
QS_HIDDEN void qs_created(const char *path);

#ifdef __cplusplus
}
#endif

#endif
