#include "frame/ec_command.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "frame/driver_channel.h"
#include "frame/library_state.h"
#include "frame/line.h"
#include "frame/log.h"

namespace vexa {
namespace {

std::string CommandLine(uint8_t data_count, uint8_t command, const uint8_t* data, uint8_t read_flag) {
  std::string line = Line("[RwEcCmd] cmd: 0x", HexText(command), " DataList:");
  for (size_t i = 0; i < data_count; ++i) line += " 0x" + HexText(data[i]);
  if (read_flag) line += " ReadData";
  return line;
}

}  // namespace

uint8_t RwEcCmd(uint8_t data_count, uint8_t command, const uint8_t* data_list, uint8_t read_flag,
                uint32_t* io_status) noexcept {
  // The record has room for this many; a larger count goes to the driver as it is, which refuses it.
  const auto copied = static_cast<uint8_t>(std::min<size_t>(data_count, kMaxEcData));
  LogBuilt(TraceLevel::kVerbose, [&] { return CommandLine(copied, command, data_list, read_flag); });
  if (!g_library.initialised) {
    *io_status = VEXAIO_STATUS_NO_INITIALIZED;
    LogInfo("[RwEcCmd] IOstatus = VEXAIO_STATUS_NO_INITIALIZED");
    return 0;
  }

  EcCommandRecord record{};
  record.command = command;
  record.data_count = data_count;
  record.read_flag = read_flag;
  if (copied != 0) std::memcpy(record.data, data_list, copied);
  if (!RequestDriver(ControlCode::kEcCommand, &record, sizeof record, &record, sizeof record)) {
    *io_status = kEcRequestFailed;
    return 0;
  }

  *io_status = record.status;
  if (record.status != kEcSuccess) {
    LogCritical("[RwEcCmd] IOstatus = %x", record.status);
    if (record.status == VEXAIO_STATUS_INVALID_DATANUM) {
      LogCritical("[RwEcCmd] IOstatus = VEXAIO_STATUS_INVALID_DATANUM");
    }
  }
  return record.result;
}

}  // namespace vexa
