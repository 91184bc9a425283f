/* Uses every libc spelling that can reach "/_admin/..." or "/etc/mtab" and checks where it
   landed. "spellings sim" expects the sandbox, "spellings real" the real system. */
#undef _FORTIFY_SOURCE
#define _GNU_SOURCE
#define _LARGEFILE64_SOURCE

#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <mntent.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

extern int __open_2(const char *, int);
extern int __open64_2(const char *, int);
extern int __openat_2(int, const char *, int);
extern int __openat64_2(int, const char *, int);

static const char *kMarker = "/_admin/.quillsim";
static int failures;
static int expectSim;

static void check(const char *what, int landedInSandbox) {
  if (landedInSandbox != expectSim) {
    printf("FAIL %s: %s\n", what, landedInSandbox ? "reached the sandbox" : "not redirected");
    failures++;
  }
}

static int fdOk(int fd) {
  if (fd < 0) return 0;
  close(fd);
  return 1;
}

static int fileOk(FILE *f) {
  if (!f) return 0;
  fclose(f);
  return 1;
}

/* The mount table read through a stream: does it list a quillvol entry? */
static int streamHasQuill(FILE *f) {
  if (!f) return 0;
  char line[4096];
  int found = 0;
  while (fgets(line, sizeof line, f))
    if (strstr(line, " quillvol ")) found = 1;
  fclose(f);
  return found;
}

typedef int (*xstat_fn)(int, const char *, struct stat *);
typedef int (*xstat64_fn)(int, const char *, struct stat64 *);
typedef int (*fxstatat_fn)(int, int, const char *, struct stat *, int);
typedef int (*fxstatat64_fn)(int, int, const char *, struct stat64 *, int);

int main(int argc, char **argv) {
  if (argc != 2 || (strcmp(argv[1], "sim") && strcmp(argv[1], "real"))) {
    fprintf(stderr, "usage: spellings sim|real\n");
    return 2;
  }
  expectSim = strcmp(argv[1], "sim") == 0;
  struct stat st;
  struct stat64 st64;
  struct statx stx;

  check("open", fdOk(open(kMarker, O_RDONLY)));
  check("open64", fdOk(open64(kMarker, O_RDONLY)));
  check("openat", fdOk(openat(AT_FDCWD, kMarker, O_RDONLY)));
  int root = open("/", O_RDONLY | O_DIRECTORY);
  check("openat(dirfd)", fdOk(openat(root, kMarker, O_RDONLY)));
  close(root);
  check("openat64", fdOk(openat64(AT_FDCWD, kMarker, O_RDONLY)));
  check("__open_2", fdOk(__open_2(kMarker, O_RDONLY)));
  check("__open64_2", fdOk(__open64_2(kMarker, O_RDONLY)));
  check("__openat_2", fdOk(__openat_2(AT_FDCWD, kMarker, O_RDONLY)));
  check("__openat64_2", fdOk(__openat64_2(AT_FDCWD, kMarker, O_RDONLY)));
  check("fopen", fileOk(fopen(kMarker, "r")));
  check("fopen64", fileOk(fopen64(kMarker, "r")));
  /* A failed freopen leaves its stream unusable, so it is only tried where it must succeed. */
  if (expectSim) {
    check("freopen", fileOk(freopen(kMarker, "r", fopen("/dev/null", "r"))));
    check("freopen64", fileOk(freopen64(kMarker, "r", fopen("/dev/null", "r"))));
  }
  check("stat", stat(kMarker, &st) == 0);
  check("stat64", stat64(kMarker, &st64) == 0);
  check("lstat", lstat(kMarker, &st) == 0);
  check("lstat64", lstat64(kMarker, &st64) == 0);
  check("fstatat", fstatat(AT_FDCWD, kMarker, &st, 0) == 0);
  check("fstatat64", fstatat64(AT_FDCWD, kMarker, &st64, 0) == 0);
  check("statx", statx(AT_FDCWD, kMarker, 0, STATX_BASIC_STATS, &stx) == 0);
  check("access", access(kMarker, F_OK) == 0);
  check("faccessat", faccessat(AT_FDCWD, kMarker, F_OK, 0) == 0);
  check("euidaccess", euidaccess(kMarker, F_OK) == 0);
  check("eaccess", eaccess(kMarker, F_OK) == 0);
  DIR *d = opendir("/_admin");
  check("opendir", d != NULL);
  if (d) closedir(d);

  /* The stat family of older programs, where this libc still has it. */
  xstat_fn xs = (xstat_fn)dlsym(RTLD_DEFAULT, "__xstat");
  xstat64_fn xs64 = (xstat64_fn)dlsym(RTLD_DEFAULT, "__xstat64");
  xstat_fn lxs = (xstat_fn)dlsym(RTLD_DEFAULT, "__lxstat");
  xstat64_fn lxs64 = (xstat64_fn)dlsym(RTLD_DEFAULT, "__lxstat64");
  fxstatat_fn fxs = (fxstatat_fn)dlsym(RTLD_DEFAULT, "__fxstatat");
  fxstatat64_fn fxs64 = (fxstatat64_fn)dlsym(RTLD_DEFAULT, "__fxstatat64");
  if (expectSim) {
    check("__xstat", xs && xs(1, kMarker, &st) == 0);
    check("__xstat64", xs64 && xs64(1, kMarker, &st64) == 0);
    check("__lxstat", lxs && lxs(1, kMarker, &st) == 0);
    check("__lxstat64", lxs64 && lxs64(1, kMarker, &st64) == 0);
    check("__fxstatat", fxs && fxs(1, AT_FDCWD, kMarker, &st, 0) == 0);
    check("__fxstatat64", fxs64 && fxs64(1, AT_FDCWD, kMarker, &st64, 0) == 0);
  }

  /* The mount table through every way a program reads it. */
  check("fopen(/etc/mtab)", streamHasQuill(fopen("/etc/mtab", "r")));
  check("setmntent", ({
          FILE *m = setmntent("/etc/mtab", "r");
          int found = 0;
          struct mntent ent;
          char buf[4096];
          while (m && getmntent_r(m, &ent, buf, sizeof buf))
            if (strcmp(ent.mnt_type, "quillvol") == 0) found = 1;
          if (m) endmntent(m);
          found;
        }));
  int fd = open("/etc/mtab", O_RDONLY);
  check("open(/etc/mtab)", fd >= 0 && streamHasQuill(fdopen(fd, "r")));

  /* Nothing else moves: a path that merely looks alike is left alone. */
  if (stat("/_adminX", &st) == 0 || errno != ENOENT) {
    printf("FAIL /_adminX was redirected or exists\n");
    failures++;
  }

  /* errno stays what the real call made it. */
  errno = 0;
  if (stat("/_admin/no-such-file", &st) == 0 || errno != ENOENT) {
    printf("FAIL errno after a missing simulated file: %d\n", errno);
    failures++;
  }

  if (failures == 0) printf("ok\n");
  return failures ? 1 : 0;
}
