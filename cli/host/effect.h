/// A loaded effect, and its instances that render.
#pragma once

#include <string>
#include <vector>

#include "host/host_context.h"
#include "media/frame.h"
#include "parameters/parameter_table.h"

namespace quentara::cli {

/// An effect that is loaded, set up, and has defined its parameters. Instances refer to it and may be used at the same
/// time as each other.
class Effect {
 public:
  /// @throws EffectError when the library is no effect or its set-up fails.
  Effect(const std::string& libraryPath, const HostIdentity& identity);
  ~Effect();
  Effect(const Effect&) = delete;
  Effect& operator=(const Effect&) = delete;

  const HostIdentity& Identity() const { return identity_; }
  const ParameterTable& Parameters() const { return table_; }

  /// What the effect says about itself, on one line.
  std::string About();

  /// As the effect numbers itself, such as "2.1.7".
  const std::string& Version() const { return version_; }

  /// For each row of the table, whether the effect greys it out under these values.
  std::vector<bool> GreyedRows(const ParameterValues& values);

 private:
  friend class EffectInstance;

  ParameterTable DefineParameters();

  HostIdentity identity_;
  EffectLibrary library_;
  std::string note_;
  std::string version_;
  HostContext context_;
  std::vector<ParameterDefinition> definitions_;
  ParameterTable table_;
};

/// A fraction 0 < numerator / denominator <= 1 of the full size.
struct Downsampling {
  int numerator = 1;
  int denominator = 1;
};

/// Where in its clip a frame stands.
struct FrameTime {
  std::int64_t index = 0;  ///< from 0
  std::int64_t total = 1;  ///< frames of the clip
  std::int64_t rateNumerator = 24;
  std::int64_t rateDenominator = 1;
};

/// An effect applied to a clip. To be used by one thread at a time.
class EffectInstance {
 public:
  /// @param effect  outlives the instance.
  /// @param threads  the workers that one frame is offered, at least 1.
  EffectInstance(Effect& effect, int threads, Watch watch, Downsampling downsampling = {});
  ~EffectInstance();
  EffectInstance(const EffectInstance&) = delete;
  EffectInstance& operator=(const EffectInstance&) = delete;

  /// The frame as the effect renders it, of the same size and depth.
  /// @throws Cancelled, EffectError
  media::Frame Render(const media::Frame& frame, const FrameTime& time, const ParameterValues& values);

 private:
  void Describe(const media::Frame& frame, const FrameTime& time);
  void SendFrame(PF_ParamDef* parameters[], PF_LayerDef& output);

  Effect& effect_;
  HostContext context_;
  Downsampling downsampling_;
};

}  // namespace quentara::cli
