#include "host/update_ui_command.h"

#include <optional>

#include "AE_EffectCB.h"
#include "AE_EffectSuites.h"
#include "SPBasic.h"
#include "host/param_visibility.h"
#include "host/plugin_nivra.h"

namespace Nivra {
namespace {

constexpr int kSuiteVersion = 2;

/// The beginning of the suite, which is all that is used of it.
struct ParamUiSuite {
  PF_Err (*updateParamUi)(PF_ProgPtr effect, PF_ParamIndex index, const PF_ParamDef* param);
};

/// Acquires the suite when it is first needed and releases it at the end. Failures are thrown as the host's code.
class SuiteHelper {
 public:
  explicit SuiteHelper(const PF_InData& inData) : effect_(inData.effect_ref), basic_(inData.pica_basicP) {
    if (basic_ == nullptr) throw static_cast<PF_Err>(PF_Err_BAD_CALLBACK_PARAM);
  }
  ~SuiteHelper() {
    if (suite_ != nullptr) basic_->ReleaseSuite(kPFParamUtilsSuite, kSuiteVersion);
  }
  SuiteHelper(const SuiteHelper&) = delete;
  SuiteHelper& operator=(const SuiteHelper&) = delete;

  void Show(PF_ParamIndex index, const PF_ParamDef& param) {
    if (suite_ == nullptr) Acquire();
    suite_->updateParamUi(effect_, index, &param);
  }

 private:
  void Acquire() {
    const void* suite = nullptr;
    const SPErr error = basic_->AcquireSuite(kPFParamUtilsSuite, kSuiteVersion, &suite);
    if (error != 0 || suite == nullptr) throw static_cast<PF_Err>(PF_Err_BAD_CALLBACK_PARAM);
    suite_ = static_cast<const ParamUiSuite*>(suite);
  }

  const PF_ProgPtr effect_;
  SPBasicSuite* const basic_;
  const ParamUiSuite* suite_ = nullptr;
};

void MakeHelper(const PF_InData& inData, std::optional<SuiteHelper>& helper) {
  try {
    helper.emplace(inData);
  } catch (...) {
    // Without a helper the rows stay as they are.
  }
}

}  // namespace

void UpdateParamsUi(PF_InData* inData, PF_ParamDef* params[], bool suites) {
  const EffectContext context(inData, params);
  std::optional<SuiteHelper> helper;
  if (suites) MakeHelper(*inData, helper);
  for (int index = 1;; ++index) {
    const int enabled = ParamEnabled(params, context.host.HasGroups(), index);
    if (enabled < 0) return;
    PF_ParamDef shown = *params[index];
    shown.ui_flags = enabled != 0 ? shown.ui_flags & ~PF_PUI_DISABLED : shown.ui_flags | PF_PUI_DISABLED;
    try {
      if (helper) helper->Show(index, shown);
    } catch (...) {
      helper.reset();
    }
  }
}

}  // namespace Nivra
