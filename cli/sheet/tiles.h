/// What a contact sheet shows of an effect.
#pragma once

#include <string>
#include <vector>

#include "parameters/parameter_table.h"

namespace quentara::cli {

/// One picture to render.
struct Tile {
  std::string label;
  ParameterValues values;
};

struct TileSection {
  std::string heading;
  std::vector<Tile> tiles;
};

/// Everything that an artist can choose from, as the table has it: a section with a tile for each choice of the popup
/// "Roto", all switches off; and one with a tile for each switch, alone on, over the style that `base` sets. A switch
/// is the check box of a group that has the group's own name. All other parameters are those of `base`. A section
/// without tiles is left out.
std::vector<TileSection> ListTiles(const ParameterTable& table, const ParameterValues& base);

}  // namespace quentara::cli
