#include "host/dispatch.h"

#include <gmock/gmock.h>

#include <cstring>
#include <string>

#include "support/fake_host.h"

namespace quentara {
namespace {

TEST(Dispatch, SaysWhatItIs) {
  FakeHost host;
  EXPECT_EQ(PF_Err_NONE, host.Send(PF_Cmd_ABOUT));
  const std::string text = host.out.return_msg;
  EXPECT_EQ(0u, text.find("Velmor! 2.1.7\r"));
  EXPECT_GT(text.size(), 20u);

  FakeHost ascii;
  ascii.in.appl_id = 0x4B657947;
  ascii.utils.ansi.strcpy = nullptr;
  EXPECT_EQ(PF_Err_NONE, ascii.Send(PF_Cmd_ABOUT));
  EXPECT_EQ(text, ascii.out.return_msg);
}

TEST(Dispatch, SpellsMarksOutForAHostThatShowsAscii) {
  A_char message[256];
  Nivra::CopyAsAscii("a\x99 b\xA9", message);
  EXPECT_STREQ("a(R) b(C)", message);
  Nivra::CopyAsAscii(std::string(400, '\xA9').c_str(), message);
  EXPECT_EQ(255u, std::strlen(message));
}

TEST(Dispatch, SetsVersionAndFlags) {
  FakeHost host;
  EXPECT_EQ(PF_Err_NONE, host.Send(PF_Cmd_GLOBAL_SETUP));
  EXPECT_EQ(0x0010BE00u, host.out.my_version);
  EXPECT_EQ(0x06001000, host.out.out_flags);
  EXPECT_EQ(0x00008009, host.out.out_flags2);
}

TEST(Dispatch, LeavesOtherCommandsAlone) {
  for (int command = -1; command < 40; ++command) {
    if (command == PF_Cmd_ABOUT || command == PF_Cmd_GLOBAL_SETUP || command == PF_Cmd_PARAMS_SETUP ||
        command == PF_Cmd_RENDER || command == PF_Cmd_UPDATE_PARAMS_UI)
      continue;
    FakeHost host;
    std::memset(&host.out, 0x5A, sizeof host.out);
    EXPECT_EQ(PF_Err_NONE, host.Send(command)) << command;
    EXPECT_EQ(std::string(sizeof host.out, 0x5A),
              std::string(reinterpret_cast<const char*>(&host.out), sizeof host.out))
        << command;
  }
}

}  // namespace
}  // namespace quentara
