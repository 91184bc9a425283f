#include "cli/options.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "document/completion_codes.h"
#include "document/run_settings.h"

int parseMask(const char *mask, MaskFlags &flags) {
  if (mask == nullptr || mask[0] == '\0') {
    flags.trustees = flags.userQuotas = flags.dirQuotas = 1;
    flags.removeInvalid = 0;
    return 0;
  }
  for (const char *letter = mask; *letter != '\0'; ++letter) {
    switch (*letter) {
    case 't': flags.trustees = 1; break;
    case 'u': flags.userQuotas = 1; break;
    case 'd': flags.dirQuotas = 1; break;
    case 'r': flags.removeInvalid = 1; break;
    case 'a': flags.trustees = flags.userQuotas = flags.dirQuotas = flags.removeInvalid = 1; break;
    default:
      std::fprintf(stderr, "Unknown metadata type in the mask: %c\n", *letter);
      return kOwnFailure;
    }
  }
  return 0;
}

int parseUserType(int given, const char *type, bool forSave) {
  if (!given) {
    arborUsers = adUsers = forSave ? 0 : 1;
    return 0;
  }
  const bool arbor = std::strcmp(type, "arbor") == 0;
  if (arbor || std::strcmp(type, "ad") == 0) {
    arborUsers = arbor ? 1 : 0;
    adUsers = arbor ? 0 : 1;
    return 0;
  }
  std::fprintf(stderr, "Unknown user type : %s\n", type);
  return kOwnFailure;
}

char *normalisePathOption(const char *argument) {
  const std::size_t length = std::strlen(argument);
  char *path = static_cast<char *>(std::malloc(length + 2));
  if (path == nullptr) return nullptr;
  if (argument[0] == '/') {
    std::memcpy(path, argument, length + 1);
  } else {
    path[0] = '/';
    std::memcpy(path + 1, argument, length + 1);
  }
  const std::size_t normalisedLength = std::strlen(path);
  if (normalisedLength >= 2 && path[normalisedLength - 1] == '/') path[normalisedLength - 1] = '\0';
  return path;
}
