#include "report/units.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <numeric>

namespace zelvo::report {

namespace {

constexpr double KIP = 4.4482216152605;        // kN
constexpr double INCH = 25.4;                  // mm
constexpr double FOOT = 0.3048;                // m
constexpr double KSI = 6.894757293168361;      // MPa
constexpr double RADIAN = 57.295779513082323;  // degrees

constexpr UnitInfo UNITS[] = {
    {"place", {"ft", 1.0 / 12, 1}, {"m", FOOT / 12, 2}},
    {"length", {"in", 1, 3}, {"mm", INCH, 0}},
    {"deflection", {"in", 1, 2}, {"mm", INCH, 1}},
    {"force", {"kip", 1, 1}, {"kN", KIP, 0}},
    {"weight", {"kip", 1, 1}, {"kN", KIP, 1}},
    {"moment", {"kip-ft", 1.0 / 12, 0}, {"kN-m", KIP* FOOT / 12, 0}},
    {"stress", {"ksi", 1, 2}, {"MPa", KSI, 1}},
    {"angle", {"°", RADIAN, 3}, {"°", RADIAN, 3}},
    {"area", {"in²", 1, 2}, {"mm²", INCH* INCH, 0}},
    {"modulus", {"ksi", 1, 0}, {"MPa", KSI, 0}},
    {"stud", {"kip/in", 1, 0}, {"kN/mm", KIP / INCH, 1}},
    {"load", {"kip/ft", 1, 3}, {"kN/m", KIP / FOOT, 2}},
    {"factor", {"", 1, 3}, {"", 1, 3}},
};

}  // namespace

const UnitInfo& info(Unit unit) { return UNITS[static_cast<int>(unit)]; }

Unit unit_of(const std::string& unit) {
  if (unit == "in") return Unit::DEFLECTION;
  if (unit == "rad") return Unit::ANGLE;
  if (unit == "kip") return Unit::FORCE;
  if (unit == "kip-in") return Unit::MOMENT;
  if (unit == "ksi") return Unit::STRESS;
  return Unit::FACTOR;
}

std::string units_json() {
  std::string out = "{";
  const auto shown = [](const Shown& s) {
    return "[\"" + std::string(s.name) + "\"," + full(s.factor) + "," + std::to_string(s.decimals) +
           "]";
  };
  for (const UnitInfo& u : UNITS)
    out += (out.size() > 1 ? ",\"" : "\"") + std::string(u.key) + "\":[" + shown(u.us) + "," +
           shown(u.si) + "]";
  return out + "}";
}

std::string fixed(double value, int decimals) {
  char buffer[352];  // the largest double has 309 digits
  const int n = std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
  const std::string text(buffer, static_cast<std::size_t>(n));
  const bool zero = text.find_first_of("123456789") == std::string::npos;
  return zero && text[0] == '-' ? text.substr(1) : text;
}

std::string full(double value) {
  char buffer[32];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value);
  return {buffer, end.ptr};
}

std::string scientific(double value) {
  char buffer[32];
  const int n = std::snprintf(buffer, sizeof buffer, "%.1e", value);
  return {buffer, static_cast<std::size_t>(n)};
}

std::string sixteenths(double inches) {
  const int n = static_cast<int>(std::lround(16 * std::abs(inches)));
  if (n == 0) return "0";
  std::string out = inches < 0 ? "-" : "";
  if (n / 16 > 0) out += std::to_string(n / 16);
  if (const int rest = n % 16; rest > 0) {
    const int g = std::gcd(rest, 16);
    if (n / 16 > 0) out += ' ';
    out += std::to_string(rest / g) + "/" + std::to_string(16 / g);
  }
  return out;
}

namespace {

// ` data-u="force" data-v="12.25">12.3`: what an element is opened with.
Html shown(double value, Unit unit) {
  if (!std::isfinite(value)) return html(">–");
  const UnitInfo& u = info(unit);
  return html(" data-u=\"", u.key, "\" data-v=\"", full(value), "\">",
              fixed(value * u.us.factor, u.us.decimals));
}

}  // namespace

Html number(double value, Unit unit) { return html("<span", shown(value, unit), "</span>"); }

Html unit_name(Unit unit) {
  const UnitInfo& u = info(unit);
  return html("<span data-n=\"", u.key, "\">", u.us.name, "</span>");
}

Html quantity(double value, Unit unit) { return html(number(value, unit), " ", unit_name(unit)); }

Html cell(double value, Unit unit) { return html("<td", shown(value, unit), "</td>"); }

}  // namespace zelvo::report
