// The volume a report is made of, read once from a Metadata document: every path that has an
// entry (and every directory above one), each with its trustees, inherited rights filter and
// directory quota, and every user that holds an assignment or a user quota. Texts are kept
// once each in the volume's pool; nodes and users refer to them.
#pragma once
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/entry.h"

inline constexpr std::uint32_t kNone = 0xffffffffu;

// Texts kept for the volume's lifetime, in large blocks: a view of a kept text stays valid.
class TextPool {
public:
  std::string_view keep(std::string_view text);

private:
  std::vector<std::unique_ptr<char[]>> blocks_;
  char *free_ = nullptr;
  std::size_t left_ = 0;
};

struct ReportUser {
  std::string_view name;  // the Arbor name, or the AD user's display name
  std::string_view id;    // the AD user's SID
  bool ad = false;
  bool hasQuota = false;
  std::string_view quota;  // quotaAmount text
};

struct Assignment {
  std::uint32_t user;
  RightsSet rights;
};

struct PathNode {
  std::string_view path;            // '/' separators; "/" is the volume's root
  std::uint32_t parent = kNone;     // the directory above (every one is a node); none for "/"
  std::uint32_t trusteesBegin = 0;  // its trustees: assignments [begin, end) of the volume
  std::uint32_t trusteesEnd = 0;
  RightsSet filter = 0;
  bool hasFilter = false;
  bool hasDirQuota = false;
  std::string_view dirQuota;
  bool hasTrustees() const { return trusteesEnd != trusteesBegin; }
  // Whether the document holds an entry for this path (others are directories above one).
  bool hasEntry() const { return hasTrustees() || hasFilter || hasDirQuota; }
};

struct ReportVolume {
  std::vector<ReportUser> users;
  std::vector<PathNode> nodes;  // in tree order: "/" first, a directory before what it holds
  std::vector<Assignment> assignments;  // node by node, each node's in document order
  TextPool texts;

  std::span<const Assignment> trusteesOf(const PathNode &node) const {
    return {assignments.data() + node.trusteesBegin, node.trusteesEnd - node.trusteesBegin};
  }
};

// Reads the document on `fd` into `volume`. Returns an empty string, or what stopped it: the
// reader's finding where the document is not well-formed ("FILE:LINE:COLUMN: message"), or a
// read error.
std::string collectVolume(int fd, const std::string &file, ReportVolume &volume);

// Tree order of two paths: component by component, bytes compared unsigned.
bool treeBefore(std::string_view a, std::string_view b);

// The path in the one form nodes use: a trailing '/' goes, "" is "/" (a directory quota's
// '\' separators are made '/' before, by comparablePath).
std::string nodePath(std::string path);

// Whether `path` is `prefix` or lies below it.
bool underPath(std::string_view path, std::string_view prefix);

// The label of a user for people: the Arbor name, or "SID (name)".
std::string userLabelOf(const ReportUser &user);
