#include "sheet/tiles.h"

namespace quentara::cli {
namespace {

bool IsSwitch(const Parameter& row) {
  return row.kind == ParameterKind::CheckBox && !row.group.empty() && row.group == row.name;
}

bool IsStylePopup(const Parameter& row) {
  return row.kind == ParameterKind::Popup && row.group.empty() && row.name == "Roto";
}

}  // namespace

std::vector<TileSection> ListTiles(const ParameterTable& table, const ParameterValues& base) {
  const std::vector<Parameter>& rows = table.Rows();
  ParameterValues plain = base;
  for (std::size_t i = 0; i < rows.size(); ++i)
    if (IsSwitch(rows[i])) plain[i].number = 0;

  TileSection styles{"Paint styles", {}}, switches{"Outlines and patterns", {}};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (IsStylePopup(rows[i])) {
      switches.heading += " over " + FormatValue(rows[i], base[i]);
      for (const std::string& choice : rows[i].choices) {
        styles.tiles.push_back({choice, plain});
        styles.tiles.back().values[i].number = static_cast<double>(styles.tiles.size());
      }
    } else if (IsSwitch(rows[i])) {
      switches.tiles.push_back({rows[i].name, plain});
      switches.tiles.back().values[i].number = 1;
    }
  }
  std::vector<TileSection> sections;
  for (TileSection* section : {&styles, &switches})
    if (!section->tiles.empty()) sections.push_back(std::move(*section));
  return sections;
}

}  // namespace quentara::cli
