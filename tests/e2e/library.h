// The shipped library with the exports that tests of the driver's route call.
#ifndef VEXA_TESTS_E2E_LIBRARY_H_
#define VEXA_TESTS_E2E_LIBRARY_H_

#include "tests/e2e/loaded.h"

namespace vexa::test {

inline constexpr wchar_t kDriverFile[] = L"C:\\Vexa\\VexaSAIO.sys";

class Library : public Loaded {
 public:
  using Loaded::Loaded;
  using Loaded::Text;
  // A battery export that fills a buffer.
  uint32_t Text(const std::string& name, char* text) const {
    return Export<decltype(::BatteryHealthyTable_DeviceName)>(name)(text);
  }

#define VEXA_EXPORT(name) decltype(&::name) name = Export<decltype(::name)>(#name)
  VEXA_EXPORT(InitializeWinIo);
  VEXA_EXPORT(ShutdownWinIo);
  VEXA_EXPORT(StopWinIoDriver);
  VEXA_EXPORT(GetDriverVersion);
  VEXA_EXPORT(GetRefCount);
  VEXA_EXPORT(GetIoDllVersion);
  VEXA_EXPORT(wmiadd);
  VEXA_EXPORT(TraceOutput);
  VEXA_EXPORT(TraceOutputCritical);
  VEXA_EXPORT(BatteryHealthyTable_BatteryInformation);
  VEXA_EXPORT(Adapter_Read_PDO);
  VEXA_EXPORT(Adapter_Read_PD_IC_PN);
  VEXA_EXPORT(Adapter_Set_Notify_Control);
  VEXA_EXPORT(HealthyTable_Read_Fan);
  VEXA_EXPORT(HealthyTable_SetFanIndex);
  VEXA_EXPORT(HealthyTable_SetFanPwmDuty);
  VEXA_EXPORT(HealthyTable_SetFanTestMode);
  VEXA_EXPORT(Quillo_Read_Fan);
  VEXA_EXPORT(System_Read_VolumeLevel);
  VEXA_EXPORT(System_Read_LocalTime);
  VEXA_EXPORT(GetUWPVersion);
  VEXA_EXPORT(GetInfVersion);
  VEXA_EXPORT(Power_Set_Monitor_PowerDropped);
#undef VEXA_EXPORT
};

// A library that is ready while this lives, if it can be.
class Ready {
 public:
  explicit Ready(const Library& library) : library_(library), answer_(library.InitializeWinIo()) {}
  ~Ready() {
    if (answer_ != 0) library_.ShutdownWinIo();
  }

  Ready(const Ready&) = delete;
  Ready& operator=(const Ready&) = delete;

  uint32_t answer() const { return answer_; }

 private:
  const Library& library_;
  const uint32_t answer_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_E2E_LIBRARY_H_
