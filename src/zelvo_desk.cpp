// zelvo-desk COMMAND [FILE] ...
#include <CLI/CLI.hpp>

#include "desk/job.h"

int main(int argc, char** argv) {
  CLI::App app("Steel tub girders during bridge construction: check, run, report, export");
  app.name("zelvo-desk");
  app.set_version_flag("--version", "zelvo-desk " ZELVO_VERSION);
  app.require_subcommand(1);
  CLI11_PARSE(app, argc, argv);
  return 0;
}
