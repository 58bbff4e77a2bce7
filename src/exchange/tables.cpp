#include "exchange/tables.h"

namespace zelvo {

namespace {

const char* plate_name(Plate plate) {
  switch (plate) {
    case Plate::DECK:
      return "deck";
    case Plate::TOP_FLANGE:
      return "top flange";
    case Plate::WEB:
      return "web";
    case Plate::BOTTOM_FLANGE:
      break;
  }
  return "bottom flange";
}

std::string girder_name(int g) { return "girder " + std::to_string(g); }

// "girder 1 web strip 7"; strips are counted over the section, as in str0987.txt.
std::string strip_name(const SectionPattern& pattern, int e) {
  const Plate plate = pattern.strip[e - 1].plate;
  std::string name = plate == Plate::DECK ? "" : girder_name(girder_of_strip(pattern, e) + 1) + " ";
  return name.append(plate_name(plate)).append(" strip ").append(std::to_string(e));
}

}  // namespace

const std::vector<TableInfo>& table_infos() {
  static const std::vector<TableInfo> INFOS = {
      {"left_foot", "Vertical displacement of the left web foot", "in", Along::STATION,
       SeriesKind::GIRDERS, "up", true},
      {"right_foot", "Vertical displacement of the right web foot", "in", Along::STATION,
       SeriesKind::GIRDERS, "up", true},
      {"left_top", "Vertical displacement of the left web top", "in", Along::STATION,
       SeriesKind::GIRDERS, "up", true},
      {"right_top", "Vertical displacement of the right web top", "in", Along::STATION,
       SeriesKind::GIRDERS, "up", true},
      {"deflection", "Deflection", "in", Along::STATION, SeriesKind::GIRDERS, "up", true},
      {"lateral", "Lateral displacement of the web feet", "in", Along::STATION, SeriesKind::GIRDERS,
       "to the right", true},
      {"top_lateral", "Lateral displacement of the web tops", "in", Along::STATION,
       SeriesKind::GIRDERS, "to the right", true},
      {"twist", "Twist", "rad", Along::STATION, SeriesKind::GIRDERS,
       "clockwise seen along the girder", true},
      {"deck_edges", "Vertical displacement of the deck edges", "in", Along::STATION,
       SeriesKind::DECK_EDGES, "up", true},
      {"differential", "Differential deflection", "in", Along::STATION, SeriesKind::ONE,
       "girder 1 stands higher", true},
      {"reaction", "Vertical reaction", "kip", Along::SUPPORT, SeriesKind::GIRDERS, "up", true},
      {"reaction_lateral", "Lateral reaction", "kip", Along::SUPPORT, SeriesKind::GIRDERS,
       "to the right", true},
      {"reaction_longitudinal", "Longitudinal reaction", "kip", Along::SUPPORT, SeriesKind::GIRDERS,
       "to growing positions", true},
      {"reaction_couple", "Couple of the vertical reactions", "kip-in", Along::SUPPORT,
       SeriesKind::GIRDERS, "the left side carries more", true},
      {"bearings", "Bearing reaction", "kip", Along::SUPPORT, SeriesKind::SIDES, "up", true},
      {"section", "Section forces of the batch program", "kip, kip-in, kip-in", Along::SECTION,
       SeriesKind::SECTION, "as in sec0987.txt", true},
      {"girder_N", "Axial force of a girder about the common point", "kip", Along::SECTION,
       SeriesKind::GIRDERS, "tension", true},
      {"girder_V", "Shear of a girder about the common point", "kip", Along::SECTION,
       SeriesKind::GIRDERS, "the part beyond pushes up", true},
      {"girder_H", "Lateral shear of a girder about the common point", "kip", Along::SECTION,
       SeriesKind::GIRDERS, "the part beyond pushes to the right", true},
      {"girder_M", "Bending moment of a girder about the common point", "kip-in", Along::SECTION,
       SeriesKind::GIRDERS, "sagging: tension at the bottom", true},
      {"girder_L", "Lateral bending moment of a girder about the common point", "kip-in",
       Along::SECTION, SeriesKind::GIRDERS, "tension on the right", true},
      {"girder_T", "Torque of a girder about the common point", "kip-in", Along::SECTION,
       SeriesKind::GIRDERS, "clockwise seen along the girder", true},
      {"own_N", "Axial force of a girder about its own point", "kip", Along::SECTION,
       SeriesKind::GIRDERS, "tension", true},
      {"own_V", "Shear of a girder about its own point", "kip", Along::SECTION, SeriesKind::GIRDERS,
       "the part beyond pushes up", true},
      {"own_H", "Lateral shear of a girder about its own point", "kip", Along::SECTION,
       SeriesKind::GIRDERS, "the part beyond pushes to the right", true},
      {"own_M", "Bending moment of a girder about its own point", "kip-in", Along::SECTION,
       SeriesKind::GIRDERS, "sagging: tension at the bottom", true},
      {"own_L", "Lateral bending moment of a girder about its own point", "kip-in", Along::SECTION,
       SeriesKind::GIRDERS, "tension on the right", true},
      {"own_T", "Torque of a girder about its own point", "kip-in", Along::SECTION,
       SeriesKind::GIRDERS, "clockwise seen along the girder", true},
      {"bracing_N", "Axial force of the top laterals", "kip", Along::SECTION, SeriesKind::GIRDERS,
       "tension", true},
      {"bracing_V", "Shear of the top laterals", "kip", Along::SECTION, SeriesKind::GIRDERS,
       "the part beyond pushes up", true},
      {"bracing_H", "Lateral shear of the top laterals", "kip", Along::SECTION, SeriesKind::GIRDERS,
       "the part beyond pushes to the right", true},
      {"bracing_M", "Bending moment of the top laterals", "kip-in", Along::SECTION,
       SeriesKind::GIRDERS, "sagging: tension at the bottom", true},
      {"bracing_L", "Lateral bending moment of the top laterals", "kip-in", Along::SECTION,
       SeriesKind::GIRDERS, "tension on the right", true},
      {"bracing_T", "Torque of the top laterals", "kip-in", Along::SECTION, SeriesKind::GIRDERS,
       "clockwise seen along the girder", true},
      {"whole_N", "Axial force of the whole section", "kip", Along::SECTION, SeriesKind::ONE,
       "tension", true},
      {"whole_V", "Shear of the whole section", "kip", Along::SECTION, SeriesKind::ONE,
       "the part beyond pushes up", true},
      {"whole_H", "Lateral shear of the whole section", "kip", Along::SECTION, SeriesKind::ONE,
       "the part beyond pushes to the right", true},
      {"whole_M", "Bending moment of the whole section", "kip-in", Along::SECTION, SeriesKind::ONE,
       "sagging: tension at the bottom", true},
      {"whole_L", "Lateral bending moment of the whole section", "kip-in", Along::SECTION,
       SeriesKind::ONE, "tension on the right", true},
      {"whole_T", "Torque of the whole section", "kip-in", Along::SECTION, SeriesKind::ONE,
       "clockwise seen along the girder", true},
      {"s22", "Stress along the girder, second thickness point", "ksi", Along::BAY,
       SeriesKind::STRIPS, "tension", true},
      {"s12", "Shear stress, second thickness point", "ksi", Along::BAY, SeriesKind::STRIPS,
       "as in str0987.txt", true},
      {"mid22", "Stress along the girder, mid-thickness", "ksi", Along::BAY, SeriesKind::STRIPS,
       "tension", true},
      {"mid12", "Shear stress, mid-thickness", "ksi", Along::BAY, SeriesKind::STRIPS,
       "as in str0987.txt", true},
      {"flange_mean", "Top flange mean stress f_bu", "ksi", Along::BAY, SeriesKind::SIDES,
       "tension", true},
      {"flange_bend", "Top flange lateral bending f_l", "ksi", Along::BAY, SeriesKind::SIDES,
       "tension at the right tip", true},
      {"bottom_mean", "Bottom flange mean stress", "ksi", Along::BAY, SeriesKind::GIRDERS,
       "tension", true},
      {"bottom_high", "Bottom flange largest stress", "ksi", Along::BAY, SeriesKind::GIRDERS,
       "tension", false},
      {"bottom_low", "Bottom flange smallest stress", "ksi", Along::BAY, SeriesKind::GIRDERS,
       "tension", false},
      {"web_shear", "Web shear stress", "ksi", Along::BAY, SeriesKind::SIDES,
       "the part beyond pushes up", false},
      {"internal", "Internal frame bar force", "kip", Along::INTERNAL_FRAMES, SeriesKind::CORNERS,
       "tension", true},
      {"external", "External frame bar force", "kip", Along::EXTERNAL_FRAMES, SeriesKind::BARS,
       "tension", true},
      {"laterals", "Top lateral force", "kip", Along::LATERAL, SeriesKind::ONE, "tension", true},
  };
  return INFOS;
}

std::vector<std::string> series_names(const TableInfo& info, const SectionPattern& pattern,
                                      int count) {
  constexpr const char* SECTION_FORCES[] = {"shear", "moment", "torque"};
  constexpr const char* INTERNAL[] = {"left half of the strut", "right half of the strut",
                                      "left diagonal", "right diagonal"};
  constexpr const char* EXTERNAL[] = {"top strut", "left half of the bottom strut",
                                      "right half of the bottom strut", "left diagonal",
                                      "right diagonal"};
  std::vector<std::string> names;
  for (int i = 1; i <= count; ++i) switch (info.series) {
      case SeriesKind::GIRDERS:
        names.push_back(girder_name(i));
        break;
      case SeriesKind::SIDES:
        names.push_back(girder_name((i + 1) / 2) + (i % 2 == 1 ? " left" : " right"));
        break;
      case SeriesKind::DECK_EDGES:
        names.emplace_back(i == 1 ? "left edge" : "right edge");
        break;
      case SeriesKind::ONE:
        names.push_back(info.title);
        break;
      case SeriesKind::SECTION:
        names.emplace_back(SECTION_FORCES[i - 1]);
        break;
      case SeriesKind::STRIPS:
        names.push_back(strip_name(pattern, i));
        break;
      case SeriesKind::CORNERS:
        names.emplace_back(INTERNAL[i - 1]);
        break;
      case SeriesKind::BARS:
        names.emplace_back(EXTERNAL[i - 1]);
        break;
    }
  return names;
}

}  // namespace zelvo
