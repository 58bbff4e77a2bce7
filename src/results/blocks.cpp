#include "results/blocks.h"

#include "base/text.h"

namespace zelvo {

namespace {

constexpr double INCHES_PER_FOOT = 12;

void block_head(int k, int count, std::string& out) {
  free_line(out, "run");
  free_line(out, k);
  free_line(out, count);
}

// " run k"; the number has two columns from 10 on.
void run_line(int k, std::string& out) {
  out += " run ";
  put_int(out, k, k < 10 ? 1 : 2);
  out += '\n';
}

// A value of the first girder at every second station.
//   values  (nstn,girders)
void station_block(const Matrix<double>& values, int k, int width, int decimals, std::string& out) {
  const int count = (values.rows() + 1) / 2;
  block_head(k, count, out);
  for (int p = 0; p < count; ++p) {
    put_int(out, BAY_LENGTH * p, 10);
    put_blanks(out, 2);
    put_real(out, values(2 * p + 1, 1), width, decimals);
    out += '\n';
  }
}

void deflection_block(const StationDisplacements& stations, int k, std::string& out) {
  station_block(stations.deflection, k, 10, 2, out);
}

void rotation_block(const StationDisplacements& stations, int k, std::string& out) {
  station_block(stations.rotation, k, 14, 6, out);
}

// Position, shear, moment, torque.
void section_line(int position, double shear, double moment, double torque, std::string& sec) {
  put_blanks(sec, 1);
  put_int(sec, position, 7);
  for (const double value : {shear, moment / INCHES_PER_FOOT, torque / INCHES_PER_FOOT}) {
    put_blanks(sec, 2);
    put_real(sec, value, 12, 1);
  }
  sec += '\n';
}

// Stresses of the strips of a bay, its middle in front of every line.
void stress_lines(int bay, const Matrix<double>& stress, std::string& str) {
  constexpr int VALUES_PER_LINE = 13;
  for (int first = 1; first <= stress.rows(); first += VALUES_PER_LINE) {
    put_blanks(str, 1);
    put_int(str, BAY_LENGTH * bay - BAY_LENGTH / 2, 7);
    for (int e = first; e < first + VALUES_PER_LINE; ++e) {
      put_blanks(str, 1);
      put_real(str, stress(e, bay), 8, 2);
    }
    str += '\n';
  }
}

void section_blocks(const SectionResults& r, int k, std::string& sec, std::string& str) {
  const int nbay = r.s22.cols();
  block_head(k, nbay + 1, sec);
  block_head(k, nbay, str);
  for (int j = 0; j <= nbay; ++j) {
    section_line(BAY_LENGTH * j, r.shear(j + 1), r.moment(j + 1), r.torque(j + 1), sec);
    if (j == 0) continue;
    stress_lines(j, r.s22, str);
    stress_lines(j, r.s12, str);
  }
}

// Forces of every element: count values from each column in fields of width.
void force_block(const double* forces, int count, std::int64_t nel, int k, int width,
                 std::string& out) {
  block_head(k, static_cast<int>(nel), out);
  for (int e = 1; e <= nel; ++e) {
    put_int(out, e, 5);
    for (int i = 0; i < count; ++i) {
      put_blanks(out, 2);
      put_real(out, *forces++, width, 2);
    }
    out += '\n';
  }
}
constexpr int BRACE_WIDTH = 8, LATERAL_WIDTH = 10;

// The heading of a section is its distance in feet: in 9 columns with one girder, a free-format line
// with two.
void section_heading(int girders, int feet, std::string& out) {
  if (girders == 2) return free_line(out, feet);
  put_int(out, feet, 9);
  out += '\n';
}

void shape_block(const BucklingResults& buckling, int girders, int k, std::string& out) {
  const BuckledSections& s = buckling.sections;
  run_line(k, out);
  for (int mode = 1; mode <= buckling.modes.eigval.size(); ++mode) {
    put_real(out, buckling.modes.eigval(mode), 13, 3);
    out += '\n';
    for (int p = 1; p <= s.across.extent2(); ++p) {
      section_heading(girders, 2 * (p - 1), out);
      for (int m = 1; m <= s.across.extent1(); ++m) {
        put_blanks(out, 2);
        put_real(out, s.across(m, p, mode), 12, 4);
        put_blanks(out, 2);
        put_real(out, s.height(m, p, mode), 12, 4);
        out += '\n';
      }
    }
  }
}

}  // namespace

void write_deflections(const StationDisplacements& stations, int k, std::string& out) {
  deflection_block(stations, k, out);
}
void write_deflections_two(const StationDisplacements& stations, int k, std::string& out) {
  deflection_block(stations, k, out);
}

void write_rotations(const StationDisplacements& stations, int k, std::string& out) {
  rotation_block(stations, k, out);
}
void write_rotations_two(const StationDisplacements& stations, int k, std::string& out) {
  rotation_block(stations, k, out);
}

void write_reactions(const Reactions& reactions, int k, std::string& out) {
  run_line(k, out);
  for (int i = 1; i <= reactions.vertical.rows(); ++i) {
    free_line(out, i == 1 ? "Pinned" : "Roller");
    put_int(out, reactions.station(i), 5);
    out += '\n';
    for (int g = 1; g <= reactions.vertical.cols(); ++g) {
      put_real(out, reactions.vertical(i, g), 10, 4);
      out += '\n';
    }
  }
}

void section_forces_one(const SectionResults& sections, int k, std::string& sec, std::string& str) {
  section_blocks(sections, k, sec, str);
}
void section_forces_two(const SectionResults& sections, int k, std::string& sec, std::string& str) {
  section_blocks(sections, k, sec, str);
}

void write_ibrace_forces(const BarForces& bars, int k, std::string& out) {
  force_block(bars.internal.data(), bars.internal.rows(), bars.internal.cols(), k, BRACE_WIDTH,
              out);
}

void write_ebrace_forces(const BarForces& bars, int k, std::string& out) {
  force_block(bars.external.data(), bars.external.rows(), bars.external.cols(), k, BRACE_WIDTH,
              out);
}

void write_lateral_forces(const BarForces& bars, int k, std::string& out) {
  force_block(bars.laterals.data(), 1, bars.laterals.size(), k, LATERAL_WIDTH, out);
}

void write_shape(const BucklingResults& buckling, int k, std::string& out) {
  shape_block(buckling, 1, k, out);
}
void write_shape_two(const BucklingResults& buckling, int k, std::string& out) {
  shape_block(buckling, 2, k, out);
}

}  // namespace zelvo
