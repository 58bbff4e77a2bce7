// zelvo-desk COMMAND [FILE] ...
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <map>
#include <new>

#include "base/failures.h"
#include "base/platform.h"
#include "desk/check.h"
#include "desk/diff.h"
#include "desk/exports.h"
#include "desk/new.h"
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

void add_check(CLI::App& app, CheckOptions& o, Command& chosen) {
  CLI::App* c = add_command(app, "check", "What an input says, and what is wrong with it", o.path);
  c->add_flag("--strict", o.strict, "Warnings are errors");
  c->add_flag("--json", o.json, "Findings as JSON");
  c->add_option("--draw", o.draw, "SVG file for section and plan");
  c->callback([&] { chosen = [&] { return check_command(o); }; });
}

void add_buckling(CLI::App& command, RunOptions& o) {
  const std::map<std::string, Buckling> kinds = {
      {"none", Buckling::NONE}, {"history", Buckling::HISTORY}, {"all", Buckling::ALL}};
  command
      .add_option("--buckling", o.buckling,
                  "Buckling checks of each stage: none, history, all; without it all where the "
                  "input has 'buckle'")
      ->transform(CLI::CheckedTransformer(kinds));
  command
      .add_option("--stages", o.checked, "Stages whose buckling is checked: 1,8; all without it")
      ->delimiter(',');
}

void add_run(CLI::App& app, RunOptions& o, Command& chosen) {
  CLI::App* c = add_command(app, "run", "Analyse all stages: nine files and results.json", o.path);
  c->add_option("-d,--folder", o.folder, "Folder of the results; that of the input without it");
  add_buckling(*c, o);
  c->add_flag("--strict", o.strict, "Warnings are errors");
  c->add_flag("--json", o.json, "A summary as JSON on standard output");
  c->callback([&] { chosen = [&] { return run_command(o); }; });
}

// A command that reads results.json, or runs the analysis where it is not that of the input.
CLI::App* add_export(CLI::App& app, const char* name, const char* help, ExportOptions& o,
                     int (*command)(const ExportOptions&), Command& chosen) {
  CLI::App* c = add_command(app, name, help, o.run.path);
  c->add_option("-d,--folder", o.run.folder, "Folder of the results; that of the input without it");
  c->add_option("-o,--output", o.output, "File to write; a name in that folder without it");
  c->add_flag("--strict", o.run.strict, "Warnings are errors");
  c->callback([&o, &chosen, command] { chosen = [&o, command] { return command(o); }; });
  return c;
}

void add_exports(CLI::App& app, ExportOptions& o, Command& chosen) {
  const auto add = [&](const char* name, const char* help, int (*command)(const ExportOptions&)) {
    return add_export(app, name, help, o, command, chosen);
  };
  add("report", "One HTML page of the results", report_command)
      ->add_option("--buckled", o.picture, "SVG file for the lowest mode of the check by history");
  add("csv", "The results as one long table", csv_command)
      ->add_flag("--strips", o.strips, "With the stresses of every strip of the plates");
  add("xlsx", "The results as a workbook", xlsx_command);
  CLI::App* vtu = add("vtu", "Fields of stages and modes for ParaView, into a folder", vtu_command);
  add_buckling(*vtu, o.run);
  add("inp", "A stage as an input deck of CalculiX", inp_command)
      ->add_option("--stage", o.stage, "Stage, from 1")
      ->capture_default_str();
}

struct DiffOptions {
  std::string a, b;
  bool json = false;
};

void add_diff(CLI::App& app, DiffOptions& o, Command& chosen) {
  CLI::App* c = app.add_subcommand("diff", "What differs between two results, or two inputs");
  c->add_option("a", o.a, "results.json or input file")->required();
  c->add_option("b", o.b, "The other one")->required();
  c->add_flag("--json", o.json, "Differences as JSON");
  c->callback([&] { chosen = [&] { return diff_command(o.a, o.b, o.json); }; });
}

