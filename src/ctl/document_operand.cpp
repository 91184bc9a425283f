#include "ctl/document_operand.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "ctl/output.h"
#include "ctl/scratch_file.h"
#include "document/run_settings.h"
#include "save/save_driver.h"

namespace {

constexpr char kVolumePrefix[] = "vol:";
constexpr char kInfoDirectoryBase[] = "/_admin/Manage_QUILL/Volume/";

}  // namespace

DocumentOperand::~DocumentOperand() {
  if (owned_ && fd_ >= 0) close(fd_);
}

bool DocumentOperand::open(const std::string &operand) {
  if (operand.starts_with(kVolumePrefix))
    return openVolume(operand.substr(sizeof kVolumePrefix - 1));
  if (operand == "-") {
    fd_ = 0;
    label_ = "(standard input)";
    return true;
  }
  label_ = operand;
  fd_ = ::open(operand.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd_ < 0) {
    reportError(operand + ": " + std::strerror(errno));
    return false;
  }
  owned_ = true;
  return true;
}

bool DocumentOperand::openVolume(const std::string &volume) {
  label_ = kVolumePrefix + volume;
  if (volume.empty() || volume.find('/') != std::string::npos) {
    reportError(label_ + ": not a volume name");
    return false;
  }
  struct stat info;
  if (stat((kInfoDirectoryBase + volume + "/").c_str(), &info) != 0) {
    reportError(label_ + ": no such volume (" + kInfoDirectoryBase + volume +
                "/: " + std::strerror(errno) + ")");
    return false;
  }
  fd_ = scratchFile();
  if (fd_ < 0) {
    reportError(label_ + ": cannot make a temporary file: " + std::strerror(errno));
    return false;
  }
  owned_ = true;
  if (const int code = saveVolumeTo(volume, fd_); code != 0) {
    reportError(label_ + ": the volume could not be read (trovan save code " +
                std::to_string(code) + ")");
    return false;
  }
  if (lseek(fd_, 0, SEEK_SET) != 0) {
    reportError(label_ + ": " + std::strerror(errno));
    return false;
  }
  return true;
}

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
