// The document operands of trovanctl's commands: a file, "-" for standard input, or vol:NAME for
// the live volume NAME, read through its info files as trovan save NAME reads them.
#pragma once
#include <string>

class DocumentOperand {
public:
  DocumentOperand() = default;
  ~DocumentOperand();
  DocumentOperand(const DocumentOperand &) = delete;
  DocumentOperand &operator=(const DocumentOperand &) = delete;

  // Opens the operand. False after a message on standard error.
  bool open(const std::string &operand);
  int fd() const { return fd_; }
  // The operand as messages name it: the file, "(standard input)" or "vol:NAME".
  const std::string &label() const { return label_; }

private:
  bool openVolume(const std::string &volume);
  int fd_ = -1;
  bool owned_ = false;
  std::string label_;
};

// Writes the Metadata document of the live volume `volume` (all sections, no user type or path
// filter, nothing removed) to `fd` with trovan save's own code. Returns 0, or trovan save's
// completion code after its messages.
int saveVolumeTo(const std::string &volume, int fd);
