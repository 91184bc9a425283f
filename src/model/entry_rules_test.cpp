#include "model/entry_rules.h"

#include <gtest/gtest.h>

#include "model/server_text.h"
#include "model_support.h"

namespace {

using Texts = std::vector<std::string>;

// "LINE:COLUMN code: message" of the rules' findings for every entry of a document.
Texts ruleFindings(std::string_view document, bool rxlMode = false) {
  RuleSettings settings;
  settings.mountPoint = "/mnt/VOL1";
  settings.rxlMode = rxlMode;
  Texts texts;
  for (const Entry &entry : readDocument(document).entries)
    checkEntryRules(entry, settings, [&texts](Finding finding) {
      texts.push_back(std::to_string(finding.at.line) + ":" + std::to_string(finding.at.column) +
                      " " + finding.code + ": " + finding.message);
    });
  return texts;
}

std::string trusteeAt(std::string_view path, std::string_view name = "u.T.") {
  return "<metadata><trusteeInfo><file><path>" + std::string(path) + "</path><trustee><name>" +
         std::string(name) + "</name></trustee></file></trusteeInfo></metadata>";
}

TEST(ServerText, DecodesNamedAndNumericReferencesAndKeepsABareAmpersand) {
  EXPECT_EQ(decodeAsServer("a&amp;b&lt;c&#38;d&#x41;&e"), "a&b<c&dA&e");
  EXPECT_EQ(decodeAsServer("x&;y&#0;"), "x&;y&#0;");
}

TEST(ServerText, MarkupIsATagClosedWithinTheText) {
  EXPECT_TRUE(formsMarkup("x</name><addTrustee>"));
  EXPECT_TRUE(formsMarkup("a<b>"));
  EXPECT_TRUE(formsMarkup("<!-- x -->"));
  EXPECT_FALSE(formsMarkup("l<t"));
  EXPECT_FALSE(formsMarkup("a < b > c"));
  EXPECT_FALSE(formsMarkup("a>b<"));
}

TEST(ServerText, AmpersandsTrovanDecodingNeverGetsPast) {
  EXPECT_FALSE(hasUndecodableAmpersand("a&amp;b&lt;&gt;&apos;&quot;"));
  EXPECT_TRUE(hasUndecodableAmpersand("a&b"));
  EXPECT_TRUE(hasUndecodableAmpersand("a&#38;b"));
  EXPECT_TRUE(hasUndecodableAmpersand("a&AMP;"));
}

TEST(EntryRules, APathWithoutItsLeadingSlashLeavesTheVolume) {
  EXPECT_EQ(ruleFindings(trusteeAt("0/secret")),
            Texts{"1:30 path-outside-volume: path \"0/secret\" does not start with \"/\": after "
                  "the mount point it names /mnt/VOL10/secret"});
}

TEST(EntryRules, DotDotComponents) {
  EXPECT_EQ(ruleFindings(trusteeAt("/a/../../etc")),
            Texts{"1:30 path-outside-volume: path \"/a/../../etc\" has a \"..\" component: it "
                  "can name a file outside the volume"});
  EXPECT_TRUE(ruleFindings(trusteeAt("/a/..b/c..")).empty());
  EXPECT_EQ(ruleFindings("<metadata><dirInfo><directory><path>\\q\\..\\..\\x</path>"
                         "<quotaAmount>1</quotaAmount></directory></dirInfo></metadata>"),
            Texts{"1:31 path-outside-volume: path \"\\q\\..\\..\\x\" has a \"..\" component: it "
                  "can name a file outside the volume"});
  EXPECT_EQ(ruleFindings("<metadata><dirInfo><directory><path>q</path>"
                         "<quotaAmount>1</quotaAmount></directory></dirInfo></metadata>"),
            Texts{"1:31 path-outside-volume: path \"q\" does not start with \"\\\": after the "
                  "mount point it names /mnt/VOL1q"});
}

// Dots stop the scan of a path one at a time: what follows a single dot is still read.
TEST(EntryRules, DotsInAPathDoNotEndItsScan) {
  EXPECT_EQ(ruleFindings(trusteeAt("/a.b/..")),
            Texts{"1:30 path-outside-volume: path \"/a.b/..\" has a \"..\" component: it can "
                  "name a file outside the volume"});
  EXPECT_TRUE(ruleFindings(trusteeAt("/a.b.c/d.")).empty());
  EXPECT_EQ(ruleFindings(trusteeAt("<![CDATA[/a.b&amp;c]]>")),
            Texts{"1:30 value-read-otherwise: <path> text \"/a.b&amp;c\" goes into the request as "
                  "it stands, and the file system reads it as \"/a.b&c\""});
  EXPECT_EQ(ruleFindings(trusteeAt("/a", "<![CDATA[u.T.</name>]]>")),
            Texts{"1:45 markup-in-value: <name> text \"u.T.</name>\" would put markup into "
                  "trovan's request"});
}

TEST(EntryRules, MarkupCarriedIntoTheRequest) {
  EXPECT_EQ(ruleFindings(trusteeAt("/a", "<![CDATA[x</name><addTrustee><name>y]]>")),
            Texts{"1:45 markup-in-value: <name> text \"x</name><addTrustee><name>y\" would put "
                  "markup into trovan's request"});
  // As trovan save writes them, a bare '&' or '<' in a CDATA path is no finding.
  EXPECT_TRUE(ruleFindings(trusteeAt("<![CDATA[/docs/l<t]]>")).empty());
  EXPECT_TRUE(ruleFindings(trusteeAt("<![CDATA[/docs/a&b]]>")).empty());
  // Entity-encoded text cannot carry markup.
  EXPECT_TRUE(ruleFindings(trusteeAt("/a&lt;b&gt;")).empty());
}

TEST(EntryRules, AReferenceInsideCdataIsDecodedByTheFileSystem) {
  EXPECT_EQ(ruleFindings(trusteeAt("<![CDATA[/a&amp;b]]>")),
            Texts{"1:30 value-read-otherwise: <path> text \"/a&amp;b\" goes into the request as "
                  "it stands, and the file system reads it as \"/a&b\""});
}

TEST(EntryRules, RxlModeAmpersands) {
  EXPECT_EQ(ruleFindings(trusteeAt("<![CDATA[/a&b]]>"), true),
            Texts{"1:30 rxl-never-returns: path text \"/a&b\" holds an '&' that trovan restore "
                  "-n decodes forever: the restore would never return"});
  EXPECT_EQ(ruleFindings(trusteeAt("/a&#38;b"), true).size(), 1u);
  EXPECT_TRUE(ruleFindings(trusteeAt("/a&amp;b"), true).empty());
  EXPECT_EQ(ruleFindings("<metadata><trusteeInfo><file><path>/a</path><trustee type=\"adID\">"
                         "<id>S-1</id></trustee></file></trusteeInfo></metadata>",
                         true),
            Texts{"1:45 rxl-ad-trustee: AD trustee: trovan restore -n has no console command for "
                  "it and writes its request on standard input, where nothing answers"});
}

// A trustee of an Arbor user or a filter whose texts are plain is passed at once; each text
// that is not plain leaves that way for the full rules.
TEST(EntryRules, EachTextThatIsNotPlainGetsTheFullRules) {
  const auto filterAt = [](std::string_view path) {
    return "<metadata><trusteeInfo><file><path>" + std::string(path) +
           "</path><inheritedRightsFilter><read/></inheritedRightsFilter></file></trusteeInfo>"
           "</metadata>";
  };
  EXPECT_TRUE(ruleFindings(filterAt("/a.b/c")).empty());
  EXPECT_EQ(ruleFindings(filterAt("/a/../b")),
            Texts{"1:30 path-outside-volume: path \"/a/../b\" has a \"..\" component: it can "
                  "name a file outside the volume"});
  EXPECT_EQ(ruleFindings(filterAt("")),
            Texts{"1:30 path-outside-volume: empty path: the inherited rights filter would apply "
                  "to the mount point /mnt/VOL1 itself"});
  // A name that is not its own raw text, or that holds an '&' as it stands.
  EXPECT_TRUE(ruleFindings(trusteeAt("/a", "u&amp;v.T.")).empty());
  EXPECT_EQ(ruleFindings(trusteeAt("/a", "<![CDATA[u&lt;v]]>")),
            Texts{"1:45 value-read-otherwise: <name> text \"u&lt;v\" goes into the request as it "
                  "stands, and the file system reads it as \"u<v\""});
  // An <id> over its limit beside a plain path and name.
  EXPECT_EQ(ruleFindings("<metadata><trusteeInfo><file><path>/a</path><trustee><name>u.T.</name>"
                         "<id>" +
                         std::string(190, 'i') + "</id></trustee></file></trusteeInfo></metadata>"),
            Texts{"1:45 over-limit: <id> text of 190 bytes, over trovan restore's limit of 189: it "
                  "sends nothing for this trustee"});
  // An AD trustee's text is its <id>.
  EXPECT_EQ(ruleFindings("<metadata><trusteeInfo><file><path>/a</path><trustee type=\"adID\">"
                         "<id><![CDATA[S&amp;1]]></id></trustee></file></trusteeInfo></metadata>"),
            Texts{"1:45 value-read-otherwise: <id> text \"S&amp;1\" goes into the request as it "
                  "stands, and the file system reads it as \"S&1\""});
}

TEST(EntryRules, TrovansFieldLimits) {
  EXPECT_EQ(ruleFindings(trusteeAt("/" + std::string(4086, 'p'))),
            Texts{"1:30 over-limit: the mount point and <path> text make 4096 bytes, over trovan "
                  "restore's limit of 4095: it sends nothing for this trustee"});
  EXPECT_TRUE(ruleFindings(trusteeAt("/" + std::string(4085, 'p'))).empty());
  EXPECT_EQ(ruleFindings(trusteeAt("/a", std::string(1024, 'n'))),
            Texts{"1:45 over-limit: <name> text of 1024 bytes, over trovan restore's limit of "
                  "1023: it sends nothing for this trustee"});
  EXPECT_EQ(ruleFindings("<metadata><dirInfo><directory><path>\\" + std::string(4086, 'd') +
                         "</path><quotaAmount>1</quotaAmount></directory></dirInfo></metadata>"),
            Texts{"1:31 restore-aborts: the mount point and this path make a file name of 4096 "
                  "bytes, over 4,095: trovan restore would end the process here"});
}

}  // namespace
