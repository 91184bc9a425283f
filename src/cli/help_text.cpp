// The usage, help and version texts, exactly as administrators and their scripts know them,
// odd spellings and trailing blanks included.
#include "cli/help_text.h"

#include <cstdio>

namespace {

constexpr char kHelpBody[] =
    "\n"
    "The action to be taken is indicated by the first argument\n"
    "   save        : Save the indicated metadata to stdout\n"
    "   restore     : Restore the indicated metadata from stdin\n"
    "\n"
    "The second argument specifies the QUILL volume name to be saved or restored.\n"
    "\n"
    "The third argument specifies the path to a file.  This is the\n"
    "   file to be created on save, or the file to be restored from on \n"
    "   restore.\n"
    "\n"
    "For Gemel volumes, trovan restore on primary volume will reflect restore on shadow volume by "
    "default\n"
    "OPTIONS\n"
    "   -h, --help           Display the help screen.\n"
    "   -v, --version        Displays the program version information and exits.\n"
    "SOPTIONS\n"
    "   -m, --meta=MASK      The types of metadata to be saved.\n"
    "                        If this option is not used, then all the\n"
    "                        types of metadata and all the trustees are included by default.\n"
    "   -n, --rxl            Get trustees from existing RXL trustee file.\n"
    "   -p, --path           Specifies the relative path with respect to the\n"
    "                        volume mount point on the Halden server,\n"
    "                        for which the metadata information is required.\n"
    "   -u, --usertype=TYPE  Saves the metadata based on Arbor or AD user.\n"
    "                        If this option is not used, both Arbor and AD\n"
    "                        users are included by default.\n"
    "ROPTIONS\n"
    "   -a, --actions        Display all actions taken.\n"
    "   -f, --filter=FILTER  Restore metadata only on files that pass the filter.\n"
    "   -m, --meta=MASK      The types of metadata to be restored.\n"
    "                        If this option is not used, then all the\n"
    "                        types of metadata and all the trustees are retained by default.\n"
    "   -u, --usertype=TYPE  Restores metadata based on Arbor or AD user.\n"
    "                        If this option is not used, both Arbor and AD\n"
    "                        users are included by default.\n"
    "   -t, --tree=treename  If specified this overrides the saved directory\n"
    "                        tree name.\n"
    "   -n, --rxl            Build a new RXL trustee file from trustee data.\n"
    "                        This will automatically disable restoration of\n"
    "                        quotas.\n"
    "   -w, --inputfilefromkestrel  If the input file is generated \n"
    "                               by TRUSTEE.KXM on Kestrel server.\n"
    "   -r, --relativepathprefix    Specifies the reference location of the Halden server\n"
    "                               for the relative path, if  the input file is generated\n"
    "                               by TRUSTEE.KXM on Kestrel server with /R switch.\n"
    "                               TRUSTEE.KXM  /R option puts relative path\n"
    "                               for file in its output.\n"
    "   -k, --no-gemel         Option to perform operations only on the specified volume\n"
    "FILTER         The filter is a regular expression that will be applied to\n"
    "               the entire path (starting at the mount point).\n"
    "MASK           The mask is a string of characters with each character\n"
    "               representing a type of metadata:\n"
    "                  t    Trustees\n"
    "                  u    User quotas\n"
    "                  d    Directory quotas\n"
    "                  a    All metadata\n"
    "                  r    Remove Invalid trustee\n"
    "                       This works only for save and not for the\n"
    "                       restore operations.\n"
    "TYPE           String representing user type as Arbor or ad\n"
    "                  arbor  For Arbor Users\n"
    "                  ad    For AD Users\n"
    "\n"
    "Example:  trovan save vol1 -m ud >/backup/volquotas\n"
    "\n"
    "          This command will save the quota data for a volume called vol1\n"
    "          in the file /backup/volquotas.\n"
    "\n"
    "          trovan save vol1 -m t -p /test1 >/backup/trustees\n"
    "\n"
    "          This command will save the trustee data for all files in\n"
    "          directory test1 on volume vol1 in the file /backup/trustees.\n"
    "\n"
    "          trovan restore vol1 -m u </backup/volquotas\n"
    "\n"
    "          This command will restore the user quota data from the file\n"
    "          /backup/volquotas.\n"
    "\n"
    "          trovan restore vol1 -m t -r dir1/dir2 -w -t TREENAME </backup/trustees\n"
    "\n"
    "          This command restores the trustee data from the file /backup/trustees.\n"
    "\n"
    "          trovan save vol1 -m a -u ad >/backup/adtrustees\n"
    "\n"
    "          This command will save data only for AD users \n"
    "\n"
    "          trovan restore vol1 -m t -u arbor </backup/trustees\n"
    "\n"
    "          This command will restore the trustee data only for Arbor users\n"
    "\n"
    "          trovan restore PRI_VOL -m a </backup/metadata -k\n"
    "\n"
    "          This command will restore all metadata from the file /backup/metadata on the "
    "specified volume\n"
    "          Use this option -k if want to restote metadata only on the primary volume of a "
    "Gemel pair \n"
    "          trovan restore PRI_VOL -m a </backup/metadata\n"
    "\n"
    "          This command will restore the metadata from the file /backup/metadata\n"
    "          on the primary volume\n"
    "\n"
    "          and reflects on the Shadow Volume if PRI_VOL is the primary volume of a Gemel pair "
    "\n"
    "          If you restore metadata on the shadow volume of Gemel then it will not reflect on "
    "the \n"
    "          primary volume\n";

constexpr const char *kVersion = "1.04";

}  // namespace

void printUsage(const char *programName) {
  std::puts("\nTHIS UTILITY WILL ONLY WORK WITH FILES IN THE QUILL FILE SYSTEM\n");
  std::printf("Usage: %s [OPTIONS]\n", programName);
  std::printf("       %s save volume [SOPTIONS]\n", programName);
  std::printf("       %s restore volume [ROPTIONS]\n", programName);
  std::fputs(kHelpBody, stdout);
}

void printVersion() {
  std::printf("trovan (QUILL) %s\n", kVersion);
  std::puts("Copyright (C) 2026 the trovan developers. Free software under the MIT License.");
}
