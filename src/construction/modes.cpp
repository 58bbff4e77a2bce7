#include "construction/modes.h"

#include <algorithm>
#include <numeric>

#include "base/vec3.h"

namespace zelvo {

namespace {

constexpr const char* WEB_REMARK = "four strips a web can give a web's factor up to 25 % too high";
constexpr const char* FRAME_REMARK =
    "bars are straight between their nodes: their own buckling is not in the model";

// A place or a motion in the plane of a section: across, to the right, and up, inches.
struct InPlane {
  double x, y;
};
InPlane operator+(InPlane a, InPlane b) { return {a.x + b.x, a.y + b.y}; }
InPlane operator-(InPlane a, InPlane b) { return {a.x - b.x, a.y - b.y}; }
InPlane operator*(double f, InPlane a) { return {f * a.x, f * a.y}; }
double square(InPlane a) { return a.x * a.x + a.y * a.y; }
double distance(InPlane a, InPlane b) { return std::sqrt(square(a - b)); }

// One girder's section at one station in a shape.
struct SectionShape {
  const Nodes& nodes;
  const double* x;  // (n) the shape
  const GirderPattern& girder;
  int before;   // nodes of the stations before
  Vec3 across;  // horizontal, in the plane of the section

  InPlane place(int m) const {
    const Vec3 from_centre =
        column3(nodes.xyz, before + m) - column3(nodes.xyz, before + girder.bottom_centre());
    return {dot(from_centre, across), from_centre(2)};
  }
  InPlane motion(int m) const {
    const double* d = x + equation(before + m, 1) - 1;
    return {d[0] * across(1) + d[2] * across(3), d[1]};
  }
};

// Translation of a point and rotation about it.
struct RigidMotion {
  InPlane at, shift;
  double turn;

