/* Which programs the leak sanitizer judges. In a sanitizer build the simulator preloads the
   sanitizer's runtime into every program of the sandbox (it must come first for the preloaded,
   instrumented library to load), so the system's tools run by tests (sort, tail, ...) would have
   their own exit-time leaks reported, and their exit statuses changed, although they are not
   ours. The runtime asks __lsan_is_turned_off() before its check at exit: the answer is "off"
   for programs that are not themselves built with the sanitizer, that is whose dynamic symbols
   do not name __asan_init. Programs built with it (trovan, the simulator's own) are checked. */
#define _GNU_SOURCE
#include <elf.h>
#include <fcntl.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#define EXPORT __attribute__((visibility("default")))

/* Non-zero when the dynamic symbol table of the running executable names __asan_init. */
static int instrumented(void) {
  int fd = open("/proc/self/exe", O_RDONLY | O_CLOEXEC);
  if (fd < 0) return 1;
  struct stat st;
  int found = 1; /* when in doubt, check */
  if (fstat(fd, &st) != 0 || (size_t)st.st_size < sizeof(Elf64_Ehdr)) {
    close(fd);
    return found;
  }
  size_t size = (size_t)st.st_size;
  const unsigned char *image = mmap(NULL, size, PROT_READ, MAP_PRIVATE, fd, 0);
  close(fd);
  if (image == MAP_FAILED) return found;
  const Elf64_Ehdr *header = (const Elf64_Ehdr *)image;
  if (memcmp(header->e_ident, ELFMAG, SELFMAG) != 0 || header->e_ident[EI_CLASS] != ELFCLASS64 ||
      header->e_shentsize != sizeof(Elf64_Shdr) || header->e_shoff > size ||
      (size - header->e_shoff) / sizeof(Elf64_Shdr) < header->e_shnum)
    goto done;
  const Elf64_Shdr *sections = (const Elf64_Shdr *)(image + header->e_shoff);
  found = 0;
  for (unsigned i = 0; i < header->e_shnum && !found; ++i) {
    if (sections[i].sh_type != SHT_DYNSYM || sections[i].sh_link >= header->e_shnum) continue;
    const Elf64_Shdr *symbols = &sections[i], *names = &sections[symbols->sh_link];
    if (symbols->sh_offset > size || symbols->sh_size > size - symbols->sh_offset ||
        names->sh_offset > size || names->sh_size > size - names->sh_offset)
      continue;
    const Elf64_Sym *symbol = (const Elf64_Sym *)(image + symbols->sh_offset);
    const char *text = (const char *)(image + names->sh_offset);
    for (size_t n = symbols->sh_size / sizeof(Elf64_Sym); n > 0; --n, ++symbol)
      if (symbol->st_name < names->sh_size &&
          strncmp(text + symbol->st_name, "__asan_init", names->sh_size - symbol->st_name) == 0) {
        found = 1;
        break;
      }
  }
done:
  munmap((void *)image, size);
  return found;
}

EXPORT int __lsan_is_turned_off(void) { return !instrumented(); }
