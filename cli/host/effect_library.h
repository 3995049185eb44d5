/// An effect as a shared library.
#pragma once

#include <string>

#include "AE_Effect.h"

namespace quentara::cli {

using EffectEntry = PF_Err (*)(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamDef* parameters[],
                               PF_LayerDef* output, void* extra);

/// Where the effect is looked for when nobody says: Quentara.so beside the program, then in ../lib/quentara/.
/// @throws EffectError that names both places when it is in neither.
std::string DefaultEffectPath();

/// Holds a library loaded.
class EffectLibrary {
 public:
  /// @throws EffectError when the file cannot be loaded or does not export PluginEntry.
  explicit EffectLibrary(const std::string& path);
  ~EffectLibrary();
  EffectLibrary(const EffectLibrary&) = delete;
  EffectLibrary& operator=(const EffectLibrary&) = delete;

  EffectEntry Entry() const { return entry_; }

 private:
  void* library_ = nullptr;
  EffectEntry entry_ = nullptr;
};

}  // namespace quentara::cli
