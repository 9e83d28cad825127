#include "tests/support/scripted_ec.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "frame/library_state.h"

namespace vexa::test {
namespace {

ScriptedEc* g_ec = nullptr;
const HANDLE kFakeDevice = reinterpret_cast<HANDLE>(uintptr_t{0xEC00});

std::string Hex(uint8_t byte) {
  constexpr char kDigits[] = "0123456789abcdef";
  return {kDigits[byte >> 4], kDigits[byte & 15]};
}

std::string Describe(const EcCommandRecord& record) {
  std::string text = Hex(record.command);
  for (int i = 0; i < std::min<int>(record.data_count, kMaxEcData); ++i) text += " " + Hex(record.data[i]);
  if (record.data_count > kMaxEcData) text += " +" + std::to_string(record.data_count - kMaxEcData);
  return record.read_flag ? text + " read" : text;
}

}  // namespace

struct ScriptedEcHook {
  static BOOL WINAPI Control(HANDLE, DWORD code, LPVOID in, DWORD in_size, LPVOID out, DWORD out_size, LPDWORD returned,
                             LPOVERLAPPED) {
    *returned = 0;
    if (code == static_cast<DWORD>(ControlCode::kEcCommand)) {
      EcCommandRecord record{};
      std::memcpy(&record, in, std::min<size_t>(in_size, sizeof record));
      if (in_size != sizeof record || out_size != sizeof record || !g_ec->Exchange(record)) return FALSE;
      *returned = sizeof record;
      std::memcpy(out, &record, *returned);
      return TRUE;
    }
    if (!g_ec->device) return FALSE;
    const auto* bytes = static_cast<const uint8_t*>(in);
    std::vector<uint8_t> request(bytes, bytes + in_size);
    std::vector<uint8_t> answer(out_size);
    if (!g_ec->device(code, request, answer)) return FALSE;
    *returned = std::min<DWORD>(static_cast<DWORD>(answer.size()), out_size);
    std::memcpy(out, answer.data(), *returned);
    return TRUE;
  }
};

ScriptedEc::ScriptedEc() : patch_("DeviceIoControl", ScriptedEcHook::Control) {
  g_ec = this;
  answer = [](const EcCommandRecord& record) {
    return EcReply{.value = record.command == 0xBB ? record.data[0] : record.data[1]};
  };
  g_library.driver = kFakeDevice;
  g_library.initialised = true;
}

ScriptedEc::~ScriptedEc() {
  g_ec = nullptr;
  g_library = {};
}

std::vector<std::string> ScriptedEc::TakeExchanges() {
  count_ = 0;
  records.clear();
  return std::exchange(exchanges_, {});
}

bool ScriptedEc::Exchange(EcCommandRecord& record) {
  exchanges_.push_back(Describe(record));
  records.push_back(record);
  EcReply reply = answer(record);
  if (count_++ == fail_index_) {
    if (failure_ == Failure::kRequest) reply.request_fails = true;
    if (failure_ == Failure::kStatus) reply.status = 5;
  }
  record.result = reply.value;
  record.status = reply.status;
  return !reply.request_fails;
}

}  // namespace vexa::test
