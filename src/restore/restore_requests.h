// The requests of a restore, built in requestBuffer by the one request builder: the walkers of
// trovan restore and trovanctl apply both make them here, so that the two send the same bytes.
// Each returns the request's length; the texts go in as they stand.
#pragma once
#include <cstddef>
#include <string_view>

// addTrustee for an Arbor user by name, or for an AD user by its SID (`id`, when isAd).
std::size_t buildAddTrustee(std::string_view fullPath, std::string_view id, std::string_view name,
                            std::string_view rights, bool isAd);
std::size_t buildInheritedRightsFilter(std::string_view fullPath, std::string_view irf);
// userSpaceRestrictions: a user quota of `volume` (sent to the volume command file).
std::size_t buildUserQuota(std::string_view volume, std::string_view userName,
                           std::string_view quota, bool isAd);
std::size_t buildDirQuota(std::string_view fileName, std::string_view quota);

// The element a reply to each request holds.
inline constexpr std::string_view kAddTrusteeReply = "<addTrustee>";
inline constexpr std::string_view kInheritedRightsFilterReply = "<modifyInheritedRightsFilter>";
inline constexpr std::string_view kUserQuotaReply = "<userSpaceRestrictions>";
inline constexpr std::string_view kDirQuotaReply = "<addQuota>";
