// What a scenario says about the firmware.
#ifndef NOTEBOOK_FIRMWARE_MODEL_H_
#define NOTEBOOK_FIRMWARE_MODEL_H_

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cim.h"
#include "rules.h"

namespace firmware {

struct Property {
  std::string name;
  CimType type;
  bool key = false;
};

struct Method {
  std::string name;
  std::vector<Property> inputs{};
  std::vector<Property> outputs{};
};

// A class: what its instances hold and which methods they have.
struct ClassShape {
  std::string name;
  std::vector<Property> properties{};
  std::vector<Method> methods{};
};

using Row = std::vector<Datum>;  // one value for each property

struct Table {
  std::string namespace_name;  // as NamespaceName() gives it
  std::shared_ptr<const ClassShape> shape;
  std::vector<Row> rows;
};

// Number of a table, and a command code in it.
using EcPlace = std::pair<uint8_t, uint8_t>;

// A gauge register: a word, or a block of bytes whose first one tells how many follow.
struct GaugeRegister {
  std::optional<uint16_t> word{};
  std::vector<uint8_t> block{};
  bool writable = false;
};

// The EC behind its class.
struct EcModel {
  uint32_t instances = 1;
  uint32_t version = 0xFFFFFFFF;
  uint32_t unlisted = 0xFFFFFFFF;
  uint32_t accepted = 0;
  uint32_t refused = 0xFFFFFFFF;
  std::map<EcPlace, uint8_t> registers{};
  std::map<EcPlace, uint8_t> writes{};  // which command code of the same table a write is stored at
  std::map<uint8_t, GaugeRegister> gauge{};
};

struct Device {
  uint32_t status = 0;
  bool accepts_all = false;
  std::vector<uint32_t> accepts{};
  uint32_t mask = 0;  // bits of the status that show the control value
  uint32_t accepted = 1;
  uint32_t refused = 0;
};

struct DeviceModel {
  uint32_t instances = 1;
  uint32_t unlisted_status = 0xFFFFFFFE;
  uint32_t unlisted_result = 0;
  std::map<uint32_t, Device> devices{};
};

struct Model {
  bool log = true;
  std::optional<EcModel> ec{};
  std::optional<DeviceModel> devices{};
  std::vector<Table> tables{};
  std::vector<Rule> rules{};
};

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_MODEL_H_
