// Many callers at once: threads over the readings that any thread may ask for at any time, and processes over the fan
// mutex, whose owners die.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/e2e/library.h"
#include "tests/e2e/notebook.h"
#include "tests/e2e/peer.h"
#include "tests/sweep/exports.h"

namespace vexa::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

bool OnWine() { return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr; }

// What any number of threads may ask for at once and always answers the same: the catalogue says which.
std::vector<const Export*> Readings() {
  std::vector<const Export*> readings;
  for (const Export& one : Exports()) {
    const bool overlaps = one.threads == "any" || one.threads == "not_sta";
    const bool stays = one.routes[0] == "driver" || one.routes[0] == "library" ||
                       (one.routes[0] == "system" && (one.kind == "number" || one.kind == "flag"));
    const bool reads = one.effect == "reads" && one.kind != "done" && one.kind != "nothing";
    // Wine's own WMI fills its tables anew while another thread reads them, and crashes at that.
    const bool breaks = OnWine() && std::string_view(one.name).starts_with("WMIGet");
    if (overlaps && stays && reads && !breaks) readings.push_back(&one);
  }
  return readings;
}

class Concurrency : public EndToEnd {};

TEST_F(Concurrency, ThirtyTwoThreadsReadWhatOneReads) {
  constexpr size_t kThreads = 32;
  UseScenario("worn-battery");
  const Library library;
  const Ready ready(library);
  ASSERT_EQ(ready.answer(), 1u);
  const std::vector<const Export*> readings = Readings();
  EXPECT_GT(readings.size(), 70u);
  const auto read = [&library](const Export& one) {
    Arguments arguments([](std::string_view) { return L"C:\\Vexa"; });
    return one.call(GetProcAddress(library.module(), one.name), arguments);
  };
  std::vector<Answer> alone;
  for (const Export* one : readings) alone.push_back(read(*one));

  std::vector<std::string> wrong[kThreads];
  {
    std::vector<std::jthread> threads;
    for (size_t thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([&, thread] {
        for (size_t i = 0; i < readings.size(); ++i) {
          const size_t at = (i + thread * 2) % readings.size();
          const Answer answer = read(*readings[at]);
          if (answer != alone[at]) wrong[thread].push_back(readings[at]->name + (": " + Describe(answer)));
        }
      });
    }
  }
  EXPECT_THAT(wrong, Each(IsEmpty()));
  EXPECT_EQ(library.GetRefCount(), 1u);
}

// Seven processes wait for the fan mutex when the eighth, which has it, is killed: one of them finds it abandoned and
// fails, the others read, and the next owner gets it.
TEST_F(Concurrency, EightProcessesWhoseOwnerIsKilled) {
  constexpr size_t kProcesses = 8, kOwners = 100;
  std::array<std::unique_ptr<Peer>, kProcesses> peers;
  const auto begin = [](std::unique_ptr<Peer>& peer) {
    peer = std::make_unique<Peer>();
    ASSERT_EQ(peer->Ask("initialize").back(), "= 1");
    ASSERT_EQ(peer->Ask("number HealthyTable_FanCounts").back(), "= 2");
    // Builds the guard.
    ASSERT_EQ(peer->Ask("fan 1").back(), "= 2870");
  };
  for (auto& peer : peers) begin(peer);
  for (size_t i = 0; i < kOwners; ++i) {
    SCOPED_TRACE(i);
    auto& owner = peers[i % kProcesses];
    ASSERT_EQ(owner->Ask("testmode 1"), (Lines{"wait 10000", "waited 0", "= 1"}));
    for (auto& peer : peers) {
      if (peer == owner) continue;
      peer->Tell("fan 1");
      ASSERT_EQ(peer->Line(), "wait 5000");
    }
    owner->Kill();
    Lines answers;
    for (auto& peer : peers) {
      if (peer == owner) continue;
      const Lines answer = peer->Answer();
      answers.push_back(answer.front() + " " + answer.back());
    }
    std::sort(answers.begin(), answers.end());
    const std::string read = "waited 0 = 2870";
    ASSERT_THAT(answers, ElementsAre(read, read, read, read, read, read, "waited 128 = 2147483647"));
    begin(owner);
  }
}

}  // namespace
}  // namespace vexa::test
