// Several processes at once: the driver counts their handles, the library its own calls.
#include <gtest/gtest.h>

#include "tests/e2e/notebook.h"
#include "tests/e2e/peer.h"

namespace vexa::test {
namespace {

using References = EndToEnd;

TEST_F(References, OneHandlePerProcessFromItsFirstToItsLastCount) {
  Peer peers[3];
  for (Peer& peer : peers) EXPECT_EQ(peer.Ask("references"), Lines{"= 0"});
  const char* const counts[] = {"= 1", "= 2", "= 3"};
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(peers[i].Ask("initialize"), Lines{"= 1"});
    EXPECT_EQ(peers[i].Ask("initialize"), Lines{"= 1"});
    EXPECT_EQ(peers[i].Ask("references"), Lines{counts[i]});
  }
  EXPECT_EQ(peers[0].Ask("references"), Lines{"= 3"});

  for (Peer& peer : peers) {
    peer.Ask("shutdown");
    EXPECT_EQ(peer.Ask("references"), Lines{"= 3"});
    EXPECT_EQ(peer.Ask("number BatteryHealthyTable_CycleCount"), Lines{"= 63"});
  }
  peers[0].Ask("shutdown");
  EXPECT_EQ(peers[0].Ask("references"), Lines{"= 0"});
  EXPECT_EQ(peers[0].Ask("number BatteryHealthyTable_CycleCount"), Lines{"= 4294967295"});
  EXPECT_EQ(peers[1].Ask("references"), Lines{"= 2"});
  // One shut-down too many changes nothing.
  peers[0].Ask("shutdown");
  EXPECT_EQ(peers[1].Ask("references"), Lines{"= 2"});
  EXPECT_EQ(peers[0].Ask("initialize"), Lines{"= 1"});
  EXPECT_EQ(peers[0].Ask("references"), Lines{"= 3"});

  peers[1].Kill();
  EXPECT_EQ(peers[0].Ask("references"), Lines{"= 2"});
  peers[2].Exit();
  EXPECT_EQ(peers[0].Ask("references"), Lines{"= 1"});
  peers[0].Ask("shutdown");
  EXPECT_EQ(peers[0].Ask("initialize"), Lines{"= 1"});
  EXPECT_EQ(peers[0].Ask("references"), Lines{"= 1"});
}

}  // namespace
}  // namespace vexa::test
