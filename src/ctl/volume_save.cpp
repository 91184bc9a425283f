#include "ctl/volume_save.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "document/run_settings.h"
#include "save/save_driver.h"

namespace {

constexpr char kInfoDirectoryBase[] = "/_admin/Manage_QUILL/Volume/";

}  // namespace

int saveVolumeTo(const std::string &volume, int fd) {
  // trovan save writes to descriptor 1: it is pointed at `fd` for the save, then given back.
  std::fflush(stdout);
  const int saved = dup(1);
  if (saved < 0 || dup2(fd, 1) < 0) {
    const int error = errno;
    if (saved >= 0) close(saved);
    return error;
  }
  const int wasArbor = arborUsers;
  const int wasAd = adUsers;
  arborUsers = adUsers = 0;  // no user-type filter: every trustee and user quota
  const std::string infoDir = kInfoDirectoryBase + volume + "/";
  const int code = saveMetadata(volume.c_str(), infoDir.c_str(), "", nullptr, nullptr);
  arborUsers = wasArbor;
  adUsers = wasAd;
  dup2(saved, 1);
  close(saved);
  return code;
}
