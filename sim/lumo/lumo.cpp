// A stand-in for the identity library: SIDs resolve when the sandbox's directory knows them.
#include "../core/state.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// Binary SID: revision, sub-authority count, 48-bit authority, up to 15 sub-authorities.
struct Sid {
  uint8_t revision;
  uint8_t count;
  uint8_t authority[6];
  uint32_t sub[15];
};
static_assert(sizeof(Sid) == 68);

bool parseSid(const char *text, Sid &sid) {
  std::memset(&sid, 0, sizeof sid);
  if (!text || text[0] != 'S' || text[1] != '-') return false;
  const char *p = text + 2;
  char *end;
  unsigned long parts[17];
  int n = 0;
  for (;;) {
    if (*p < '0' || *p > '9' || n == 17) return false;
    parts[n++] = std::strtoul(p, &end, 10);
    if (*end == '\0') break;
    if (*end != '-') return false;
    p = end + 1;
  }
  if (n < 2 || parts[0] != 1 || n - 2 > 15) return false;
  sid.revision = 1;
  sid.count = static_cast<uint8_t>(n - 2);
  for (int i = 0; i < 6; ++i)
    sid.authority[i] = static_cast<uint8_t>(parts[1] >> (8 * (5 - i)));
  for (int i = 2; i < n; ++i)
    sid.sub[i - 2] = static_cast<uint32_t>(parts[i]);
  return true;
}

std::string sidText(const Sid &sid) {
  uint64_t auth = 0;
  for (int i = 0; i < 6; ++i)
    auth = (auth << 8) | sid.authority[i];
  std::string s = "S-" + std::to_string(sid.revision) + "-" + std::to_string(auth);
  for (int i = 0; i < sid.count && i < 15; ++i)
    s += "-" + std::to_string(sid.sub[i]);
  return s;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int lumolib_string_to_sid(const char *text,
                                                                            void *sid) {
  Sid s;
  if (!sid || !parseSid(text, s)) return -1;
  std::memcpy(sid, &s, sizeof s);
  return 0;
}

extern "C" __attribute__((visibility("default"))) int
lumolib_get_userinfo_from_sid(const void *sid, void *userinfo) {
  if (!sid || !userinfo) return -1;
  Sid s;
  std::memcpy(&s, sid, sizeof s);
  std::string root = qs::envRoot();
  if (root.empty() || s.revision != 1 || s.count > 15) return -1;
  qs::Users users;
  users.load(root + "/sim/users");
  const std::string *name = users.adNameOfSid(sidText(s));
  if (!name) return -1;
  std::memset(userinfo, 0, 4096);
  std::snprintf(static_cast<char *>(userinfo), 4096, "%s", name->c_str());
  return 0;
}
