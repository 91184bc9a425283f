// The one output layer of trovanctl: every command writes its result rows through it, as text
// lines for people or as JSON Lines for machines. A row is one JSON object; its text line is
// made from that same object by the renderer of its "type", so the two forms cannot drift.
#pragma once
#include <cstdio>
#include <string>

#include <nlohmann/json.hpp>

using Row = nlohmann::ordered_json;

enum class Format { text, json };

class Output {
public:
  explicit Output(Format format, std::FILE *stream = stdout);

  // Writes one row; its "type" member picks the text renderer.
  void emit(const Row &row);
  // Writes one row whose text line `render` makes from the row itself (a command's own rows).
  void emit(const Row &row, std::string (*render)(const Row &));

  // Writes a text line made without a row (a line feed is added).
  void line(const std::string &text);

  Format format() const { return format_; }

private:
  Format format_;
  std::FILE *stream_;
};

// The text line of a row (without its line feed): "finding" and "summary" rows, and a generic
// "name=value ..." line for a type without a renderer of its own.
std::string renderText(const Row &row);

// A message on standard error in the program's one shape: "trovanctl: TEXT".
void reportError(const std::string &text);
// The same for a place in a file: "trovanctl: FILE:LINE:COLUMN: TEXT".
void reportError(const std::string &file, unsigned long line, unsigned long column,
                 const std::string &text);
