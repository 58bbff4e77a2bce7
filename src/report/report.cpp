#include "report/report.h"

#include "report/assets.h"
#include "report/buckled_picture.h"
#include "report/sections.h"
#include "report/wording.h"

namespace zelvo {

namespace report {

namespace {

// 64 hexadecimal digits in base64, as a policy names a hash.
std::string base64_of_hex(std::string_view hex) {
  constexpr char BASE64[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  unsigned bits = 0;
  int held = 0;
  for (const char c : hex) {
    bits = (bits << 4) | static_cast<unsigned>(c <= '9' ? c - '0' : c - 'a' + 10);
    held += 4;
    if (held >= 6) out += BASE64[(bits >> (held -= 6)) & 63];
  }
  if (held > 0) out += BASE64[(bits << (6 - held)) & 63];
  while (out.size() % 4 != 0) out += '=';
  return out;
}

std::string source(const Asset& asset) { return " 'sha256-" + base64_of_hex(asset.sha256) + "'"; }

// Nothing from the network; of scripts and styles only those that the program brings.
Html policy() {
  return html(
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; script-src",
      Html{source(THREE_JS) + source(VIEWER_JS) + source(REPORT_JS)}, "; style-src",
      Html{source(REPORT_CSS) + source(BUCKLED_CSS)},
      "; img-src data:; base-uri 'none'; form-action 'none'\">");
}

Html script(const Asset& asset) {
  return html("<script>", Html{std::string(asset.text)}, "</script>");
}

struct Section {
  const char *id, *title;
  Html (*body)(const Results&);
};
constexpr Section SECTIONS[] = {
    {"verdict", "Verdict", verdict},
    {"bridge", "Section, plan and pours", bridge_and_pours},
    {"deflection", "Deflection and camber", deflection_and_screed},
    {"twist", "Differential deflection and twist", differential_and_twist},
    {"forces", "Shear, moment and torque", shear_moment_torque},
    {"stresses", "Flange stresses", flange_stresses},
    {"members", "Members", members},
    {"reactions", "Reactions and bearings", reactions},
    {"buckling", "Buckling", buckling},
    {"checks", "Equilibrium and input", checks_and_input},
};

Html contents() {
  Html out = html("<nav><ol>");
  for (const Section& s : SECTIONS) put(out, "<li><a href=\"#", s.id, "\">", s.title, "</a></li>");
  return html(
      out,
      "</ol><div class=\"tools\"><span role=\"radiogroup\" aria-label=\"units\"><label><input "
      "type=\"radio\" name=\"units\" value=\"us\" checked> kip, in</label><label><input "
      "type=\"radio\" name=\"units\" value=\"si\"> kN, mm</label></span><button "
      "type=\"button\" id=\"print\">Print</button></div></nav>");
}

Html heading(const Results& r) {
  return html("<header><p class=\"kind\">Analysis of construction stages</p><h1>", r.title,
              "</h1><dl><dt>Input</dt><dd>", r.file, "</dd><dt>SHA-256</dt><dd><code>", r.sha256,
              "</code></dd><dt>Date</dt><dd>", r.date, "</dd><dt>Program</dt><dd>", r.program,
              "</dd></dl></header>");
}

Html page(const Results& r) {
  Html out = html("<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">", policy(),
                  "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"><title>",
                  r.title, "</title><style>", Html{std::string(REPORT_CSS.text)}, "</style><style>",
                  Html{std::string(BUCKLED_CSS.text)}, "</style></head><body>", contents(),
                  "<main>", heading(r));
  int number = 0;
  for (const Section& s : SECTIONS)
    put(out, "<section id=\"", s.id, "\"><h2>", ++number, " ", s.title, "</h2>", s.body(r),
        "</section>\n");
  put(out, "</main><script type=\"application/json\" id=\"units\">", Html{units_json()},
      "</script>");
  const bool shapes = out.text.find("id=\"viewer-data\"") != std::string::npos;
  if (shapes) put(out, script(THREE_JS), script(VIEWER_JS));
  return html(out, script(REPORT_JS), "</body></html>\n");
}

}  // namespace

}  // namespace report

std::string report_html(const Json& results) {
  return report::page(report::read_results(results)).text;
}

std::string buckled_svg(const Json& results) {
  const report::Results r = report::read_results(results);
  const report::ModeText* mode = report::lowest_mode(r);
  if (mode == nullptr) return {};
  return report::buckled_drawing(r.geometry, *mode, r.bridge,
                                 report::Html{std::string(report::BUCKLED_CSS.text)})
      .text;
}

}  // namespace zelvo
