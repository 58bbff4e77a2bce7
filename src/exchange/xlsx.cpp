#include "exchange/xlsx.h"

#include <xlsxwriter.h>

#include <cmath>
#include <filesystem>

#include "base/failures.h"

namespace zelvo {

namespace {

constexpr int PLACE_COLUMNS = 3;  // station, girder, member
constexpr lxw_row_t CHART_ROW = 3, CHART_ROWS = 22;
constexpr double CHART_WIDTH = 2.0, CHART_HEIGHT = 1.4;  // of libxlsxwriter's 480 x 288 pixels
constexpr std::size_t MOST_CURVES = 40;                  // more are not charted
constexpr lxw_row_t AXIS_ROWS = 1048576;
constexpr lxw_col_t AXIS_COLUMNS = 16384;

// A column of values and how it is drawn.
enum class Curve { NONE, STAGE, LAST_STAGE, ENVELOPE };
struct Column {
  std::string header;
  const std::vector<double>* values;
  Curve curve;
};

struct Book {
  const std::string& path;
  lxw_workbook* workbook;
  lxw_format *bold, *number, *radians;
};

void put_number(lxw_worksheet* sheet, lxw_row_t row, int col, double value, lxw_format* format) {
  if (std::isfinite(value))
    worksheet_write_number(sheet, row, static_cast<lxw_col_t>(col), value, format);
}

void put_text(lxw_worksheet* sheet, lxw_row_t row, int col, const std::string& text,
              lxw_format* format = nullptr) {
  worksheet_write_string(sheet, row, static_cast<lxw_col_t>(col), text.c_str(), format);
}

lxw_worksheet* new_sheet(const Book& book, const std::string& name) {
  lxw_worksheet* sheet = workbook_add_worksheet(book.workbook, name.c_str());
  if (sheet == nullptr) throw FileFailure{book.path, "sheet " + name + " cannot be made beside it"};
  return sheet;
}

void add_columns(const TableView& t, const std::string& before, const Values& values, Curve curve,
                 std::vector<Column>& columns) {
  for (std::size_t s = 0; s < values.size(); ++s) {
    const SeriesView& series = t.series[s];
    columns.push_back({before + (values.size() > 1 || series.girder > 0 ? ", " + series.name : ""),
                       &values[s], curve});
  }
}

std::vector<Column> columns_of(const TableView& t, const std::vector<std::string>& stage_name) {
  std::vector<Column> columns;
  const auto stages = [&](const std::vector<Values>& values, const char* kind, Curve curve) {
    for (std::size_t k = 0; k < values.size(); ++k) {
      const bool last = curve == Curve::STAGE && k + 1 == values.size();
      add_columns(t, std::string(kind) + std::to_string(k + 1) + " " + stage_name[k], values[k],
                  last ? Curve::LAST_STAGE : curve, columns);
    }
  };
  add_columns(t, t.title, t.single, Curve::LAST_STAGE, columns);
  stages(t.total, "total ", Curve::STAGE);
  add_columns(t, "envelope high", t.envelope.high, Curve::ENVELOPE, columns);
  add_columns(t, "stage of high", t.envelope.high_stage, Curve::NONE, columns);
  add_columns(t, "envelope low", t.envelope.low, Curve::ENVELOPE, columns);
  add_columns(t, "stage of low", t.envelope.low_stage, Curve::NONE, columns);
  stages(t.increment, "increment ", Curve::NONE);
  if (columns.size() + PLACE_COLUMNS > AXIS_COLUMNS) columns.resize(AXIS_COLUMNS - PLACE_COLUMNS);
  return columns;
}

// Curves along the bridge; bars where the places are members, supports or modes.
bool along_bridge(const TableView& t) {
  return t.along == "station" || t.along == "section" || t.along == "bay" ||
         t.along == "tenth point";
}

bool drawn(const Column& c, bool curves) {
  return curves ? c.curve != Curve::NONE
                : c.curve == Curve::ENVELOPE || c.curve == Curve::LAST_STAGE;
}

void style(lxw_chart_series* series, Curve curve) {
  lxw_chart_line line{};
  line.width = curve == Curve::LAST_STAGE ? 3.0F : 1.25F;
  if (curve == Curve::ENVELOPE) {
    line.color = LXW_COLOR_GRAY;
    line.dash_type = LXW_CHART_LINE_DASH_DASH;
  }
  chart_series_set_line(series, &line);
}

bool charted(const TableView& t, const std::vector<Column>& columns) {
  std::size_t count = 0;
  for (const Column& c : columns) count += drawn(c, along_bridge(t));
  return count > 0 && count <= MOST_CURVES;
}

// The chart of the columns whose values begin in row `first`.
void put_chart(const Book& book, lxw_worksheet* sheet, const TableView& t,
               const std::vector<Column>& columns, lxw_row_t first) {
  const bool curves = along_bridge(t);
  lxw_chart* chart = workbook_add_chart(
      book.workbook, static_cast<uint8_t>(curves ? LXW_CHART_SCATTER_STRAIGHT : LXW_CHART_COLUMN));
  const auto last = static_cast<lxw_row_t>(first + t.places.size() - 1);
  const lxw_col_t place = curves ? 0 : PLACE_COLUMNS - 1;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!drawn(columns[i], curves)) continue;
    const auto col = static_cast<lxw_col_t>(PLACE_COLUMNS + i);
    lxw_chart_series* series = chart_add_series(chart, nullptr, nullptr);
    chart_series_set_categories(series, t.name.c_str(), first, place, last, place);
    chart_series_set_values(series, t.name.c_str(), first, col, last, col);
    // A name given as text would be a formula if it began with an equals sign.
    chart_series_set_name_range(series, t.name.c_str(), first - 1, col);
    if (curves) style(series, columns[i].curve);
  }
  chart_title_set_name(chart, t.title.c_str());
  chart_axis_set_name(chart->x_axis, curves ? "ft" : t.along.c_str());
  chart_axis_set_name(chart->y_axis, t.unit.c_str());
  chart_axis_set_label_position(chart->x_axis, LXW_CHART_AXIS_LABEL_POSITION_LOW);
  lxw_chart_options options{};
  options.x_scale = CHART_WIDTH;
  options.y_scale = CHART_HEIGHT;
  worksheet_insert_chart_opt(sheet, CHART_ROW, 0, chart, &options);
}

