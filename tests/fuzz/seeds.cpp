// Writes the inputs that fuzzing begins with into a folder: a sound one of each kind, one fault each.
#include <fstream>

#include "support/faulty_input.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  int n = 0;
  const auto write = [&](const std::string& text) {
    std::ofstream(argv[1] + ("/seed" + std::to_string(++n))) << text;
  };
  for (const zelvo::FaultyInput& f : zelvo::FAULTY_INPUTS) write(f.text());
  write(zelvo::one_girder_input().text());
  write(zelvo::two_girder_input().set("solver", "2 1e-4\n0.02").text());
}