void add_new(CLI::App& app, NewOptions& o, Command& chosen) {
  CLI::App* c = app.add_subcommand("new", "Write a commented input file from a few figures");
  BridgeSketch& s = o.sketch;
  c->add_option("--spans", s.spans, "Spans in ft: 160,210,160")->delimiter(',');
  c->add_option("--girders", s.girders, "1 or 2")->capture_default_str();
  c->add_option("--radius", s.radius, "Radius of the reference line, ft; straight without it");
  c->add_option("--spacing", s.spacing, "Between the centres of two girders, ft");
  c->add_option("--depth", s.depth, "Bottom flange to top flanges, in");
  c->add_option("--bottom-width", s.bottom_width, "Of the bottom flange, in");
  c->add_option("--top-spacing", s.top_spacing, "Between the web tops, in");
  c->add_option("--flange-width", s.flange_width, "Of a top flange, in");
  c->add_option("--deck-width", s.deck_width, "Of the whole deck, ft");
  c->add_option("--deck-thickness", s.deck_thickness, "in");
  c->add_option("--frame-spacing", s.frame_spacing, "Between cross frames, ft");
  c->add_option("--web", s.web, "Thickness in the spans, over supports, in")->delimiter(',');
  c->add_option("--bottom", s.bottom, "The same of the bottom flange")->delimiter(',');
  c->add_option("--top", s.top, "The same of the top flanges")->delimiter(',');
  c->add_option("--order", s.order, "Of the segments: 1+5,3,2,4");
  c->add_option("--barrier", s.barrier, "Load of the last stage, kip/ft")->capture_default_str();
  c->add_option("--title", s.title, "Of the job");
  c->add_flag("--buckle", s.buckle, "With a check of buckling in every stage");
  c->add_option("--json", o.json, "File with these keys; they take precedence");
  c->add_option("-o,--output", o.output, "File to write; standard output without it");
  c->add_flag("--force", o.force, "Write over a file");
  c->callback([&] { chosen = [&] { return new_command(o); }; });
}

int run_desk(int argc, char** argv) {
  CLI::App app("Steel tub girders during bridge construction: check, run, report, export.");
  app.name("zelvo-desk");
  app.set_version_flag("--version", "zelvo-desk " ZELVO_VERSION);
  app.require_subcommand(1);
  CheckOptions check;
  RunOptions run;
  ExportOptions exports;
  DiffOptions diff;
  NewOptions sketch;
  Command chosen;
  add_check(app, check, chosen);
  add_run(app, run, chosen);
  add_exports(app, exports, chosen);
  add_diff(app, diff, chosen);
  add_new(app, sketch, chosen);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {  // --help and --version among them
    return app.exit(e) == 0 ? EXIT_CLEAN : EXIT_ERRORS;
  }
  return chosen();
}

}  // namespace

}  // namespace zelvo

int main(int argc, char** argv) {
  using namespace zelvo;
  keep_freed_memory();
  keep_standard_streams();
  take_file_limit_as_error();
  try {
    return run_desk(argc, argv);
  } catch (const FileFailure& f) {
    std::fprintf(stderr, "zelvo-desk: %s: %s\n", f.name.c_str(), f.reason.c_str());
    return EXIT_FILE;
  } catch (const MemoryFailure& f) {
    std::fprintf(stderr, "zelvo-desk: %s\n", shortage_text(f).c_str());
    return EXIT_NO_MEMORY;
  } catch (const std::bad_alloc&) {
    std::fputs("zelvo-desk: no memory for a work list\n", stderr);
    return EXIT_NO_MEMORY;
  } catch (const std::filesystem::filesystem_error& f) {
    std::fprintf(stderr, "zelvo-desk: %s\n", f.what());
    return EXIT_FILE;
  } catch (const std::exception& e) {  // of JSON: a results.json that holds something else
    std::fprintf(stderr, "zelvo-desk: the results cannot be read: %s\n", e.what());
    return EXIT_ERRORS;
  }
}
