// The volume a report is made of, read once from a Metadata document: every path that has an
// entry (and every directory above one), each with its trustees, inherited rights filter and
// directory quota, and every user that holds an assignment or a user quota.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "model/entry.h"

inline constexpr std::uint32_t kNone = 0xffffffffu;

struct ReportUser {
  std::string name;  // the Arbor name, or the AD user's display name
  std::string id;    // the AD user's SID
  bool ad = false;
  bool hasQuota = false;
  std::string quota;  // quotaAmount text
};

struct Assignment {
  std::uint32_t user;
  RightsSet rights;
};

struct PathNode {
  std::string path;              // '/' separators; "/" is the volume's root
  std::uint32_t parent = kNone;  // the directory above (every one is a node); none for "/"
  std::vector<Assignment> trustees;
  bool hasFilter = false;
  RightsSet filter = 0;
  bool hasDirQuota = false;
  std::string dirQuota;
  // Whether the document holds an entry for this path (others are directories above one).
  bool hasEntry() const { return !trustees.empty() || hasFilter || hasDirQuota; }
};

struct ReportVolume {
  std::vector<ReportUser> users;
  std::vector<PathNode> nodes;  // in tree order: "/" first, a directory before what it holds
};

// Reads the document on `fd` into `volume`. Returns an empty string, or what stopped it: the
// reader's finding where the document is not well-formed ("FILE:LINE:COLUMN: message"), or a
// read error.
std::string collectVolume(int fd, const std::string &file, ReportVolume &volume);

// Tree order of two paths: component by component, bytes compared unsigned.
bool treeBefore(const std::string &a, const std::string &b);

// The path in the one form nodes use: a trailing '/' goes, "" is "/" (a directory quota's
// '\' separators are made '/' before, by comparablePath).
std::string nodePath(std::string path);

// Whether `path` is `prefix` or lies below it.
bool underPath(const std::string &path, const std::string &prefix);

// The label of a user for people: the Arbor name, or "SID (name)".
std::string userLabelOf(const ReportUser &user);
