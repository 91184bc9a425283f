#include "restore/restore_requests.h"

#include "channel/admin_channel.h"
#include "channel/request_builder.h"

std::size_t buildAddTrustee(std::string_view fullPath, std::string_view id, std::string_view name,
                            std::string_view rights, bool isAd) {
  if (isAd)
    return buildRequest({kFileRequestOpen, "<trustees><addTrustee type=\"adID\"><userID>", id,
                         "</userID><rights>", rights, "</rights><fileName>", fullPath,
                         "</fileName>", gemelPiece(), "<symLink/></addTrustee></trustees>",
                         kFileRequestClose});
  return buildRequest({kFileRequestOpen, "<trustees><addTrustee><name>", name, "</name><rights>",
                       rights, "</rights><fileName>", fullPath, "</fileName>", gemelPiece(),
                       "<symLink/></addTrustee></trustees>", kFileRequestClose});
}

std::size_t buildInheritedRightsFilter(std::string_view fullPath, std::string_view irf) {
  return buildRequest({kFileRequestOpen,
                       "<trustees><modifyInheritedRightsFilter><inheritedRightsFilter>", irf,
                       "</inheritedRightsFilter><fileName>", fullPath, "</fileName>", gemelPiece(),
                       "</modifyInheritedRightsFilter></trustees>", kFileRequestClose});
}

std::size_t buildUserQuota(std::string_view volume, std::string_view userName,
                           std::string_view quota, bool isAd) {
  return buildRequest({kVolumeRequestOpen, "<userSpaceRestrictions>",
                       isAd ? "<set type=\"adID\">" : "<set>", "<volumeName>", volume,
                       "</volumeName><userName>", userName, "</userName><quota>", quota, "</quota>",
                       gemelPiece(), "</set></userSpaceRestrictions>", kVolumeRequestClose});
}

std::size_t buildDirQuota(std::string_view fileName, std::string_view quota) {
  return buildRequest({kFileRequestOpen, "<directoryQuota><addQuota><fileName>", fileName,
                       "</fileName>", gemelPiece(), "<quotaAmount>", quota,
                       "</quotaAmount></addQuota></directoryQuota>", kFileRequestClose});
}
