#include "exchange/csv.h"

#include <charconv>
#include <cmath>

namespace zelvo {

namespace {

// The shortest text that reads back as the same number; none for nan.
void put_number(double value, std::string& out) {
  char text[40];
  if (std::isfinite(value)) out.append(text, std::to_chars(text, text + sizeof text, value).ptr);
}

// What the rows of one table share, and those of one state of it.
struct Rows {
  const TableView& table;
  std::string stage, name, kind, suffix;
};

std::string member_of(const PlaceView& place, const SeriesView& series) {
  return place.member + (place.member.empty() || series.rest.empty() ? "" : ", ") + series.rest;
}

void put_row(const Rows& rows, std::size_t s, std::size_t p, double value, double governing,
             std::string& out) {
  const SeriesView& series = rows.table.series[s];
  const PlaceView& place = rows.table.places[p];
  const int girder = place.girder != 0 ? place.girder : series.girder;
  out += rows.stage + "," + rows.name + "," + rows.kind + ",";
  if (girder != 0) out += std::to_string(girder);
  out += ",";
  put_number(place.position / 12, out);
  out += "," + csv_cell(member_of(place, series)) + "," + rows.table.name + rows.suffix + "," +
         csv_cell(series.unit) + ",";
  put_number(value, out);
  out += ",";
  put_number(governing, out);
  out += "\r\n";
}

// governing: the stages that the values come from, or nothing.
void put_values(const Rows& rows, const Values& values, const Values* governing, std::string& out) {
  for (std::size_t s = 0; s < values.size(); ++s)
    for (std::size_t p = 0; p < values[s].size(); ++p)
      put_row(rows, s, p, values[s][p], governing == nullptr ? NAN : (*governing)[s][p], out);
}

void put_table(const TableView& t, const std::vector<std::string>& stage_name, std::string& out) {
  const auto put_stages = [&](const std::vector<Values>& stages, const char* kind) {
    for (std::size_t k = 0; k < stages.size(); ++k)
      put_values({t, std::to_string(k + 1), csv_cell(stage_name[k]), kind, ""}, stages[k], nullptr,
                 out);
  };
  put_stages(t.increment, "increment");
  put_stages(t.total, "total");
  put_values({t, "", "", "total", ""}, t.single, nullptr, out);
  put_values({t, "", "", "envelope", " high"}, t.envelope.high, &t.envelope.high_stage, out);
  put_values({t, "", "", "envelope", " low"}, t.envelope.low, &t.envelope.low_stage, out);
}

}  // namespace

std::string csv_cell(const std::string& text) {
  std::string cell = text;
  if (text.find_first_of("=+-@\t\r") == 0) cell.insert(0, 1, '\'');
  if (cell.find_first_of(",\"\r\n") == cell.npos) return cell;
  for (std::size_t at = 0; (at = cell.find('"', at)) != cell.npos; at += 2) cell.insert(at, 1, '"');
  return "\"" + cell + "\"";
}

std::string csv_table(const ResultsView& results, bool strips) {
  std::string out =
      "stage,stage_name,kind,girder,station_ft,member,quantity,unit,value,governing_stage\r\n";
  for (const TableView& t : results.tables) {
    const bool by_strip =
        t.name == "s22" || t.name == "s12" || t.name == "mid22" || t.name == "mid12";
    if (strips || !by_strip) put_table(t, results.stage_name, out);
  }
  return out;
}

}  // namespace zelvo
