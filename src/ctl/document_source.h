// A document operand opened for two readers at once, each with its own offset: the strict
// reader and trovan's restore run. Standard input ("-") is first copied into an unnamed
// temporary file, so that it too can be read twice; a document read once is not copied.
#pragma once
#include <string>

class DocumentSource {
public:
  enum Reading { twice, once };
  // Opens `name`; ok() tells whether that worked, error() says why ("NAME: reason"). Read
  // `once`, standard input is read as it comes and second() is never asked for.
  explicit DocumentSource(const std::string &name, Reading reading = twice);
  ~DocumentSource();
  DocumentSource(const DocumentSource &) = delete;
  DocumentSource &operator=(const DocumentSource &) = delete;

  bool ok() const { return first_ >= 0; }
  const std::string &error() const { return error_; }
  // The name findings show: the operand, or "(standard input)".
  const std::string &label() const { return label_; }
  // The first descriptor, at the document's start.
  int first() const { return first_; }
  // A second descriptor at the document's start, opened on first use; -1 if it cannot be.
  int second();

private:
  std::string label_;
  std::string error_;
  int first_ = -1;
  int second_ = -1;
};
