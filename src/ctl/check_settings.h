// The settings of `trovanctl check`: the document and the trovan restore options it is checked
// for, validated once.
#pragma once
#include <regex.h>

#include <string>

#include "model/entry.h"

struct CheckOptions {
  std::string document;  // a file name, or "-" for standard input
  std::string mask;      // -m
  std::string userType;  // -u: "", "arbor" or "ad"
  std::string tree;      // -t
  bool treeGiven = false;
  std::string filter;  // -f
  bool filterGiven = false;
  bool noGemel = false;  // -k
  bool rxlMode = false;  // -n
  std::string volume = "VOLUME";
  std::string mountPoint;  // default: /mnt/VOLUME
  bool json = false;
};

// What a restore with those options restores.
struct RestoreSettings {
  bool trustees = true;
  bool userQuotas = true;
  bool dirQuotas = true;
  bool arborUsers = true;
  bool adUsers = true;
  regex_t filter{};
  bool hasFilter = false;

  RestoreSettings() = default;
  RestoreSettings(const RestoreSettings &) = delete;
  RestoreSettings &operator=(const RestoreSettings &) = delete;
  ~RestoreSettings();
};

// Checks the options and fills `settings`. Returns an empty string, or what is wrong.
std::string resolveCheckOptions(CheckOptions &options, RestoreSettings &settings);

// Whether trovan restore with these settings sends a request for a well-formed entry (the
// mask, -u, -f, -n, and the "no quota" amount decide).
bool wouldRestore(const Entry &entry, const CheckOptions &options, const RestoreSettings &settings);
