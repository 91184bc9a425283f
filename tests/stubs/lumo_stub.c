/* A stand-in identity library for the unit tests, with the identity library's soname. It knows
   two users. A SID text converts when it starts with "S-1-" and fits the 68-byte SID; the
   "SID" kept is simply that text. lumo_stub_calls counts the calls of both entry points. */
#include <string.h>

int lumo_stub_calls = 0;

static const char *const knownSids[] = {"S-1-5-21-1-2-3-1104", "S-1-5-21-1-2-3-500"};

int lumolib_string_to_sid(const char *text, void *sid) {
  ++lumo_stub_calls;
  size_t length = strlen(text);
  if (strncmp(text, "S-1-", 4) != 0 || length >= 68) return -1;
  memcpy(sid, text, length + 1);
  return 0;
}

int lumolib_get_userinfo_from_sid(const void *sid, void *userinfo) {
  ++lumo_stub_calls;
  for (size_t i = 0; i < sizeof knownSids / sizeof knownSids[0]; ++i) {
    if (strcmp((const char *)sid, knownSids[i]) == 0) {
      memset(userinfo, 0, 4096);
      return 0;
    }
  }
  return 2;
}
