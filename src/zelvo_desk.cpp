// zelvo-desk COMMAND [FILE] ...
#include <CLI/CLI.hpp>
#include <cstdio>
#include <new>

#include "base/failures.h"
#include "base/platform.h"
#include "desk/run.h"

namespace zelvo {

namespace {

using Command = std::function<int()>;

// Every command has the input file as its argument.
CLI::App* add_command(CLI::App& app, const char* name, const char* help, std::string& path) {
  CLI::App* command = app.add_subcommand(name, help);
  path = INPUT_FILE;
  command->add_option("file", path, "Input file")->capture_default_str();
  return command;
}

void add_run(CLI::App& app, RunOptions& o, Command& chosen) {
  CLI::App* c = add_command(app, "run", "Analyse all stages: nine files and results.json", o.path);
  c->add_option("-d,--folder", o.folder, "Folder of the results; that of the input without it");
  const std::map<std::string, Buckling> kinds = {
      {"none", Buckling::NONE}, {"history", Buckling::HISTORY}, {"all", Buckling::ALL}};
  c->add_option("--buckling", o.buckling,
                "Buckling checks of each stage; without it all where the input has 'buckle'")
      ->transform(CLI::CheckedTransformer(kinds));
  c->add_flag("--strict", o.strict, "Warnings are errors");
  c->add_flag("--json", o.json, "A summary as JSON on standard output");
  c->callback([&] { chosen = [&] { return run_command(o); }; });
}

int run_desk(int argc, char** argv) {
  CLI::App app("Steel tub girders during bridge construction: check, run, report, export.");
  app.name("zelvo-desk");
  app.set_version_flag("--version", "zelvo-desk " ZELVO_VERSION);
  app.require_subcommand(1);
  RunOptions run;
  Command chosen;
  add_run(app, run, chosen);
  CLI11_PARSE(app, argc, argv);
  return chosen();
}

}  // namespace

}  // namespace zelvo

int main(int argc, char** argv) {
  using namespace zelvo;
  keep_freed_memory();
  keep_standard_streams();
  try {
    return run_desk(argc, argv);
  } catch (const FileFailure& f) {
    std::fprintf(stderr, "zelvo-desk: %s: %s\n", f.name.c_str(), f.reason.c_str());
    return EXIT_FILE;
  } catch (const MemoryFailure& f) {
    std::fprintf(stderr, "zelvo-desk: no memory for %s: %.3g MB asked for\n", f.what,
                 f.bytes * 1.0e-6);
    return EXIT_NO_MEMORY;
  } catch (const std::bad_alloc&) {
    std::fputs("zelvo-desk: no memory for a work list\n", stderr);
    return EXIT_NO_MEMORY;
  }
}
