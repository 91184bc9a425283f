// Info-file texts for the filter tests: well-formed sections, random pieces of them and
// damaged copies, and a sink for the filters' messages.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <iterator>
#include <random>
#include <string>

namespace infosamples {

inline std::string file(const std::string &path, const std::string &body = "") {
  return "<file>\n<zid>1</zid><path><![CDATA[" + path + "]]></path>\n" + body + "</file>\n";
}

inline std::string directory(const std::string &path) {
  return "<directory><zid>2</zid><path>" + path +
         "</path><spaceUsed>0</spaceUsed>"
         "<quotaAmount>10</quotaAmount></directory>\n";
}

inline const std::string kArborTrustee =
    "<trustee><name>.ann.org.tree</name><id></id><rights value=\"RF\"><read/><fileScan/>"
    "</rights></trustee>\n";
inline const std::string kAdTrustee =
    "<trustee type=\"adID\"><name>bob</name><id>S-1-5-21-1-2-3-1104</id><rights value=\"R\">"
    "<read/></rights></trustee>\n";

// Standard error goes to one in-memory file for the whole comparison; each run reads back what
// it wrote.
class StderrSink {
public:
  StderrSink() : sink_(memfd_create("stderr", 0)), saved_(dup(2)) { dup2(sink_, 2); }
  ~StderrSink() {
    dup2(saved_, 2);
    close(saved_);
    close(sink_);
  }
  std::string take() {
    std::string bytes;
    char chunk[4096];
    lseek(sink_, 0, SEEK_SET);
    for (ssize_t count; (count = read(sink_, chunk, sizeof chunk)) > 0;)
      bytes.append(chunk, static_cast<std::size_t>(count));
    ftruncate(sink_, 0);
    lseek(sink_, 0, SEEK_SET);
    return bytes;
  }

private:
  int sink_;
  int saved_;
};

inline const char *const kPieces[] = {
    "<file>\n",
    "</file>\n",
    "<file>",
    "</file>",
    "<zid>7</zid>",
    "<path><![CDATA[/test1/a]]></path>\n",
    "<path><![CDATA[/test10]]></path>\n",
    "<path><![CDATA[/test2]]></path>\n",
    "<path><![CDATA[/test1]]></path>",
    "<path>123456789/test1</path>",
    "<path>/test1</path>",
    "<path>\\test1\\x</path>",
    "<path>\\test2</path>",
    "<path>",
    "</path>",
    "<path></path>",
    "<![CDATA[",
    "]]>",
    "<trustee>",
    "</trustee>",
    "</trustee>\n",
    "<trustee type=\"adID\">",
    "<trustee  type=\"adID\">",
    "<name>n</name>",
    "<id>S-1-5</id>",
    "<rights value=\"R\"><read/></rights>",
    "<inheritedRightsFilter value=\"R\"><read/></inheritedRightsFilter>\n",
    "<user>",
    "</user>\n",
    "<user type=\"adID\">",
    "<quotaAmount>5</quotaAmount>",
    "<directory>",
    "</directory>\n",
    "<directory>",
    "</directory>",
    "\n",
    " ",
    "<",
    ">",
    "/",
    "\\",
    "t",
    "test1",
    "<trusteeInfo>\n",
    "</trusteeInfo>\n",
    "<dirInfo>\n",
    "<quillReply>\n",
    "<result value=\"0\">",
    "</result>\n",
};

inline std::string generate(std::mt19937 &random, int pieces) {
  std::string text;
  std::uniform_int_distribution<std::size_t> pick(0, std::size(kPieces) - 1);
  for (int i = 0; i < pieces; ++i)
    text += kPieces[pick(random)];
  return text;
}

// A well-formed trustee section, then damaged at random.
inline std::string mutate(std::mt19937 &random, std::string text) {
  std::uniform_int_distribution<int> edits(0, 6);
  const int count = edits(random);
  for (int i = 0; i < count && !text.empty(); ++i) {
    std::uniform_int_distribution<std::size_t> at(0, text.size() - 1);
    const std::size_t position = at(random);
    switch (random() % 4) {
    case 0: text.erase(position, 1 + random() % 12); break;
    case 1: text.insert(position, kPieces[random() % std::size(kPieces)]); break;
    case 2: text[position] = static_cast<char>(1 + random() % 255); break;
    default: {
      const std::size_t from = at(random);
      text.insert(position, text.substr(from, random() % 40));
    }
    }
  }
  return text;
}

inline std::string wellFormed(std::mt19937 &random) {
  static const char *const paths[] = {"/test1", "/test1/a", "/test10", "/test2", "/", "/test"};
  std::string text = "<quillReply>\n<result value=\"0\">\n</result>\n<trusteeInfo>\n";
  const int files = static_cast<int>(random() % 8);
  for (int i = 0; i < files; ++i) {
    std::string body;
    const int trustees = static_cast<int>(random() % 4);
    for (int t = 0; t < trustees; ++t)
      body += random() % 2 ? kArborTrustee : kAdTrustee;
    if (random() % 3 == 0)
      body += "<inheritedRightsFilter value=\"R\"><read/></inheritedRightsFilter>\n";
    text += file(paths[random() % std::size(paths)], body);
  }
  text += "</trusteeInfo>\n";
  for (int i = 0; i < files / 2; ++i)
    text += directory(std::string("\\test") + std::to_string(random() % 12));
  return text + "</quillReply>\n";
}

}  // namespace infosamples
