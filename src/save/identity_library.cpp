#include "save/identity_library.h"

#include <dlfcn.h>

#include <cstdio>

namespace {

// The library's own layouts; only their sizes are known here.
constexpr int kSidSize = 68;
constexpr int kUserInfoSize = 4096;

using StringToSid = int (*)(const char *text, void *sid);
using UserInfoFromSid = int (*)(const void *sid, void *userinfo);

enum class LoadState { notTried, loaded, unavailable };

LoadState loadState = LoadState::notTried;
void *libraryHandle = nullptr;
StringToSid stringToSid = nullptr;
UserInfoFromSid userInfoFromSid = nullptr;

void reportUnavailable() {
  const char *reason = dlerror();
  std::fprintf(stderr, "Unable to load the identity library %s: %s\n", kIdentityLibraryName,
               reason != nullptr ? reason : "");
}

// Loads the library and both entry points once; a library without them counts as not loaded.
bool loadIdentityLibrary() {
  if (loadState != LoadState::notTried) return loadState == LoadState::loaded;
  loadState = LoadState::unavailable;
  libraryHandle = dlopen(kIdentityLibraryName, RTLD_NOW);
  if (libraryHandle == nullptr) {
    reportUnavailable();
    return false;
  }
  stringToSid = reinterpret_cast<StringToSid>(dlsym(libraryHandle, "lumolib_string_to_sid"));
  if (stringToSid != nullptr)
    userInfoFromSid =
        reinterpret_cast<UserInfoFromSid>(dlsym(libraryHandle, "lumolib_get_userinfo_from_sid"));
  if (stringToSid == nullptr || userInfoFromSid == nullptr) {
    reportUnavailable();
    dlclose(libraryHandle);
    libraryHandle = nullptr;
    stringToSid = nullptr;
    userInfoFromSid = nullptr;
    return false;
  }
  loadState = LoadState::loaded;
  return true;
}

}  // namespace

bool sidNamesExistingUser(const char *sidText) {
  if (!loadIdentityLibrary()) return true;
  alignas(8) unsigned char sid[kSidSize] = {};
  if (stringToSid(sidText, sid) != 0) return false;
  alignas(8) unsigned char userInfo[kUserInfoSize];
  return userInfoFromSid(sid, userInfo) == 0;
}

void resetIdentityLibrary() {
  if (libraryHandle != nullptr) dlclose(libraryHandle);
  libraryHandle = nullptr;
  stringToSid = nullptr;
  userInfoFromSid = nullptr;
  loadState = LoadState::notTried;
}
