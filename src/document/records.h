// The Metadata document: the record forms this system writes itself and the limits of the
// fields its readers fill. Texts are written exactly as given, without escaping.
#pragma once
#include <cstddef>

inline constexpr char kDocumentOpen[] = "<metadata>\n";
inline constexpr char kDocumentClose[] = "</metadata>\n";
inline constexpr char kTrusteeSectionOpen[] = "<trusteeInfo>\n";
inline constexpr char kTrusteeSectionClose[] = "</trusteeInfo>\n";

// One file with one trustee: path, name, id, letters, elements.
inline constexpr char kTrusteeFileRecord[] =
    "<file>\n<zid></zid><path>%s</path>\n"
    "<trustee><name>%s</name><id>%s</id><rights value=\"%s\">%s</rights></trustee>\n</file>\n";
// One file with its inherited rights filter: path, letters, elements.
inline constexpr char kFilterFileRecord[] =
    "<file>\n<zid></zid><path>%s</path>\n"
    "<inheritedRightsFilter value=\"%s\">%s</inheritedRightsFilter>\n</file>\n";
// A whole userInfo section with one user: quota, name.
inline constexpr char kUserQuotaSection[] =
    "<userInfo>\n<user><id></id><spaceUsed></spaceUsed><quotaAmount>%s</quotaAmount>\n"
    "<name>%s</name>\n"
    "<idNotFound><time><utc>0</utc><string>Invalid UTC Time</string></time>"
    "<numberOfTimes>0</numberOfTimes></idNotFound></user>\n</userInfo>\n";
// A whole dirInfo section with one directory: path, space used, quota.
inline constexpr char kDirQuotaSection[] =
    "<dirInfo>\n<directory><zid></zid><path>%s</path><spaceUsed>%s</spaceUsed>"
    "<quotaAmount>%s</quotaAmount></directory>\n</dirInfo>\n";

// A quotaAmount of exactly this text means "no quota": restore sends nothing for it.
inline constexpr char kNoQuota[] = "9223372036854775807";

// Sizes of the readers' fields, terminator included.
inline constexpr std::size_t kTagNameSize = 64;      // element name with its type="adID" marker
inline constexpr std::size_t kQuotaTextSize = 64;    // quotaAmount
inline constexpr std::size_t kNameTextSize = 1024;   // trustee or user name
inline constexpr std::size_t kIdTextSize = 190;      // AD identifier
inline constexpr std::size_t kPathTextSize = 4096;   // path, and mount point + path
inline constexpr std::size_t kRightsListSize = 512;  // run of right elements

// The one marker attribute the reader keeps as part of an element's name.
inline constexpr char kAdTrusteeElement[] = "trustee type=\"adID\"";
inline constexpr char kAdUserElement[] = "user type=\"adID\"";
