#include "model/canonical_writer.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "model_support.h"

namespace {

std::string savedDocument(const char *name) {
  std::ifstream file(std::string(TROVAN_SOURCE_DIR "/tests/model/") + name, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

// Documents trovan save wrote under the simulator come back byte for byte.
TEST(CanonicalWriter, RewritesSavedDocumentsByteForByte) {
  for (const char *name : {"saved_odd_names.xml", "saved_generated.xml", "saved_empty_trustees.xml",
                           "saved_quotas_only.xml"}) {
    const std::string saved = savedDocument(name);
    ASSERT_FALSE(saved.empty()) << name;
    EXPECT_EQ(rewrite(saved), saved) << name;
    EXPECT_TRUE(readDocument(saved).findings.empty()) << name;
  }
}

TEST(CanonicalWriter, SplitsCdataAtItsEndMarker) {
  BytesFd output("");
  {
    CanonicalWriter writer(output.fd());
    writer.begin();
    Entry entry;
    entry.kind = EntryKind::filter;
    entry.path = "/x]]>y";
    writer.write(entry);
    EXPECT_EQ(writer.finish(), 0);
  }
  lseek(output.fd(), 0, SEEK_SET);
  char buffer[512] = {};
  const ssize_t count = read(output.fd(), buffer, sizeof buffer - 1);
  EXPECT_EQ(std::string(buffer, static_cast<std::size_t>(count)),
            "<metadata>\n<trusteeInfo>\n<file><zid></zid><path><![CDATA[/x]]]]><![CDATA[>y]]>"
            "</path>\n<inheritedRightsFilter value=\"\"></inheritedRightsFilter>\n</file>\n"
            "</trusteeInfo>\n</metadata>\n");
}

// A legacy-form document (plain paths, one section per entry) comes out in the canonical form.
TEST(CanonicalWriter, NormalisesTheLegacyForm) {
  const std::string legacy =
      "<metadata>\n<trusteeInfo>\n<file>\n<zid></zid><path>/a&amp;b</path>\n"
      "<trustee><name>u.T.</name><id></id><rights value=\"RW\"><write/><read/></rights>"
      "</trustee>\n</file>\n</trusteeInfo>\n<trusteeInfo>\n<file>\n<zid></zid><path>/a&amp;b"
      "</path>\n<inheritedRightsFilter value=\"S\"><supervisor/></inheritedRightsFilter>\n"
      "</file>\n</trusteeInfo>\n</metadata>";
  EXPECT_EQ(rewrite(legacy),
            "<metadata>\n<trusteeInfo>\n<file><zid></zid><path><![CDATA[/a&b]]></path>\n"
            "<trustee><name>u.T.</name><id></id><rights value=\"RW\"><read/><write/></rights>"
            "</trustee>\n</file>\n</trusteeInfo>\n<trusteeInfo>\n<file><zid></zid><path>"
            "<![CDATA[/a&b]]></path>\n<inheritedRightsFilter value=\"S\"><supervisor/>"
            "</inheritedRightsFilter>\n</file>\n</trusteeInfo>\n</metadata>\n");
}

}  // namespace
