#include "faults.h"

#include "text.h"

#include <cerrno>
#include <cstdlib>

namespace qs {

std::vector<Fault> loadFaults(const std::string &root) {
  std::vector<Fault> faults;
  std::string text;
  if (!readFile(root + "/sim/faults", text)) return faults;
  forEachStateLine(text, [&](std::string_view line) {
    auto f = splitTabs(line);
    f.resize(5);
    faults.push_back({fieldUnescape(f[0]), fieldUnescape(f[1]), fieldUnescape(f[2]),
                      fieldUnescape(f[3]), fieldUnescape(f[4])});
  });
  return faults;
}

bool saveFaults(const std::string &root, const std::vector<Fault> &faults) {
  std::string out = "# quillsim faults: kind pattern value description name\n";
  for (const Fault &f : faults)
    out += fieldEscape(f.kind) + '\t' + fieldEscape(f.pattern) + '\t' + fieldEscape(f.value) +
           '\t' + fieldEscape(f.description) + '\t' + fieldEscape(f.name) + '\n';
  return writeFileAtomic(root + "/sim/faults", out);
}

const Fault *findFault(const std::vector<Fault> &faults, std::string_view kind,
                       std::string_view text) {
  for (const Fault &f : faults)
    if (f.kind == kind && text.find(f.pattern) != std::string_view::npos) return &f;
  return nullptr;
}

int parseErrno(std::string_view text) {
  static constexpr struct {
    std::string_view name;
    int value;
  } names[] = {{"EPERM", EPERM},   {"ENOENT", ENOENT}, {"EINTR", EINTR},   {"EIO", EIO},
               {"EBADF", EBADF},   {"EAGAIN", EAGAIN}, {"ENOMEM", ENOMEM}, {"EACCES", EACCES},
               {"EFAULT", EFAULT}, {"EBUSY", EBUSY},   {"EINVAL", EINVAL}, {"ENOSPC", ENOSPC},
               {"EROFS", EROFS},   {"EPIPE", EPIPE},   {"ENODEV", ENODEV}, {"ESTALE", ESTALE}};
  for (const auto &n : names)
    if (n.name == text) return n.value;
  if (isDigits(text)) {
    long v = std::strtol(std::string(text).c_str(), nullptr, 10);
    return v > 0 && v < 4096 ? static_cast<int>(v) : 0;
  }
  return 0;
}

}  // namespace qs
