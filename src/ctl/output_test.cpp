#include "ctl/output.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

// What Output writes for `row` in `format`.
std::string emitted(Format format, const Row &row) {
  char *text = nullptr;
  std::size_t size = 0;
  std::FILE *stream = open_memstream(&text, &size);
  Output(format, stream).emit(row);
  std::fclose(stream);
  std::string result(text, size);
  std::free(text);
  return result;
}

Row finding() {
  Row row;
  row["type"] = "finding";
  row["file"] = "doc.xml";
  row["line"] = 3;
  row["column"] = 7;
  row["code"] = "unknown-element";
  row["message"] = "unknown element <x> in <file>";
  return row;
}

TEST(Output, AFindingAsTextAndAsJson) {
  EXPECT_EQ(emitted(Format::text, finding()),
            "trovanctl: doc.xml:3:7: unknown element <x> in <file>\n");
  EXPECT_EQ(emitted(Format::json, finding()),
            "{\"type\":\"finding\",\"file\":\"doc.xml\",\"line\":3,\"column\":7,\"code\":"
            "\"unknown-element\",\"message\":\"unknown element <x> in <file>\"}\n");
}

TEST(Output, TextThatIsNotUtf8StaysOneJsonLine) {
  Row row = finding();
  row["message"] = std::string("bad \xff byte");
  EXPECT_EQ(emitted(Format::json, row).find('\n'), emitted(Format::json, row).size() - 1);
}

TEST(Output, ARowWithoutARendererOfItsOwn) {
  Row row;
  row["type"] = "other";
  row["path"] = "/a";
  row["count"] = 2;
  EXPECT_EQ(emitted(Format::text, row), "path=/a count=2\n");
}

}  // namespace
