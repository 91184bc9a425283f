// The quillsim command's shared helpers: the sandbox, messages, argument handling.
#pragma once

#include "../core/state.h"

#include <string>
#include <vector>

namespace qscli {

using Args = std::vector<std::string>;

constexpr int kFail = 1;
constexpr int kUsage = 2;

/// The sandbox's real path.
extern std::string gRoot;

/// "quillsim: MSG" on standard error; returns the failure status.
int fail(const std::string &msg);
/// "usage: quillsim SYNTAX" on standard error; returns the usage status.
int usage(const char *syntax);
/// Pulls "--opt VALUE" out of args; false when the option is absent.
bool takeOption(Args &args, const std::string &opt, std::string &value);
/// Pulls a flag out of args; false when it is absent.
bool takeFlag(Args &args, const std::string &flag);
const qs::VolumeInfo *findVolume(const std::vector<qs::VolumeInfo> &vols, const std::string &n);

// The server's behaviour (settings.cpp).
int cmdFault(Args &a);
int cmdFastmode(Args &a);
int cmdLatency(Args &a);
int cmdRxl(Args &a);

// Working inside a sandbox (session.cpp).
int cmdLog(Args &a);
int cmdEnv(Args &a);
int cmdExec(Args &a);

}  // namespace qscli
