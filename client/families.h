// The families of readings, and what each command shows of them.
#ifndef CLIENT_FAMILIES_H_
#define CLIENT_FAMILIES_H_

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "client/asker.h"
#include "client/reading.h"

namespace vexahealth {

// The asker of the EC, made when the first family needs it.
class Session {
 public:
  explicit Session(const Context& context) : context_(context) {}

  const Context& context() const { return context_; }
  const Asker& Ec();

  bool Wants(const Row& row) const { return !context_.wanted || context_.wanted(row); }
  void Tell(std::string_view what) const {
    if (context_.progress) context_.progress(what);
  }

 private:
  const Context& context_;
  std::unique_ptr<Asker> ec_;
};

struct Family {
  std::string_view name;
  std::span<const Row> rows;
  bool needs_driver;  // asks the EC: InitializeWinIo comes first
  std::vector<Reading> (*collect)(Session&);
};

std::span<const Row> IdentityRows();
std::span<const Row> AdapterRows();
std::span<const Row> ThermalRows();
std::span<const Row> SystemRows();
std::span<const Row> WifiRows();
std::span<const Row> PeripheralRows();
std::span<const Row> InventoryRows();

[[nodiscard]] std::vector<Reading> CollectIdentity(Session& session);
[[nodiscard]] std::vector<Reading> CollectAdapter(Session& session);
[[nodiscard]] std::vector<Reading> CollectThermal(Session& session);
[[nodiscard]] std::vector<Reading> CollectSystem(Session& session);
[[nodiscard]] std::vector<Reading> CollectWifi(Session& session);
[[nodiscard]] std::vector<Reading> CollectPeripherals(Session& session);
[[nodiscard]] std::vector<Reading> CollectInventory(Session& session);

// In the order of the output.
std::span<const Family> Families();

// A command that shows readings: some sections of all that there is.
struct Command {
  std::string_view name;
  std::string_view summary;
  std::vector<Section> sections;
};

// The commands, the default first.
std::span<const Command> Commands();
const Command* FindCommand(std::string_view name);

// The row with this key among all families, or null.
const Row* FindRow(std::string_view key);

// Whether InitializeWinIo comes first.
bool NeedsDriver(const Command& command, std::string_view key = {});

// The command's readings, in the order of the output. With a key, that reading alone is wanted; what judges it may be
// asked too.
[[nodiscard]] std::vector<Reading> CollectCommand(const Command& command, Context context, std::string_view key = {});

// The same list when nothing can be collected.
[[nodiscard]] std::vector<Reading> NothingOf(const Command& command, std::string_view reason,
                                             std::string_view key = {});

}  // namespace vexahealth

#endif  // CLIENT_FAMILIES_H_
