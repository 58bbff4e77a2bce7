#include "solution/nodal.h"

#include "base/text.h"
#include "model/description.h"
#include "model/pattern.h"
#include "solution/supports.h"

namespace zelvo {

namespace {

// Heading, then a row for every second station with a value of its two web feet's vertical
// displacements, in width columns.
template <class Value>
void station_block(const SectionPattern& pattern, const Vector<double>& U, int lgbr, int k,
                   int width, int decimals, std::string& out, Value value) {
  const GirderPattern& g = pattern.girder[0];
  const int npts = lgbr / BAY_LENGTH + 1;
  free_line(out, "run");
  free_line(out, k);
  free_line(out, npts);
  for (int p = 0; p < npts; ++p) {
    const int before = 2 * p * pattern.nodes;
    const double left = U(equation(before + g.left_foot(), 2));
    const double right = U(equation(before + g.right_foot(), 2));
    put_int(out, BAY_LENGTH * p, 10);
    put_blanks(out, 2);
    put_real(out, value(left, right), width, decimals);
    out += '\n';
  }
}

void deflection_block(const SectionPattern& pattern, const Vector<double>& U, int lgbr, int k,
                      std::string& out) {
  station_block(pattern, U, lgbr, k, 10, 2, out,
                [](double left, double right) { return (left + right) / 2; });
}

void rotation_block(const SectionPattern& pattern, const Vector<double>& U, int lgbr, int k,
                    double flange_width, std::string& out) {
  station_block(pattern, U, lgbr, k, 14, 6, out,
                [=](double left, double right) { return (left - right) / flange_width; });
}

}  // namespace

void write_deflections(const Vector<double>& U, int lgbr, int k, std::string& out) {
  deflection_block(ONE_GIRDER, U, lgbr, k, out);
}
void write_deflections_two(const Vector<double>& U, int lgbr, int k, std::string& out) {
  deflection_block(TWO_GIRDERS, U, lgbr, k, out);
}

void write_rotations(const Vector<double>& U, int lgbr, int k, double flange_width,
                     std::string& out) {
  rotation_block(ONE_GIRDER, U, lgbr, k, flange_width, out);
}
void write_rotations_two(const Vector<double>& U, int lgbr, int k, double flange_width,
                         std::string& out) {
  rotation_block(TWO_GIRDERS, U, lgbr, k, flange_width, out);
}

void write_reactions(const Elements& elements, const Vector<double>& U, int ngird, int k,
                     std::string& out) {
  const SectionPattern& pattern = section_pattern(ngird);
  const int nline = 9 * pattern.girders;
  out += " run ";
  put_int(out, k, k < 10 ? 1 : 2);
  out += '\n';
  double reaction = 0;
  for (int i = 1; i <= elements.nfix; ++i) {
    const int n = elements.fixnode(i);
    if ((i - 1) % nline == 0) {
      free_line(out, i == 1 ? "Pinned" : "Roller");
      put_int(out, (n - 1) / pattern.nodes, 5);  // station, counted from 0
      out += '\n';
    }
    reaction += -U(equation(n, 2)) * BIG;
    if (i % 9 == 0) {
      put_real(out, reaction, 10, 4);
      out += '\n';
      reaction = 0;
    }
  }
}

}  // namespace zelvo
