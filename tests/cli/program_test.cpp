// What a user sees of the program: words, exit status, result files, key press.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "cli/program.h"
#include "support/faulty_input.h"

using namespace zelvo;

namespace {

constexpr StandardInput INPUTS[] = {StandardInput::END_OF_FILE, StandardInput::CLOSED,
                                    StandardInput::TERMINAL};

void expect_empty_result_files(const ProgramRun& run) {
  std::error_code missing;
  for (const char* kind : {"rxn", "axf", "def", "sec", "str", "ibr", "ebr", "rot", "csc"}) {
    const std::string path = run.path(kind + std::string("0987.txt"));
    EXPECT_EQ(std::filesystem::file_size(path, missing), 0u) << path << missing.message();
  }
}

// Every freedom of the record syntax, in a sound file.
const char* const FREE_STYLE =
    "\xEF\xBB\xBF* the girder\r\nprname\r\n\"a ''short'' girder\"\r\nngird 7\r\n1,\tone\r\n"
    "\r\nlgbr\r\n\r\n245 cut to 240\r\nsecdim\r\n60.D0, 7.2+1\r\n84. 12\r\n144,8/\r\n"
    "webthick\r\n1\r\n240, 1*0.5\r\nbotfthick\r\n2\r\n2*120\r\n120 1\r\n"
    "tfthick\r\n1\r\n240\r\n1.5E+00 in\r\nlgbr\r\n480\r\ninternal_brace\r\n0\r\n"
    "support\r\n2\r\n,\r\n250\r\nstuds\r\n1\r\n240 12 3\r\nbuckle\r\n.false. 1\r\n/\r\n"
    "pour_seq\r\n1\r\n1\r\n240\r\n3*1.\r\n0\r\nend of the file\r\n";

}  // namespace

TEST(Program, ReportsAFileThatIsMissingEmptyOrEndsTooEarly) {
  const std::string sound = one_girder_input().text();
  const char* const breaks_off = "the file ends";
  const struct {
    const char* word;
    std::string text;
    const char* err;  // part of it; blank: nothing at all
  } cases[] = {{"not found", "", ""},
               {"empty", "\n  \t\r\n\n", ""},
               {"error", sound.substr(0, sound.size() - 4), breaks_off},
               {"error", "webthick\n2000000000\n96 .5\n", breaks_off},
               {"error", std::string("\x7f\x45\x4c\x46\0\0\1\xff\xfe\n\0\n", 12), breaks_off},
               {"error", std::string(3'000'000, 'x'), breaks_off}};
  for (const auto& [word, text, err] : cases) {
    for (const StandardInput input : INPUTS) {
      ProgramRun run;
      if (!text.empty()) run.write_input(text);
      run.start(input);
      EXPECT_EQ(run.out, " Input file " + std::string(word) + ". Press any key to exit.\n");
      EXPECT_NE(run.err.find(err), std::string::npos) << run.err;
      EXPECT_EQ(run.err.empty(), *err == '\0') << run.err;
      EXPECT_EQ(run.status, 0);
      EXPECT_EQ(run.waited_for_key, input == StandardInput::TERMINAL);
      if (!text.empty())
        expect_empty_result_files(run);
      else
        EXPECT_FALSE(std::filesystem::exists(run.path("rxn0987.txt")));
    }
  }
}

TEST(Program, NamesTheFaultsOfAFileAndEndsWithStatus65WithoutAKey) {
  int next = 0;
  for (const FaultyInput& f : FAULTY_INPUTS) {
    ProgramRun run;
    run.write_input(f.text());
    run.start(INPUTS[next++ % 3]);
    EXPECT_NE(run.err.find(f.note), std::string::npos) << "wanted " << f.note << "\n" << run.err;
    EXPECT_EQ(run.err.rfind("zvinp.txt:", 0), 0u) << run.err;
    EXPECT_EQ(run.out, "") << f.note;
    EXPECT_EQ(run.status, 65) << f.note;
    expect_empty_result_files(run);
  }
}

TEST(Program, EndsWithStatus71IfAModelIsTooLarge) {
  for (const char* length : {"24000000", "2147483647"}) {
    ProgramRun run;
    run.write_input(plain_girder(length).text());
    run.start(StandardInput::END_OF_FILE);
    EXPECT_EQ(run.status, 71);
    EXPECT_EQ(run.err.rfind("zelvo: no memory for the stiffness matrix and its factor: ", 0), 0u)
        << run.err;
  }
}

#ifndef __SANITIZE_ADDRESS__  // which takes terabytes of address space for itself
// Queues set such limits. Every one of them ends the run with words on what was asked for.
TEST(Program, TellsWhatItHadNoMemoryFor) {
  const std::string input =
      plain_girder("480").set("buckle", "T 3\n2").set("solver", "1 1e-4").text();
  bool solver = false, library = false;
  for (rlim_t megabytes = 240; megabytes >= 40 && !(solver && library); megabytes -= 10) {
    ProgramRun run;
    run.address_space = megabytes << 20;
    run.write_input(input);
    run.start(StandardInput::END_OF_FILE);
    if (run.status == 0) continue;
    if (run.status == 127) continue;  // not even the program has room
    EXPECT_NE(run.err.find("zelvo: no memory for "), std::string::npos) << megabytes << run.err;
    EXPECT_NE(run.err.find(" MB asked for\n"), std::string::npos) << run.err;
    const bool message = run.out.find(" SPARSE-DSS-Error, Out of memory\n") != std::string::npos ||
                         run.out.find("\nSPARSE-DSS-Error, Out of memory\n") != std::string::npos;
    EXPECT_EQ(run.status, message ? 254 : 71) << run.out;
    solver |= message;
    library |= run.err.find("the work buffer of the BLAS library: 134 MB") != std::string::npos;
  }
  EXPECT_TRUE(solver && library);
}
#endif

