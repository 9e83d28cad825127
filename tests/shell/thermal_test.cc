// The fans' speeds on the driver route: every fan selected in turn, counts that lie, and each exchange failing.
#include "vexa/thermal.h"
#include "tests/support/ec_test.h"

namespace vexa::test {
namespace {

// An EC that knows which fan is selected. Speeds and selections are by index.
class Thermal : public EcTest {
 protected:
  void UseFans(uint8_t count) {
    selected_ = 0;
    UseEc(28, [this, count](const EcCommandRecord& record) -> int {
      const uint8_t offset = record.data[1];
      if (record.data[0] == 0x82 && offset == 0x32) selected_ = record.data[2];
      if (offset == 0x30) return count;
      return offset == 0x34 ? 0x0B + selected_ : 0xF0 + selected_;
    });
  }

  // What the count costs, and each selected fan: its selection and its speed, each behind its own version.
  static Strings OfFans(const Strings& selections) {
    Strings all{kReadVersion, "dd 02 30 00 read"};
    for (const std::string& selection : selections) {
      if (!selection.empty()) all.insert(all.end(), {kReadVersion, selection});
      all.insert(all.end(), {kReadVersion, "dd 02 34 00 read", "dd 02 33 00 read"});
    }
    return all;
  }

  uint8_t selected_ = 0;
};

TEST_F(Thermal, AllFansInTurn) {
  UseFans(2);
  uint32_t rpm[] = {1, 1, 1};
  EXPECT_EQ(HealthyTable_Read_Fan(rpm), 0x0CF1u);
  EXPECT_THAT(rpm, ElementsAre(0x0BF0u, 0x0CF1u, 1u));
  EXPECT_EQ(ec_.TakeExchanges(), OfFans({"dd 82 32 00", "dd 82 32 01"}));
  UseFans(0);
  EXPECT_EQ(HealthyTable_Read_Fan(rpm), 0u);
  EXPECT_EQ(rpm[0], 0x0BF0u);
  EXPECT_EQ(ec_.TakeExchanges(), OfFans({}));
  // Without a count one slot tells so.
  for (int failing = 0; failing < 2; ++failing) {
    UseFans(2);
    ec_.FailExchange(failing, ScriptedEc::Failure::kStatus);
    rpm[0] = 1;
    EXPECT_EQ(HealthyTable_Read_Fan(rpm), kNoAnswer);
    EXPECT_THAT(rpm, ElementsAre(kNotAvailable, 0x0CF1u, 1u));
    EXPECT_EQ(ec_.TakeExchanges().size(), static_cast<size_t>(failing) + 1);
  }
  EXPECT_EQ(HealthyTable_Read_Fan(nullptr), kNoAnswer);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
}

// One fan that can't be selected or read does not end the others.
TEST_F(Thermal, AllFansWithOneExchangeFailing) {
  const struct {
    int exchange;
    uint32_t first, second;
    size_t exchanges;
  } failures[] = {
      {2, 0x0BF0, 0x0CF1, 11},         // version before the first selection: nothing is selected, fan 0 still is
      {3, 0x0BF0, 0x0CF1, 12},         // the first selection
      {4, kNotAvailable, 0x0CF1, 10},  // version before the first speed
      {5, kNoAnswer, 0x0CF1, 11},      // high byte
      {6, kNoAnswer, 0x0CF1, 12},      // low byte
      {11, 0x0BF0, kNoAnswer, 12},
  };
  for (const auto& failure : failures) {
    UseFans(2);
    ec_.FailExchange(failure.exchange, ScriptedEc::Failure::kStatus);
    uint32_t rpm[] = {1, 1};
    EXPECT_EQ(HealthyTable_Read_Fan(rpm), failure.second);
    EXPECT_THAT(rpm, ElementsAre(failure.first, failure.second)) << failure.exchange;
    EXPECT_EQ(ec_.TakeExchanges().size(), failure.exchanges) << failure.exchange;
  }
}

// The EC's largest count: every slot is written and no other; no index beyond 4 is sent.
TEST_F(Thermal, AllFansOfALyingCount) {
  UseFans(255);
  std::vector<uint32_t> rpm(VEXA_FAN_SLOTS + 1, 1);
  EXPECT_EQ(HealthyTable_Read_Fan(rpm.data()), 0x0FF4u);
  EXPECT_EQ(rpm[3], 0x0EF3u);
  EXPECT_THAT(std::vector(rpm.begin() + 4, rpm.begin() + 255), Each(0x0FF4));
  EXPECT_EQ(rpm[255], 1u);
  Strings sent = ec_.TakeExchanges();
  std::erase_if(sent, [](const std::string& exchange) { return !exchange.starts_with("dd 82"); });
  EXPECT_THAT(sent, ElementsAre("dd 82 32 00", "dd 82 32 01", "dd 82 32 02", "dd 82 32 03", "dd 82 32 04"));
}

TEST_F(Thermal, OneFan) {
  UseFans(2);
  EXPECT_EQ(Quillo_Read_Fan(1), 0x0CF1u);
  EXPECT_EQ(ec_.TakeExchanges(), OfFans({"dd 82 32 01"}));
  EXPECT_EQ(Quillo_Read_Fan(2), 0u);
  EXPECT_EQ(ec_.TakeExchanges(), OfFans({}));
  // A negative index is below every count, and none that can be selected.
  EXPECT_EQ(Quillo_Read_Fan(-1), 0x0CF1u);
  EXPECT_EQ(ec_.TakeExchanges(), OfFans({""}));
  const struct {
    uint32_t answer;
    size_t exchanges;
  } failures[] = {
      {0x0CF1, 6},         // version before the count: a count without an answer is above every index
      {0x0CF1, 7},         // count
      {0x0BF0, 6},         // version before the selection: fan 0 is still selected
      {0x0CF1, 7},         // selection; this EC took it before it failed
      {kNotAvailable, 5},  // version before the speed
      {kNoAnswer, 6},      // high byte
      {kNoAnswer, 7},      // low byte
  };
  FailEachExchange(
      7, [&] { UseFans(2); },
      [&](size_t i, ScriptedEc::Failure) {
        EXPECT_EQ(Quillo_Read_Fan(1), failures[i].answer);
        EXPECT_EQ(ec_.TakeExchanges().size(), failures[i].exchanges);
      });
}

}  // namespace
}  // namespace vexa::test
