// The library as a host loads it.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>

#include "AE_Effect.h"

namespace quentara {
namespace {

TEST(Library, AnswersThroughItsEntryPoint) {
  void* const library = dlopen(QUENTARA_EFFECT, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(nullptr, library) << dlerror();
  using Entry = PF_Err (*)(PF_Cmd, PF_InData*, PF_OutData*, PF_ParamDef**, PF_LayerDef*, void*);
  const auto entry = reinterpret_cast<Entry>(dlsym(library, "PluginEntry"));
  ASSERT_NE(nullptr, entry);
  PF_InData in{};
  PF_OutData out{};
  EXPECT_EQ(PF_Err_NONE, entry(PF_Cmd_GLOBAL_SETUP, &in, &out, nullptr, nullptr, nullptr));
  EXPECT_NE(0u, out.my_version);
  EXPECT_EQ(0, dlclose(library));
}

}  // namespace
}  // namespace quentara
