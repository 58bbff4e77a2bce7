#include "control/console_lines.h"

#include "base/platform.h"
#include "base/text.h"

namespace zelvo {

namespace {

// Times up to limit stand in width columns with decimals.
struct TimeFormat {
  float limit;
  int width, decimals;
};

constexpr float NO_LIMIT = 3.0e38f;
constexpr TimeFormat ASSEMBLY_FORMATS[] = {
    {10.0f, 3, 1}, {100.0f, 4, 1}, {1000.0f, 5, 1}, {NO_LIMIT, 6, 1}};
constexpr TimeFormat SOLUTION_FORMATS[] = {
    {1.0f, 5, 3}, {10.0f, 4, 2}, {100.0f, 4, 1}, {1000.0f, 5, 1}, {NO_LIMIT, 6, 1}};

}  // namespace

float StepClock::read() {
  const double now = process_cpu_seconds();
  const float step = static_cast<float>(now - last);
  last = now;
  return step;
}

std::string time_sentence(float seconds, TimeScale scale) {
  const TimeFormat* f = scale == TimeScale::ASSEMBLY ? ASSEMBLY_FORMATS : SOLUTION_FORMATS;
  while (seconds >= f->limit && f->limit < NO_LIMIT) ++f;
  std::string text = " in ";
  put_real(text, static_cast<double>(seconds), f->width, f->decimals);
  return text.append(" seconds");
}

void timed_line(std::string_view text, StepClock& clock, TimeScale scale) {
  console(std::string(" ").append(text));
  console(time_sentence(clock.read(), scale).append("\n"));
}

void numbered_line(std::string_view text, int k) {
  std::string line(" ");
  line.append(text);
  put_int(line, k, 1);
  console(line.append("\n"));
}

void blank_line() { console("\n"); }

void print_summary(const Model& model, int nnode, const Elements& elements) {
  console_line("Zelvo 2.0 FE Model has:");
  const std::string shape = model.curved() ? "  curved girder" : "  straight girder";
  console_line(model.ngird, model.ngird == 1 ? shape : shape + "s");
  console_line(nnode, "  nodes");
  console_line(elements.nshell, "  shell elements");
  console_line(elements.nibel, "  internal brace elements");
  console_line(elements.nebel, "  external brace elements");
  console_line(elements.nlatel, "  top lateral elements");
  console_line(elements.nwsel, "  web stiffener elements");
  console_line(elements.nstud, "  stud elements");
  console_line(elements.nsupel, "  support elements");
  console_line(elements.nel(), "  total elements");
}

}  // namespace zelvo
