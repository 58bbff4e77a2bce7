// Quantities as a reader of the report sees them: units, decimals, and how a number is set.
//
// A number of the results keeps its full precision in the page (data-v), with its quantity
// (data-u); what is shown is that number times a factor, rounded. The page's script switches units
// with the same table.
#pragma once
#include <string>

#include "report/html.h"

namespace zelvo::report {

enum class Unit {
  PLACE,       // along the bridge: in to ft, m
  LENGTH,      // of a section or plate: in, mm
  DEFLECTION,  // in, mm
  FORCE,       // kip, kN
  WEIGHT,      // kip, kN, one decimal in both
  MOMENT,      // kip-in to kip-ft, kN-m
  STRESS,      // ksi, MPa
  ANGLE,       // rad to degrees
  AREA,        // in2, mm2
  MODULUS,     // ksi, MPa
  STUD,        // kip/in, kN/mm
  LOAD,        // kip/ft, kN/m
  FACTOR,      // none
};

// What a unit is called in the page, and how it is shown in one of the two systems.
struct Shown {
  const char* name;
  double factor;
  int decimals;
};
struct UnitInfo {
  const char* key;
  Shown us, si;
};
const UnitInfo& info(Unit unit);

// The quantity of a table of the results, by the unit that it has there.
Unit unit_of(const std::string& unit);

// A JSON object of all units, for the script.
std::string units_json();

// value with decimals behind the point; no minus before zeros.
std::string fixed(double value, int decimals);
// The shortest text that reads back as the same number.
std::string full(double value);
// 1 3/8 for 1.37: inches in sixteenths.
std::string sixteenths(double inches);
std::string scientific(double value);

// A number that the script can switch: text, and its value in an attribute. A value that does not
// exist is a dash.
Html number(double value, Unit unit);
// The same with its unit behind it.
Html quantity(double value, Unit unit);
// The name of a unit, switched with it.
Html unit_name(Unit unit);
// A table cell with a number.
Html cell(double value, Unit unit);

}  // namespace zelvo::report
