#include <gtest/gtest.h>

#include <map>
#include <set>
#include <utility>
#include <vector>

#include "AE_EffectSuites.h"
#include "SPBasic.h"
#include "host/dispatch.h"
#include "support/fake_host.h"

namespace quentara {
namespace {

/// The suite that a host offers, and what the effect does with it.
struct Suite {
  int acquired = 0, released = 0;
  bool refuse = false;
  int updates = 0;
  std::map<PF_ParamIndex, bool> greyed;
};
Suite* offered = nullptr;  // the callbacks do not say which suite is meant; tests run one after the other

PF_Err Update(PF_ProgPtr, PF_ParamIndex index, const PF_ParamDef* def) {
  offered->greyed[index] = (def->ui_flags & PF_PUI_DISABLED) != 0;
  return offered->updates++, PF_Err_NONE;
}

SPErr Acquire(const char* name, int32_t version, const void** suite) {
  static const PF_ParamUtilsSuite2 functions = {Update, {}, {}, {}, {}, {}, {}, {}, {}, {}};
  EXPECT_STREQ("PF Param Utils Suite", name);
  EXPECT_EQ(2, version);
  *suite = offered->refuse ? nullptr : &functions;
  return offered->acquired++, 0;
}

SPErr Release(const char*, int32_t) {
  return offered->released++, 0;
}

Suite Greyed(FakeHost& host, Suite suite = {}) {
  SPBasicSuite basic{};
  basic.AcquireSuite = Acquire;
  basic.ReleaseSuite = Release;
  offered = &suite;
  host.in.pica_basicP = &basic;
  std::vector<PF_ParamDef*> list;
  for (PF_ParamDef& param : host.params) list.push_back(&param);
  EXPECT_EQ(PF_Err_NONE, Nivra::Dispatch(PF_Cmd_UPDATE_PARAMS_UI, &host.in, &host.out, list.data(), nullptr, nullptr));
  offered = nullptr;
  return suite;
}

using Ids = std::set<int>;

Ids Range(int first, int last) {
  Ids ids;
  for (int id = first; id <= last; ++id) ids.insert(id);
  return ids;
}

Ids operator+(Ids a, const Ids& b) {
  a.insert(b.begin(), b.end());
  return a;
}

Ids operator-(Ids a, const Ids& b) {
  for (const int id : b) a.erase(id);
  return a;
}

// Identifiers of the rows, by what they hang on.
const Ids kMainRanges = {2, 3, 4}, kMainSmart = {54, 55, 56};
const Ids kOutlineBlur = Ids{18, 19, 20, 21, 58} + Range(60, 63), kOutlineSmart = {60, 61, 62};
const Ids kFlatShaded = {67, 7, 8, 43, 9, 68}, kFlatDetailed = {69, 10, 11, 12, 70};
const Ids kStyles = kFlatShaded + kFlatDetailed + Range(71, 106);
const Ids kSoft = {23, 24, 47, 25}, kComic = {27, 28, 29, 30, 48, 31}, kMarker = Range(113, 120);
const Ids kShadow = {33, 34, 35, 49}, kWoodcut = Range(126, 133), kScratchboard = Range(137, 143);
const Ids kConte = Range(147, 153), kHalftone = {14, 44, 45, 46, 156, 15}, kStipple = {37, 38, 50, 51};
const Ids kDuotone = {162, 163};
const Ids kSwitched =
    kSoft + kComic + kMarker + kShadow + kWoodcut + kScratchboard + kConte + kHalftone + kStipple + kDuotone;
// At the defaults: Box blur, "Use Main Blur", Flat Shaded, Comic Outlines.
const Ids kDefault = kMainSmart + kOutlineBlur + (kStyles - kFlatShaded) + (kSwitched - kComic);

struct Case {
  const char* name;
  std::vector<std::pair<int, A_long>> values;  ///< by identifier; popups from 1
  Ids greyed;
};

const Case kCases[] = {
    {"defaults", {}, kDefault},
    {"no blur", {{1, 4}}, kDefault + kMainRanges},
    {"Gaussian of radius 0", {{1, 1}, {2, 0}}, kDefault + Ids{3, 4}},
    {"Supersmart", {{1, 3}}, (kDefault + kMainRanges) - kMainSmart},
    {"its own outline blur", {{16, 0}}, (kDefault - kOutlineBlur) + kOutlineSmart},
    {"its own Supersmart outline blur", {{16, 0}, {18, 3}}, (kDefault - kOutlineBlur) + Ids{19, 20, 21}},
    {"no style", {{6, 3}}, kDefault + kFlatShaded},
    {"Flat Detailed", {{6, 2}}, (kDefault + kFlatShaded) - kFlatDetailed},
    {"Airbrush", {{6, 4}}, (kDefault + kFlatShaded) - Range(71, 75)},
    {"Bristle", {{6, 5}}, (kDefault + kFlatShaded) - Range(76, 81)},
    {"Crackle", {{6, 6}}, (kDefault + kFlatShaded) - Range(82, 87)},
    {"Droplet", {{6, 7}}, (kDefault + kFlatShaded) - Range(88, 91)},
    {"Gouache", {{6, 8}}, (kDefault + kFlatShaded) - Range(92, 98)},
    {"Poster Paint", {{6, 9}}, (kDefault + kFlatShaded) - Range(99, 106)},
    {"markers", {{112, 1}}, (kDefault - kMarker) + Ids{113}},
    {"markers along Crackle",
     {{6, 6}, {112, 1}},
     ((kDefault + kFlatShaded) - Range(82, 87) - kMarker) + Ids{114, 115, 116}},
    {"markers beside Crackle", {{6, 6}, {112, 1}, {113, 0}}, (kDefault + kFlatShaded) - Range(82, 87) - kMarker},
    {"every switch",
     {{22, 1}, {32, 1}, {125, 1}, {136, 1}, {146, 1}, {13, 1}, {36, 1}, {161, 1}, {26, 0}},
     (kDefault - kSwitched) + kComic + kMarker},
};

void Set(FakeHost& host, int id, A_long value) {
  PF_ParamDef& param = host.Param(id);
  if (param.param_type == PF_Param_POPUP) param.u.pd.value = value;
  if (param.param_type == PF_Param_SLIDER) param.u.sd.value = value;
  if (param.param_type == PF_Param_CHECKBOX) param.u.bd.value = value;
}

TEST(ParamVisibility, GreysWhatDoesNothingOnBothKindsOfHost) {
  for (const A_short minor : {A_short(12), A_short(11)})
    for (const Case& one : kCases) {
      SCOPED_TRACE(testing::Message() << one.name << ", host 12." << minor);
      FakeHost host(HostWorkers::Serial, {12, minor});
      ASSERT_EQ(PF_Err_NONE, host.DefineParams());
      for (const auto& [id, value] : one.values) Set(host, id, value);
      const Suite suite = Greyed(host);
      // All but the input layer and the last row, "Blend With Original".
      ASSERT_EQ(host.params.size() - 2, suite.greyed.size());
      for (const auto& [index, greyed] : suite.greyed) {
        const int id = host.params[static_cast<std::size_t>(index)].uu.id;
        EXPECT_EQ(one.greyed.count(id) != 0, greyed) << "identifier " << id;
      }
      EXPECT_EQ(1, suite.acquired);
      EXPECT_EQ(1, suite.released);
    }
}

TEST(ParamVisibility, LeavesTheRowsAloneWithoutASuite) {
  FakeHost host;
  ASSERT_EQ(PF_Err_NONE, host.DefineParams());
  Suite refusing;
  refusing.refuse = true;
  const Suite refused = Greyed(host, refusing);
  EXPECT_EQ(1, refused.acquired);  // the first failure drops the helper
  EXPECT_EQ(0, refused.released + refused.updates);

  host.in.appl_id = 0x4B657947;
  EXPECT_EQ(0, Greyed(host).acquired);
}

}  // namespace
}  // namespace quentara
