#include "host/param_visibility.h"

#include <algorithm>
#include <iterator>

#include "host/param_table.h"
#include "host/settings_reader.h"

namespace Nivra {
namespace {

using quentara::BlurType;
using quentara::Style;

// Identifiers of the rows that rules hang on.
enum Id : A_long {
  kRoto = 6,
  kUseMainBlur = 16,
  kMainBlurGroup = 52,
  kOutlineBlurGroup = 58,
  kColorEffectsGroup = 64,
  kMarkerGroup = 111,
};

// The groups of the paint styles, in the order of `Style`.
constexpr A_long kStyleGroups[] = {67, 69, 71, 76, 82, 88, 92, 99};

// Places in a blur group, counted from its start, and in the group of Marker Outlines.
enum BlurPlace { kBlurStart, kType, kRadius, kThresh, kQuality, kBlurring, kTestRadius, kBlurRadius, kBlurEnd };
enum MarkerPlace { kReuseCrackle = 2, kFlatness, kSimplicity, kSeparation };

/// What the rows walked so far have said.
class Walk {
 public:
  /// @param param  the row's parameter; null for a group row of a host without groups.
  /// @return whether the row has an effect.
  bool Step(const ParamRow& row, const PF_ParamDef* param) {
    if (row.kind == ParamKind::GroupStart) EnterGroup(row.id);
    const bool enabled = IsEnabled(row);
    if (param != nullptr) Note(row, *param);
    if (row.kind == ParamKind::GroupEnd) group_ = 0;
    ++place_;
    return enabled;
  }

 private:
  void EnterGroup(A_long id) {
    group_ = id;
    place_ = 0;
    switchedOn_ = reuseCrackle_ = false;
  }

  bool IsEnabled(const ParamRow& row) const {
    if (group_ == 0 || group_ == kColorEffectsGroup) return true;
    if (group_ == kMainBlurGroup) return IsBlurEnabled();
    if (group_ == kOutlineBlurGroup) return !useMainBlur_ && IsBlurEnabled();
    const auto* const styleGroup = std::find(std::begin(kStyleGroups), std::end(kStyleGroups), group_);
    if (styleGroup != std::end(kStyleGroups)) return static_cast<int>(style_) == styleGroup - kStyleGroups;
    if (IsGroup(row.kind) || place_ == 1) return true;
    return switchedOn_ && (group_ != kMarkerGroup || IsMarkerEnabled());
  }

  bool IsBlurEnabled() const {
    const bool byRange = blurType_ == BlurType::Gaussian || blurType_ == BlurType::Box;
    switch (place_) {
      case kRadius:
        return byRange;
      case kThresh:
      case kQuality:
        return byRange && radius_ > 0;
      case kBlurring:
      case kTestRadius:
      case kBlurRadius:
        return blurType_ == BlurType::Supersmart;
      default:
        return true;
    }
  }

  bool IsMarkerEnabled() const {
    const bool crackled = style_ == Style::Crackle;
    switch (place_) {
      case kReuseCrackle:
        return crackled;
      case kFlatness:
      case kSimplicity:
      case kSeparation:
        return !(crackled && reuseCrackle_);
      default:
        return true;
    }
  }

  void Note(const ParamRow& row, const PF_ParamDef& param) {
    if (row.id == kRoto) style_ = StyleOfChoice(param.u.pd.value - 1);
    if (row.id == kUseMainBlur) useMainBlur_ = param.u.bd.value != 0;
    if (group_ == kMainBlurGroup || group_ == kOutlineBlurGroup) {
      if (place_ == kType) blurType_ = static_cast<BlurType>(param.u.pd.value - 1);
      if (place_ == kRadius) radius_ = param.u.sd.value;
    } else if (row.kind == ParamKind::CheckBox) {
      if (place_ == 1) switchedOn_ = param.u.bd.value != 0;
      if (group_ == kMarkerGroup && place_ == kReuseCrackle) reuseCrackle_ = param.u.bd.value != 0;
    }
  }

  Style style_ = Style::NoRoto;
  bool useMainBlur_ = false;
  A_long group_ = 0;  ///< the identifier of the group's start; 0 outside of any group
  int place_ = 0;     ///< rows since the group's start
  BlurType blurType_ = BlurType::None;
  int radius_ = 0;
  bool switchedOn_ = false;
  bool reuseCrackle_ = false;
};

}  // namespace

int ParamEnabled(const PF_ParamDef* const* params, bool hasGroups, int index) {
  Walk walk;
  int at = 1;
  for (const ParamRow* row = kParamTable.begin(); row != kParamTable.end() - 1; ++row) {
    const bool listed = hasGroups || !IsGroup(row->kind);
    const bool enabled = walk.Step(*row, listed ? params[at] : nullptr);
    if (listed && at++ == index) return enabled ? 1 : 0;
  }
  return -1;
}

}  // namespace Nivra