void put_places(lxw_worksheet* sheet, const TableView& t, lxw_row_t row, std::size_t p) {
  const PlaceView& place = t.places[p];
  put_number(sheet, row, 0, place.position / 12, nullptr);
  if (place.girder > 0) put_number(sheet, row, 1, place.girder, nullptr);
  if (!place.member.empty()) put_text(sheet, row, 2, place.member);
}

// Rows from the top down: with constant memory none can be gone back to.
void put_sheet(const Book& book, const TableView& t, const std::vector<std::string>& stage_name) {
  lxw_worksheet* sheet = new_sheet(book, t.name);
  const std::vector<Column> columns = columns_of(t, stage_name);
  const bool chart = charted(t, columns);
  const lxw_row_t header = CHART_ROW + (chart ? CHART_ROWS : 0), first = header + 1;
  worksheet_set_column(sheet, PLACE_COLUMNS - 1, AXIS_COLUMNS - 1, 16, nullptr);
  put_text(sheet, 0, 0, t.title, book.bold);
  put_text(sheet, 1, 0, t.unit + "; positive: " + t.positive);
  if (chart) put_chart(book, sheet, t, columns, first);
  const char* names[PLACE_COLUMNS] = {"station, ft", "girder", "member"};
  for (int i = 0; i < PLACE_COLUMNS; ++i) put_text(sheet, header, i, names[i], book.bold);
  int col = PLACE_COLUMNS;
  for (const Column& c : columns) put_text(sheet, header, col++, c.header, book.bold);
  lxw_format* format = t.unit == "rad" ? book.radians : book.number;
  for (std::size_t p = 0; p < t.places.size() && first + p < AXIS_ROWS; ++p) {
    const auto row = static_cast<lxw_row_t>(first + p);
    put_places(sheet, t, row, p);
    col = PLACE_COLUMNS;
    for (const Column& c : columns) put_number(sheet, row, col++, (*c.values)[p], format);
  }
}

void put_contents(const Book& book, const ResultsView& results) {
  lxw_worksheet* sheet = new_sheet(book, "contents");
  worksheet_set_column(sheet, 0, 1, 28, nullptr);
  put_text(sheet, 0, 0, results.title, book.bold);
  const char* names[] = {"sheet", "quantity", "unit", "positive"};
  for (int i = 0; i < 4; ++i) put_text(sheet, 2, i, names[i], book.bold);
  lxw_row_t row = 3;
  for (const TableView& t : results.tables) {
    const std::string* texts[] = {&t.name, &t.title, &t.unit, &t.positive};
    for (int i = 0; i < 4; ++i) put_text(sheet, row, i, *texts[i]);
    ++row;
  }
}

}  // namespace

void write_xlsx(const ResultsView& results, const std::string& path) {
  lxw_workbook_options options{};
  options.constant_memory = LXW_TRUE;
  // Rows wait in temporary files, whose writes are not checked: on the disk of the workbook, so that
  // a full one fails when the workbook is closed.
  std::string folder = std::filesystem::absolute(path).parent_path().string();
  options.tmpdir = folder.data();
  Book book{path, workbook_new_opt(path.c_str(), &options), nullptr, nullptr, nullptr};
  if (book.workbook == nullptr) throw FileFailure{path, "no memory for a workbook"};
  book.bold = workbook_add_format(book.workbook);
  format_set_bold(book.bold);
  book.number = workbook_add_format(book.workbook);
  format_set_num_format(book.number, "#,##0.000");
  book.radians = workbook_add_format(book.workbook);
  format_set_num_format(book.radians, "0.000000");
  put_contents(book, results);
  for (const TableView& t : results.tables) put_sheet(book, t, results.stage_name);
  const lxw_error error = workbook_close(book.workbook);
  if (error != LXW_NO_ERROR) throw FileFailure{path, lxw_strerror(error)};
}

}  // namespace zelvo
