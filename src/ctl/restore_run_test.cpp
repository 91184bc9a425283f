#include "ctl/restore_run.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "document/completion_codes.h"
#include "model_support.h"

namespace {

using Texts = std::vector<std::string>;

// A request's parts as one line.
std::string partsText(const SentRequestView &request) {
  return std::string(requestName(request.kind)) + (request.ad ? " ad" : "") +
         (request.gemel ? " gemel" : "") + " file=" + std::string(request.fileName) +
         " user=" + std::string(request.user) + " volume=" + std::string(request.volume) +
         " amount=" + std::string(request.amount) + " rights=" + rightsLetters(request.rights) +
         (request.unknownRight ? " unknown" : "");
}

// Writes down what a run hands over: "bytes: ..." for a request as its bytes, "parts: ..."
// for one read back into its parts.
class Recorder : public RequestSink {
public:
  explicit Recorder(bool parts) : parts_(parts) {}
  void request(std::string_view bytes, RestorePlace) override {
    texts.push_back("bytes: " + std::string(bytes));
  }
  bool takesParts() const override { return parts_; }
  void readRequest(const SentRequestView &request, RestorePlace) override {
    texts.push_back("parts: " + partsText(request));
  }
  Texts texts;

private:
  bool parts_;
};

struct RunResult {
  RestoreOutcome outcome;
  Texts texts;
};

RunResult run(std::string_view document, bool parts) {
  BytesFd input(document);
  CheckOptions options;
  options.volume = "V";
  options.mountPoint = "/mnt/V";
  RestoreSettings settings;
  EXPECT_EQ(resolveCheckOptions(options, settings), "");
  Recorder recorder(parts);
  RunResult result;
  result.outcome = runRestore(input.fd(), options, settings, recorder);
  result.texts = recorder.texts;
  return result;
}

constexpr char kEveryKind[] =
    "<metadata>\n<trusteeInfo>\n"
    "<file><path><![CDATA[/a&b]]></path>"
    "<trustee><name>u.T.</name><rights><read/><write/></rights></trustee>"
    "<trustee type=\"adID\"><name>Ann</name><id>S-1-5-21</id><rights><read/></rights></trustee>"
    "<inheritedRightsFilter><supervisor/></inheritedRightsFilter></file>\n"
    "</trusteeInfo>\n<userInfo>\n"
    "<user><name>u.T.</name><quotaAmount>2000</quotaAmount></user>\n"
    "</userInfo>\n<dirInfo>\n"
    "<directory><path>\\q\\r</path><quotaAmount>77</quotaAmount></directory>\n"
    "</dirInfo>\n</metadata>\n";

TEST(RestoreRun, RequestsOfTrovansFormsComeAsTheirParts) {
  const RunResult result = run(kEveryKind, true);
  EXPECT_TRUE(result.outcome.ran);
  EXPECT_EQ(result.outcome.status, 0);
  EXPECT_EQ(result.texts,
            (Texts{"parts: addTrustee gemel file=/mnt/V/a&b user=u.T. volume= amount= rights=rw",
                   "parts: addTrustee ad gemel file=/mnt/V/a&b user=S-1-5-21 volume= amount= "
                   "rights=r",
                   "parts: modifyInheritedRightsFilter gemel file=/mnt/V/a&b user= volume= "
                   "amount= rights=s",
                   "parts: userSpaceRestrictions gemel file= user=u.T. volume=V amount=2000 "
                   "rights=",
                   "parts: addQuota gemel file=/mnt/V/q/r user= volume= amount=77 rights="}));
}

TEST(RestoreRun, ASinkThatTakesBytesGetsTheSameRequestsAsBytes) {
  const RunResult bytes = run(kEveryKind, false);
  const RunResult parts = run(kEveryKind, true);
  ASSERT_EQ(bytes.texts.size(), parts.texts.size());
  for (std::size_t at = 0; at < bytes.texts.size(); ++at) {
    ASSERT_TRUE(bytes.texts[at].starts_with("bytes: "));
    SentRequest request;
    ASSERT_TRUE(readSentRequest(std::string_view(bytes.texts[at]).substr(7), request));
    EXPECT_EQ("parts: " + partsText(viewOf(request)), parts.texts[at]);
  }
}

TEST(RestoreRun, ARequestOfNoFormComesAsItsBytes) {
  // A CDATA name goes into the request as it stands: here it closes the name early.
  const RunResult result = run("<metadata><trusteeInfo><file><path>/a</path><trustee><name>"
                               "<![CDATA[u</name><x>]]></name><rights><read/></rights></trustee>"
                               "</file></trusteeInfo></metadata>\n",
                               true);
  EXPECT_EQ(result.texts,
            Texts{"bytes: <virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>"
                  "<trustees><addTrustee><name>u</name><x></name><rights><read/></rights>"
                  "<fileName>/mnt/V/a</fileName><gemelPath/><symLink/></addTrustee></trustees>"
                  "</fileRequest>"});
}

TEST(RestoreRun, ARequestOfNoFormIsAnsweredAsASuccessOfItsKind) {
  // The user quota's request is none of trovan's forms; the run takes its reply as a success
  // and goes on with the directory quota, to the end.
  const RunResult result = run("<metadata><userInfo><user><name><![CDATA[u</userName>]]></name>"
                               "<quotaAmount>5</quotaAmount></user></userInfo><dirInfo><directory>"
                               "<path>\\q</path><quotaAmount>7</quotaAmount></directory></dirInfo>"
                               "</metadata>\n",
                               true);
  EXPECT_TRUE(result.outcome.ran);
  EXPECT_EQ(result.outcome.status, 0);
  ASSERT_EQ(result.texts.size(), 2u);
  EXPECT_TRUE(result.texts[0].starts_with("bytes: ")) << result.texts[0];
  EXPECT_EQ(result.texts[1], "parts: addQuota gemel file=/mnt/V/q user= volume= amount=7 rights=");
}

TEST(RestoreRun, ANegativeStatusComesBackWhole) {
  const RunResult result = run("<metadata><trusteeInfo><file><path>/a</path>", true);
  EXPECT_TRUE(result.outcome.ran);
  EXPECT_EQ(result.outcome.status, kEndOfInput);
  EXPECT_TRUE(result.texts.empty());
}

TEST(RestoreRun, ManyRequestsComeWholeAndInOrderOverManyBlocks) {
  // About 20,000 requests: several times what the child can hand over before the parent reads.
  std::string document = "<metadata><trusteeInfo>";
  constexpr int kFiles = 20000;
  for (int file = 0; file < kFiles; ++file)
    document += "<file><path>/d/" + std::to_string(file) +
                "</path><trustee><name>u.T.</name><rights><read/></rights></trustee></file>";
  document += "</trusteeInfo></metadata>\n";
  for (const bool parts : {true, false}) {
    const RunResult result = run(document, parts);
    EXPECT_TRUE(result.outcome.ran);
    EXPECT_EQ(result.outcome.status, 0);
    ASSERT_EQ(result.texts.size(), static_cast<std::size_t>(kFiles));
    for (int file = 0; file < kFiles; ++file) {
      const std::string name = "/mnt/V/d/" + std::to_string(file);
      const std::string &text = result.texts[file];
      ASSERT_TRUE(parts ? text == "parts: addTrustee gemel file=" + name +
                                      " user=u.T. volume= amount= rights=r"
                        : text.find("<fileName>" + name + "</fileName>") != std::string::npos)
          << text;
    }
  }
}

}  // namespace
