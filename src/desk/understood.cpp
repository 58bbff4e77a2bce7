#include "desk/understood.h"

#include <algorithm>

#include "base/platform.h"
#include "base/text.h"
#include "desk/pours.h"

namespace zelvo {

namespace {

// Seconds for each equation, with one girder and with two: one stage with its own stiffness on one
// core.
constexpr double SECONDS[] = {6e-6, 12e-6};

std::string grouped(std::int64_t n) {
  std::string text = std::to_string(n);
  for (int at = static_cast<int>(text.size()) - 3; at > 0; at -= 3)
    text.insert(static_cast<std::size_t>(at), 1, ',');
  return text;
}

Effort effort_of(const Model& m) {
  Effort e;
  const int two = m.ngird == 2 ? 1 : 0;
  e.equations = equation_count(m);
  e.memory_gb = 1e-9 * memory_estimate(m);
  e.stage_seconds = SECONDS[two] * static_cast<double>(e.equations);
  return e;
}

void add_letter(std::string& letters, int j, int segments) {
  if (segments > 26 && !letters.empty()) letters.push_back(',');
  letters += segments > 26 ? std::to_string(j) : segment_letter(j);
}

StageSummary stage_of(const Checked& c, const Understood& u, int k) {
  const Model& m = c.job.input.model;
  StageSummary s;
  const bool steel = k == 1 && m.selfwt;
  std::string wet;
  for (int j = 1; j <= m.npour; ++j) {
    add_letter(hard(m, k, j) ? s.hard : s.soft, j, m.npour);
    if (m.pour_load(k, j) == 0) continue;
    add_letter(s.loaded, j, m.npour);
    if (!hard(m, k, j) && m.pour_load(k, j) > POURED * deck_weight(m)) add_letter(wet, j, m.npour);
  }
  s.pour = !wet.empty();
  s.kips = stage_load(m, k) + (steel ? u.plates : 0);
  s.per_area = load_per_area(m, k);
  s.name = c.job.annotations.stage_name[static_cast<std::size_t>(k - 1)];
  if (!s.name.empty()) return s;
  s.name = steel ? "steel" : "";
  if (s.pour) s.name += (steel ? " + pour " : "pour ") + wet;
  if (!s.pour && !s.loaded.empty()) s.name += (steel ? " + load " : "load ") + s.loaded;
  if (s.name.empty()) s.name = "-";
  return s;
}

std::string spans_text(const Understood& u) {
  if (u.spans.empty()) return "";
  std::string text = u.spans.size() == 1 ? ", span " : ", spans ";
  for (std::size_t i = 0; i < u.spans.size(); ++i)
    text += (i > 0 ? " + " : "") + rounded((u.spans[i].end - u.spans[i].begin) / 12);
  return text + " ft";
}

std::string or_dash(const std::string& text) { return text.empty() ? "-" : text; }

std::string stages_text(const Job& job, const Understood& u) {
  const Model& m = job.input.model;
  std::size_t name = 6, letters = 4;
  for (const StageSummary& s : u.stages) {
    name = std::max(name, s.name.size());
    letters = std::max(letters, s.soft.size());
  }
  const int w = static_cast<int>(std::min<std::size_t>(name, 40)), l = static_cast<int>(letters);
  std::string text = formatted("  stage  %-*s %10s  %8s  %-*s  %s\n", w, "loaded", "kip", "kip/ft2",
                               l, "soft", "hard");
  bool compared = false;
  for (std::size_t k = 0; k < u.stages.size(); ++k) {
    const StageSummary& s = u.stages[k];
    text += formatted("  %5zu  %-*.*s %10.1f  %8s  ", k + 1, w, w, s.name.c_str(), s.kips,
                      s.per_area == 0 ? "-" : formatted("%.3f", s.per_area).c_str());
    text += or_dash(s.soft) +
            std::string(letters + 2 - std::max<std::size_t>(s.soft.size(), 1), ' ') +
            or_dash(s.hard);
    if (s.pour && !compared)
      text += "   " + plain(m.secdim.deck_thickness) + " in of deck weigh " +
              formatted("%.3f", deck_weight_per_area(m));
    compared = compared || s.pour;
    text += "\n";
  }
  return text;
}

}  // namespace

Understood understand(const Checked& c) {
  const Job& job = c.job;
  const Model& m = job.input.model;
  Understood u;
  u.title = job.annotations.title.empty() ? m.prname : job.annotations.title;
  u.title.erase(u.title.find_last_not_of(' ') + 1);
  const auto known = [&](Keyword k) { return job.input.block[k].line > 0 && usable(c, {k}); };
  if (known(NGIRD)) u.girders = m.ngird;
  if (known(LGBR)) u.length = m.lgbr;
  if (usable(c, {RCURV})) u.radius = m.rcurv;
  if (known(SUPPORT)) u.spans = spans_of(m);
  if (job.sound()) u.effort = effort_of(m);
  if (job.sound() && 1e9 * u.effort.memory_gb < memory_limit()) {
    Model light = m;  // the tables of the stages weigh nothing
    light.nanal = 0;
    const Structure structure = generate_structure(light);
    u.weighed = true;
    u.plates = plate_weight(m, structure);
    u.bracing = bracing_weight(structure);
  }
  if (known(POUR_SEQ) && known(SECDIM) && u.girders > 0)
    for (int k = 1; k <= m.nanal; ++k) u.stages.push_back(stage_of(c, u, k));
  return u;
}

std::string understood_text(const Job& job, const Understood& u) {
  std::string text = job.path + ":";
  if (!u.title.empty()) text += " " + u.title + ",";
  text += u.girders == 0 ? " ? girders" : u.girders == 1 ? " 1 girder" : " 2 girders";
  text += u.radius > 0 ? ", R " + formatted("%.4g", u.radius / 12) + " ft" : ", straight";
  text += spans_text(u);
  if (u.length > 0 && (u.spans.empty() || u.spans.back().end - u.spans.front().begin != u.length))
    text += ", length " + rounded(u.length / 12) + " ft";
  if (u.radius > 0)
    text += u.girders == 2 ? ", curves right: girder 1 is the outer one" : ", curves right";
  text += "\n";
  if (u.weighed) {
    text += formatted("  steel plates %.1f kip, bracing %.1f kip", u.plates, u.bracing.total());
    text += u.bracing.total() > 0 ? " (not in the analysis: add it as a load)\n" : "\n";
  }
  return u.stages.empty() ? text : text + stages_text(job, u);
}

std::string effort_text(const Effort& e) {
  return grouped(e.equations) + " equations, needs " +
         formatted("%.2g", std::max(e.memory_gb, 0.01)) + " GB, about " +
         formatted("%.2g", std::max(e.stage_seconds, 0.1)) + " s a stage.";
}

}  // namespace zelvo
