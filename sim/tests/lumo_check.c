/* Asks the identity library about each SID given: prints "SID valid NAME", "SID unknown" or
   "SID malformed". */
#include <dlfcn.h>
#include <stdio.h>

int main(int argc, char **argv) {
  void *lib = dlopen("liblumo.so.0", RTLD_NOW);
  if (!lib) {
    printf("cannot load: %s\n", dlerror());
    return 1;
  }
  int (*toSid)(const char *, void *) =
      (int (*)(const char *, void *))dlsym(lib, "lumolib_string_to_sid");
  int (*info)(const void *, void *) =
      (int (*)(const void *, void *))dlsym(lib, "lumolib_get_userinfo_from_sid");
  if (!toSid || !info) {
    printf("missing symbols\n");
    return 1;
  }
  for (int i = 1; i < argc; ++i) {
    unsigned char sid[68];
    char user[4096];
    if (toSid(argv[i], sid) != 0)
      printf("%s malformed\n", argv[i]);
    else if (info(sid, user) != 0)
      printf("%s unknown\n", argv[i]);
    else
      printf("%s valid %s\n", argv[i], user);
  }
  dlclose(lib);
  return 0;
}
