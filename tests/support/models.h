// Small valid bridges for the tests. A test starts from one_girder() or two_girders() and adds what
// it needs; every list of segments covers the girder from the start.
#pragma once
#include <initializer_list>

#include "model/description.h"
#include "model/elements.h"
#include "model/matrix.h"
#include "model/nodes.h"
#include "model/properties.h"

template <class T>
Vector<T> vector_of(std::initializer_list<T> values) {
  Vector<T> v(static_cast<std::int64_t>(values.size()));
  std::int64_t i = 0;
  for (const T& x : values) v(++i) = x;
  return v;
}

// One construction stage over the whole girder: deck modulus, stiffness per stud, load in kip/ft.
// The default deck is as good as absent: bare steel.
inline void set_stages(Model& m, std::initializer_list<int> lengths, int nanal, double e = 0.1,
                       double k = 0.0001, double load = 3.0) {
  m.nanal = nanal;
  m.npour = static_cast<int>(lengths.size());
  m.pour_len = vector_of(lengths);
  m.pour_e = Matrix<double>(nanal, m.npour);
  m.pour_k = Matrix<double>(nanal, m.npour);
  m.pour_load = Matrix<double>(nanal, m.npour);
  for (int i = 1; i <= nanal; ++i) {
    for (int j = 1; j <= m.npour; ++j) {
      m.pour_e(i, j) = e;
      m.pour_k(i, j) = k;
      m.pour_load(i, j) = load;
    }
  }
}

inline void set_supports(Model& m, std::initializer_list<int> positions) {
  m.nsupp = static_cast<int>(positions.size());
  m.supp_pos = vector_of(positions);
}

using Lengths = std::initializer_list<int>;
using Reals = std::initializer_list<double>;
inline void set_plates(int& n, Vector<int>& len, Vector<double>& t, Lengths l, Reals thickness) {
  n = static_cast<int>(l.size());
  len = vector_of(l);
  t = vector_of(thickness);
}
inline void set_webs(Model& m, Lengths l, Reals t) { set_plates(m.nweb, m.web_len, m.web_t, l, t); }
inline void set_bottom(Model& m, Lengths l, Reals t) {
  set_plates(m.nbotf, m.botf_len, m.botf_t, l, t);
}
inline void set_top(Model& m, Lengths l, Reals t) {
  set_plates(m.ntopf, m.topf_len, m.topf_t, l, t);
}
inline void set_studs(Model& m, Lengths len, Reals spacing, Lengths count) {
  m.nstudrow = static_cast<int>(len.size());
  m.stud_len = vector_of(len);
  m.stud_spacing = vector_of(spacing);
  m.stud_count = vector_of(count);
}

inline void add_ibraces(Model& m, std::initializer_list<int> positions, int type = 1,
                        double area = 5.0) {
  m.nibrace = static_cast<int>(positions.size());
  m.ib_pos = vector_of(positions);
  m.ib_type = Vector<int>(m.nibrace);
  m.ib_area = Vector<double>(m.nibrace);
  for (int i = 1; i <= m.nibrace; ++i) m.ib_type(i) = type, m.ib_area(i) = area;
}

// Internal braces of type 1 at every step inches, the ends left out.
inline void add_ibraces_every(Model& m, int step, double area = 5.0) {
  m.nibrace = (m.lgbr - 1) / step;
  m.ib_pos = m.ib_type = Vector<int>(m.nibrace);
  m.ib_area = Vector<double>(m.nibrace);
  for (int i = 1; i <= m.nibrace; ++i)
    m.ib_pos(i) = i * step, m.ib_type(i) = 1, m.ib_area(i) = area;
}

inline void add_ebraces(Model& m, std::initializer_list<int> positions, int type = 1,
                        double area = 5.0) {
  m.nebrace = static_cast<int>(positions.size());
  m.eb_pos = vector_of(positions);
  m.eb_type = Vector<int>(m.nebrace);
  m.eb_area = Vector<double>(m.nebrace);
  for (int i = 1; i <= m.nebrace; ++i) m.eb_type(i) = type, m.eb_area(i) = area;
}

struct Lateral {
  int type, from, to;
};
inline void add_laterals(Model& m, std::initializer_list<Lateral> rows, double area = 5.0) {
  m.nlat = static_cast<int>(rows.size());
  m.lat_type = m.lat_from = m.lat_to = Vector<int>(m.nlat);
  m.lat_area = Vector<double>(m.nlat);
  int i = 0;
  for (const Lateral& row : rows) {
    ++i;
    m.lat_type(i) = row.type;
    m.lat_from(i) = row.from;
    m.lat_to(i) = row.to;
    m.lat_area(i) = area;
  }
}

inline void add_stiffeners(Model& m, std::initializer_list<int> positions, double width = 6.0,
                           double thickness = 0.5) {
  m.nstiff = static_cast<int>(positions.size());
  m.ws_pos = vector_of(positions);
  m.ws_b = m.ws_t = Vector<double>(m.nstiff);
  for (int i = 1; i <= m.nstiff; ++i) m.ws_b(i) = width, m.ws_t(i) = thickness;
}

// A simple span of one girder: 60 deep, 72 and 84 wide, flanges of 12, deck 144 x 8; web 0.5,
// bottom 1.0, top 1.5; one stud to a link; one bare steel stage of 3 kip/ft on the top flanges.
inline Model one_girder(int lgbr, double rcurv = 0) {
  Model m;
  m.ngird = 1;
  m.lgbr = lgbr;
  m.rcurv = rcurv;
  m.secdim = {{60, 72, 84, 12, 144, 8}};
  set_webs(m, {lgbr}, {0.5});
  set_bottom(m, {lgbr}, {1.0});
  set_top(m, {lgbr}, {1.5});
  set_supports(m, {0, lgbr});
  set_studs(m, {lgbr}, {12}, {3});
  set_stages(m, {lgbr}, 1);
  m.load_pattern = 1;
  return m;
}

// The same two times, centrelines 2 x 90 apart under a deck of 324.
inline Model two_girders(int lgbr, double rcurv = 0) {
  Model m = one_girder(lgbr, rcurv);
  m.ngird = 2;
  m.offset = 90;
  m.secdim(5) = 324;
  return m;
}

// The structure of a model, generated.
struct Structure {
  Nodes nodes;
  Elements elements;
  Properties properties;
};
inline Structure generate(const Model& m) {
  Structure s;
  m.ngird == 2 ? generate_nodes_two(m, s.nodes) : generate_nodes_one(m, s.nodes);
  s.elements = generate_elements(m);
  s.properties = generate_properties(m, s.elements);
  return s;
}
