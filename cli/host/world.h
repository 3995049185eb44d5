/// A picture in the form in which an effect gets it from its host.
#pragma once

#include <cstdint>
#include <memory>

#include "AE_Effect.h"
#include "media/frame.h"

namespace quentara::cli {

/// Owns the samples of a PF_EffectWorld. Rows start at multiples of 64 bytes and always have padding behind them.
class World {
 public:
  /// All samples 0.
  World(int width, int height, bool deep);
  /// The samples of a frame.
  explicit World(const media::Frame& frame);

  PF_LayerDef& Layer() { return layer_; }

  /// Copies the samples to a frame of the same size and depth.
  void CopyTo(media::Frame& frame) const;

 private:
  struct Free {
    void operator()(std::uint8_t* samples) const;
  };

  std::unique_ptr<std::uint8_t[], Free> samples_;
  PF_LayerDef layer_{};
};

}  // namespace quentara::cli
