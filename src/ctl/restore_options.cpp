#include "ctl/restore_options.h"

#include "cli/volume.h"
#include "ctl/output.h"

void defineRestoreOptions(CLI::App &command, CheckOptions &options) {
  command.add_option("VOL", options.volume, "the volume, as trovan restore names it")
      ->required()
      ->type_name("");
  command.add_option("DOC", options.document, "the Metadata document (- for standard input)")
      ->required()
      ->type_name("");
  command.add_option("-m,--meta", options.mask, "the kinds restored: letters t, u, d, a")
      ->type_name("MASK");
  command.add_option("-u,--usertype", options.userType, "only arbor or ad users")
      ->type_name("TYPE");
  command.add_option("-t,--tree", options.tree, "the tree name that replaces the saved one")
      ->type_name("TREE")
      ->each([&options](const std::string &) { options.treeGiven = true; });
  command.add_option("-f,--filter", options.filter, "only paths the expression matches")
      ->type_name("FILTER")
      ->each([&options](const std::string &) { options.filterGiven = true; });
  command.add_flag("-k,--no-gemel", options.noGemel, "requests without <gemelPath/>");
}

bool resolveRestoreOptions(const char *command, CheckOptions &options, RestoreSettings &settings) {
  if (const std::string problem = resolveCheckOptions(options, settings); !problem.empty()) {
    reportError(std::string(command) + ": " + problem);
    return false;
  }
  char mountPoint[kMountPointSize];
  if (findVolumeMountPoint(options.volume.c_str(), mountPoint) != 0) {
    reportError(std::string(command) + ": volume " + options.volume + " is not in the mount table");
    return false;
  }
  options.mountPoint = mountPoint;
  return true;
}
