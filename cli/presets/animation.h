/// Parameters over time, as an artist sets keys for sliders in the host.
///
///     {
///       "Flat Shaded/Flatness": [
///         {"frame": 1, "value": 0},
///         {"frame": 49, "value": 40, "interpolation": "hold"},
///         {"frame": 73, "value": 10}
///       ],
///       "Roto": [{"seconds": 0, "value": "Gouache"}, {"seconds": 2.5, "value": "Bristle"}]
///     }
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "parameters/parameter_table.h"
#include "presets/json_file.h"

namespace quentara::cli {

/// Keys of several parameters. To be used by several threads at the same time.
class Animation {
 public:
  /// Of no parameter.
  Animation() = default;

  /// Reads a file: by parameter a list of keys, in the order of their times, each at a "frame" or at "seconds" (all
  /// keys of a parameter alike), with a "value" and the "interpolation" from there to the next key: "linear" if it is
  /// not said, or "hold". Popups and check boxes hold.
  /// @throws UsageError that names the file and the parameter.
  Animation(const std::string& path, const ParameterTable& table);

  /// The values of one frame: of a parameter with keys the value of the key at or before it, or where that key's
  /// interpolation is linear, what lies between the two keys around it; before the first key the first one's. A
  /// slider's value is the nearest whole number, a half upwards; colours change by channel. All else is as in `values`.
  /// @param frame  the number of the frame in its clip.
  /// @param seconds  its time.
  ParameterValues At(std::int64_t frame, double seconds, ParameterValues values) const;

 private:
  struct Key {
    double time;
    Value value;
    bool hold;
  };
  struct Track {
    std::size_t place;  ///< in the table
    ParameterKind kind;
    bool inSeconds;
    std::vector<Key> keys;
  };

  static Key ReadKey(const Parameter& row, const char* unit, const Json& json);
  static Track ReadTrack(const Parameter& row, const Json& json);
  static Value ValueAt(const Track& track, double time);

  std::vector<Track> tracks_;
};

}  // namespace quentara::cli
