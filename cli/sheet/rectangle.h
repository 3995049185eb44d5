/// A place on a sheet.
#pragma once

namespace quentara::cli {

/// In pixels; y grows downwards.
struct Rectangle {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

}  // namespace quentara::cli