TEST(Program, EndsWithStatus74IfAFileCannotBeReadOrWritten) {
  const std::string directory = "Is a directory", full = "No space left on device";
  const std::pair<std::string, std::string> cases[] = {{"zvinp.txt", directory},
                                                       {"rot0987.txt", directory},
                                                       {"sec0987.txt", full},
                                                       {"standard output", full}};
  for (const auto& [file, words] : cases) {
    ProgramRun run;
    const bool console = file == "standard output";
    if (words == directory)
      std::filesystem::create_directory(run.path(file));
    else if (!console)
      std::filesystem::create_symlink("/dev/full", run.path(file));
    run.write_input(plain_girder("48").text());  // fails on the first directory
    run.start(StandardInput::END_OF_FILE, console ? "/dev/full" : nullptr);
    EXPECT_EQ(run.status, 74) << file;
    EXPECT_EQ(run.err, "zelvo: " + file + ": " + words + "\n");
  }
}

// Names that stand for another file, or for what is none, are refused before anything is emptied.
TEST(Program, RefusesFilesThatWouldDoHarmOrNeverEnd) {
  namespace fs = std::filesystem;
  std::error_code missing;
  const std::string input = plain_girder("48").text();
  const struct {
    const char *file, *words;
    void (*make)(const ProgramRun&);
  } cases[] = {
      {"rxn0987.txt", "is the same file as zvinp.txt",
       [](const ProgramRun& r) { fs::create_symlink("zvinp.txt", r.path("rxn0987.txt")); }},
      {"csc0987.txt", "is the same file as zvinp.txt",
       [](const ProgramRun& r) {
         fs::create_hard_link(r.path("zvinp.txt"), r.path("csc0987.txt"));
       }},
      {"sec0987.txt", "is the same file as def0987.txt",
       [](const ProgramRun& r) {
         std::ofstream(r.path("def0987.txt")) << "kept";
         fs::create_symlink("def0987.txt", r.path("sec0987.txt"));
       }},
      {"str0987.txt", "is no file to write results to",
       [](const ProgramRun& r) { mkfifo(r.path("str0987.txt").c_str(), 0600); }},
      {"zvinp.txt", "is no regular file",
       [](const ProgramRun& r) {
         fs::remove(r.path("zvinp.txt"));
         mkfifo(r.path("zvinp.txt").c_str(), 0600);
       }},
      {"zvinp.txt", "Too many levels of symbolic links", [](const ProgramRun& r) {
         fs::remove(r.path("zvinp.txt"));
         fs::create_symlink("zvinp.txt", r.path("zvinp.txt"));
       }}};
  for (const auto& [file, words, make] : cases) {
    ProgramRun run;
    run.write_input(input);
    make(run);
    run.start(StandardInput::END_OF_FILE);
    EXPECT_EQ(run.err, "zelvo: " + std::string(file) + ": " + words + "\n");
    EXPECT_EQ(run.status, 74) << words;
    if (fs::is_regular_file(run.path("zvinp.txt"), missing)) {
      EXPECT_EQ(content_of(run.path("zvinp.txt")), input);
    }
    const bool kept = content_of(run.path("def0987.txt")) == "kept";
    EXPECT_EQ(kept, std::string(file) == "sec0987.txt");
  }
}

// Legal input that ends in few or no results: runs to the end, with words on what went wrong.
TEST(Program, RunsWhateverIsLegal) {
  const struct {
    std::string text;
    const char *out, *err;
  } cases[] = {
      {FREE_STYLE, " Post-processing of Support Reactions Completed\n", "lgbr: given again"},
      {two_girder_input().set("pour_seq", "-1\n1\n240\n1").text(),
       "Connectivity Process Completed\n", "no analyses"},
      {plain_girder("48").set("support", "0").text(), "Solver Returned Error Code ", "mechanism"},
      {plain_girder("48").set("buckle", "F 3\n2").set("pour_seq", "1\n1\n48\n1 1 1e308\n0").text(),
       "flange = ", "zelvo: analysis 1: the displacements are not finite after the solution\n"},
      {plain_girder("48").set("secdim", "60 100 43 1 144 8").text(), " determinant error\n",
       "zelvo: analysis 1: elements are folded over (determinant error at "},
      {plain_girder("48").set("buckle", "T 3\n1\nsolver\n2 .1\n1e11").text(),
       " negative terms on diagonal\n", "diagonals of the matrix negative: give a lower one, or "},
      {plain_girder("48").set("buckle", "F 3\n2").set("pour_seq", "1\n1\n48\n1 1 1e307\n0").text(),
       "flange = ", "zelvo: analysis 1: values that are no numbers stand in "},
      {plain_girder("23").set("support", "1\n0").text(), "  54  nodes\n           0  shell",
       "one station"}};
  for (const auto& c : cases) {
    ProgramRun run;
    run.write_input(c.text);
    run.start(StandardInput::TERMINAL);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find(c.out), std::string::npos) << run.out;
    EXPECT_NE(run.err.find(c.err), std::string::npos) << run.err;
  }
}

TEST(ShowResults, TellsOfValuesTooWideForTheirField) {
  ProgramRun run;
  run.write_input(plain_girder("48").set("pour_seq", "1\n1\n48\n1 1 1e8\n0").text());
  run.start(StandardInput::END_OF_FILE);
  const std::string shown = run.path("shown");
  const std::string command = ZELVO_SOURCE_DIR "/scripts/show-results " + run.dir + " > " + shown;
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_NE(content_of(shown).find("| 0 ft: overflow   | 4 ft: overflow\n"), std::string::npos);
}
