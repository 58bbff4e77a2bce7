#include "results/result_files.h"

#include <filesystem>
#include <vector>

#include "results/blocks.h"

namespace zelvo {

namespace {

void write_blocks(const StageResults& r, ResultFiles& f) {
  write_deflections(r.stations, r.k, f.def.text);
  write_rotations(r.stations, r.k, f.rot.text);
  section_forces_one(r.sections, r.k, f.sec.text, f.str.text);
  if (r.buckling.modes.eigval.size() > 0) write_shape(r.buckling, r.k, f.csc.text);
}

void write_blocks_two(const StageResults& r, ResultFiles& f) {
  write_deflections_two(r.stations, r.k, f.def.text);
  write_rotations_two(r.stations, r.k, f.rot.text);
  section_forces_two(r.sections, r.k, f.sec.text, f.str.text);
  if (r.buckling.modes.eigval.size() > 0) write_shape_two(r.buckling, r.k, f.csc.text);
}

}  // namespace

void require_distinct_files(const char* input) {
  using namespace std::filesystem;
  ResultFiles files;
  std::vector<std::string> taken = {input};
  for (const ResultFile* f : all_files(files)) {
    std::error_code unknown;
    const file_type kind = status(f->name, unknown).type();
    if (kind == file_type::fifo || kind == file_type::socket || kind == file_type::block)
      throw FileFailure{f->name, "is no file to write results to"};
    if (kind != file_type::regular) continue;  // opening it tells what is wrong, or makes it
    for (const std::string& other : taken)
      if (equivalent(f->name, other, unknown))
        throw FileFailure{f->name, "is the same file as " + other};
    taken.push_back(f->name);
  }
}

ResultFiles open_result_files() {
  ResultFiles files;
  for (ResultFile* f : all_files(files)) *f = open_file(f->name.c_str());
  return files;
}

std::string write_stage(const Structure& structure, const StageResults& results,
                        ResultFiles& files) {
  if (structure.section->girders == 2)
    write_blocks_two(results, files);
  else
    write_blocks(results, files);
  write_reactions(results.reactions, results.k, files.rxn.text);
  const Elements& el = structure.elements;
  if (el.nibel > 0) write_ibrace_forces(results.bars, results.k, files.ibr.text);
  if (el.nebel > 0) write_ebrace_forces(results.bars, results.k, files.ebr.text);
  if (el.nlatel > 0) write_lateral_forces(results.bars, results.k, files.axf.text);
  std::string not_finite;
  for (ResultFile* f : all_files(files)) {
    if (f->file == nullptr) continue;
    if (has_no_number(f->text)) not_finite.append(not_finite.empty() ? "" : ", ").append(f->name);
    flush_file(*f);
  }
  return not_finite;
}

void close_result_files(ResultFiles& files) {
  for (ResultFile* f : all_files(files)) close_file(*f);
}

}  // namespace zelvo