  InPlane motion(InPlane p) const { return shift + turn * InPlane{-(p.y - at.y), p.x - at.x}; }
};

// The motion of the line between nodes a and b, which may stretch.
RigidMotion chord_motion(const SectionShape& s, int a, int b) {
  const InPlane pa = s.place(a), pb = s.place(b), ua = s.motion(a), ub = s.motion(b);
  const InPlane e = pb - pa, u = ub - ua;
  return {0.5 * (pa + pb), 0.5 * (ua + ub), (e.x * u.y - e.y * u.x) / square(e)};
}

// The plates of a girder as lines of nodes.
constexpr int LINES = 5, MAX_LINE = 9;
constexpr int LEFT_FLANGE = 0, LEFT_WEB = 1, BOTTOM = 2, RIGHT_WEB = 3, RIGHT_FLANGE = 4;
constexpr Plate PLATE_OF[LINES] = {Plate::TOP_FLANGE, Plate::WEB, Plate::BOTTOM_FLANGE, Plate::WEB,
                                   Plate::TOP_FLANGE};
constexpr int SIDE_OF[LINES] = {1, 1, 0, 2, 2};

struct PlateLine {
  int nodes;
  int node[MAX_LINE];
};

PlateLine plate_line(const GirderPattern& g, int line) {
  const auto flange = [](int first, int top) {
    return PlateLine{5, {first, first + 1, top, first + 2, first + 3}};
  };
  const auto run = [](int first) {
    PlateLine p{MAX_LINE, {}};
    for (int i = 0; i < MAX_LINE; ++i) p.node[i] = first + i;
    return p;
  };
  switch (line) {
    case LEFT_FLANGE:
      return flange(g.left_flange(1), g.left_top());
    case LEFT_WEB:
      return run(g.left_top());
    case BOTTOM:
      return run(g.left_foot());
    case RIGHT_WEB:
      return run(g.right_foot());
    default:
      return flange(g.right_flange(1), g.right_top());
  }
}

// The parts of the shape in one section: squares integrated over each line, in^3. [r] is the part
// beyond or by rigid motion r: 0 that of the bottom flange, 1 that of the line between the web tops.
constexpr int REFERENCES = 2;
struct Parts {
  double rigid[REFERENCES][LINES], section[REFERENCES][LINES], plate[LINES];
};

// A line moves with its edges: in webs and bottom flange straight between them, a top flange with
// its web top and the rotation of the line between the web tops.
void add_line(const SectionShape& s, const RigidMotion (&rigid)[REFERENCES], int line, Parts& p) {
  const PlateLine l = plate_line(s.girder, line);
  const bool flange = PLATE_OF[line] == Plate::TOP_FLANGE;
  const int first = l.node[0], last = l.node[l.nodes - 1], middle = l.node[l.nodes / 2];
  const double spacing = distance(s.place(first), s.place(last)) / (l.nodes - 1);
  for (int i = 0; i < l.nodes; ++i) {
    const InPlane at = s.place(l.node[i]);
    const double t = double(i) / (l.nodes - 1);
    const InPlane edges =
        flange ? RigidMotion{s.place(middle), s.motion(middle), rigid[1].turn}.motion(at)
               : (1 - t) * s.motion(first) + t * s.motion(last);
    const double width = i == 0 || i == l.nodes - 1 ? spacing / 2 : spacing;
    p.plate[line] += width * square(s.motion(l.node[i]) - edges);
    for (int r = 0; r < REFERENCES; ++r) {
      p.rigid[r][line] += width * square(rigid[r].motion(at));
      p.section[r][line] += width * square(edges - rigid[r].motion(at));
    }
  }
}

Parts section_parts(const SectionShape& s) {
  const GirderPattern& g = s.girder;
  const RigidMotion rigid[REFERENCES] = {chord_motion(s, g.left_foot(), g.right_foot()),
                                         chord_motion(s, g.left_top(), g.right_top())};
  Parts p{};
  for (int line = 0; line < LINES; ++line) add_line(s, rigid, line, p);
  return p;
}

// The parts of all sections, one column a girder.
Matrix<Parts> shape_parts(const Structure& structure, const double* x) {
  const SectionPattern& section = *structure.section;
  const Nodes& nodes = structure.nodes;
  Matrix<Parts> parts(nodes.nnode / section.nodes, section.girders, "the parts of a mode");
  for (int g = 1; g <= section.girders; ++g)
    for (int s = 1; s <= parts.rows(); ++s) {
      const GirderPattern& girder = section.girder[g - 1];
      const int before = (s - 1) * section.nodes;
      const Vec3 across = column3(nodes.vt1, before + girder.bottom_centre());
      parts(s, g) = section_parts({nodes, x, girder, before, across});
    }
  return parts;
}

// Where a measure is largest: the girder and the candidate (a plate, say) by their sums over all
// stations, and the station among them.
//   value(p, c)  the measure of candidate c, from 0, in a section
struct Largest {
  int girder = 1, candidate = 0, station = 1;
  double value = -1, all = 0;  // of that candidate, of all in all girders
};
template <class Value>
Largest find_largest(const Matrix<Parts>& parts, int candidates, Value value) {
  Largest most;
  double all = 0;
  for (int g = 1; g <= parts.cols(); ++g)
    for (int c = 0; c < candidates; ++c) {
      double sum = 0, peak = -1;
      int station = 1;
      for (int s = 1; s <= parts.rows(); ++s) {
        const double v = value(parts(s, g), c);
        sum += v;
        if (v > peak) peak = v, station = s;
      }
      all += sum;
      if (sum > most.value) most = {g, c, station, sum, 0};
    }
  most.all = all;
  return most;
}

double sum(const double (&lines)[LINES]) { return std::accumulate(lines, lines + LINES, 0.0); }

void place(const Largest& at, ModeNature& nature) {
  nature.girder = at.girder;
  nature.position = STATION_SPACING * (at.station - 1);
  nature.local = at.all > 0 ? at.value / at.all : 0;
}

void place_in_line(const Largest& at, int line, ModeNature& nature) {
  place(at, nature);
  nature.plate = PLATE_OF[line];
  nature.side = SIDE_OF[line];
}

}  // namespace

ModeNature mode_nature(const Structure& structure, const double* x) {
  const Matrix<Parts> parts = shape_parts(structure, x);
  const auto rigid = [&](int r) {
    return find_largest(parts, 1, [r](const Parts& p, int) { return sum(p.rigid[r]); });
  };
  const Largest by_bottom = rigid(0), by_tops = rigid(1);
  const int r = by_tops.all < by_bottom.all ? 1 : 0;
  const Largest& girder = r == 1 ? by_tops : by_bottom;
  const double section =
      find_largest(parts, 1, [r](const Parts& p, int) { return sum(p.section[r]); }).all;
  const Largest plate =
      find_largest(parts, LINES, [](const Parts& p, int line) { return p.plate[line]; });

  ModeNature nature;
  const double all = girder.all + section + plate.all;
  if (!(all > 0)) return nature;
  nature.shares = {girder.all / all, section / all, plate.all / all, 0};
  nature.share = std::max({nature.shares.girder, nature.shares.section, nature.shares.plates});
  if (nature.share == nature.shares.plates) {
    nature.kind = ModeKind::PLATE;
    place_in_line(plate, plate.candidate, nature);
    if (nature.plate == Plate::WEB) nature.remark = WEB_REMARK;
  } else if (nature.share == nature.shares.section) {
    constexpr int FLANGES[2] = {LEFT_FLANGE, RIGHT_FLANGE};
    nature.kind = ModeKind::FLANGE;
    const Largest flange =
        find_largest(parts, 2, [&](const Parts& p, int c) { return p.section[r][FLANGES[c]]; });
    place_in_line(flange, FLANGES[flange.candidate], nature);
  } else {
    place(girder, nature);
  }
  return nature;
}

void weigh_bracing(const Structure& structure, double share, const Vector<double>& work,
                   ModeNature& nature) {
  assert(work.size() == structure.nodes.nnode);
  nature.shares.bracing = share;
  if (!(share > 0.5)) return;
  const SectionPattern& section = *structure.section;
  const auto station = [&](int node) { return (node - 1) / section.nodes + 1; };
  const auto girder = [&](int node) {
    return section.girders == 2 && (node - 1) % section.nodes + 1 >= section.girder[1].first ? 2
                                                                                             : 1;
  };
  int most = 1;
  for (int node = 2; node <= work.size(); ++node)
    if (work(node) > work(most)) most = node;
  Largest at{girder(most), 0, station(most), 0, 0};
  for (int node = 1; node <= work.size(); ++node) {
    at.all += work(node);
    if (station(node) == at.station && girder(node) == at.girder) at.value += work(node);
  }
  nature.kind = ModeKind::FRAME;
  nature.share = std::min(share, 1.0);
  nature.side = 0;
  nature.remark = FRAME_REMARK;
  place(at, nature);
}

}  // namespace zelvo
