// A named output file written safely: into a temporary file in the same folder, renamed over
// the name only when the command has succeeded, so that a failed run leaves neither a half file
// nor a destroyed previous one. A name that is no regular file (a device, a pipe) is written
// directly.
#pragma once
#include <string>

class OutputFile {
public:
  // Creates the temporary file beside `name`. ok() tells whether that worked; error() says why.
  explicit OutputFile(std::string name);
  // Removes the temporary file unless commit() has renamed it.
  ~OutputFile();
  OutputFile(const OutputFile &) = delete;
  OutputFile &operator=(const OutputFile &) = delete;

  bool ok() const { return fd_ >= 0; }
  int fd() const { return fd_; }
  // Flushes the file to disk and renames it to its name. Returns 0 or an errno value.
  int commit();
  // What failed, as "NAME: reason".
  const std::string &error() const { return error_; }

private:
  std::string name_;
  std::string temporary_;
  std::string error_;
  int fd_ = -1;
  bool committed_ = false;
  bool direct_ = false;  // written in place, never renamed
};
