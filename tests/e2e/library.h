// The shipped library, loaded from its file the way a caller loads it.
#ifndef VEXA_TESTS_E2E_LIBRARY_H_
#define VEXA_TESTS_E2E_LIBRARY_H_

#include <windows.h>

#include <cstdint>
#include <string>

#include "vexa/vexa.h"

namespace vexa::test {

// Where the scripts put the program, the library and the driver.
inline constexpr wchar_t kFolder[] = L"C:\\Vexa";
inline constexpr wchar_t kLibraryFile[] = L"C:\\Vexa\\VexaWinIO64.dll";
inline constexpr wchar_t kDriverFile[] = L"C:\\Vexa\\VexaSAIO.sys";

class Library {
 public:
  // Ends the program when the file can't be loaded: nothing could be tested.
  explicit Library(const wchar_t* file = kLibraryFile);
  ~Library() { Free(); }

  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  HMODULE module() const { return module_; }
  // FreeLibrary; false when the library stays loaded.
  bool Free();

  // An export that takes nothing and answers a number.
  uint32_t Number(const char* name) const;
  // A battery export that fills a buffer.
  uint32_t Text(const char* name, char* text) const;

 private:
  // Becomes a pointer of the type that the header declares.
  struct Export {
    template <typename Function>
    operator Function*() const {
      return reinterpret_cast<Function*>(address);
    }
    FARPROC address;
  };
  Export Find(const char* name) const;

  HMODULE module_;

 public:
  decltype(&::InitializeWinIo) InitializeWinIo = Find("InitializeWinIo");
  decltype(&::ShutdownWinIo) ShutdownWinIo = Find("ShutdownWinIo");
  decltype(&::StopWinIoDriver) StopWinIoDriver = Find("StopWinIoDriver");
  decltype(&::GetDriverVersion) GetDriverVersion = Find("GetDriverVersion");
  decltype(&::GetRefCount) GetRefCount = Find("GetRefCount");
  decltype(&::GetIoDllVersion) GetIoDllVersion = Find("GetIoDllVersion");
  decltype(&::wmiadd) wmiadd = Find("wmiadd");
  decltype(&::TraceOutput) TraceOutput = Find("TraceOutput");
  decltype(&::TraceOutputCritical) TraceOutputCritical = Find("TraceOutputCritical");
  decltype(&::BatteryHealthyTable_BatteryInformation) BatteryHealthyTable_BatteryInformation =
      Find("BatteryHealthyTable_BatteryInformation");
  decltype(&::Adapter_Read_PDO) Adapter_Read_PDO = Find("Adapter_Read_PDO");
  decltype(&::Adapter_Read_PD_IC_PN) Adapter_Read_PD_IC_PN = Find("Adapter_Read_PD_IC_PN");
  decltype(&::Adapter_Set_Notify_Control) Adapter_Set_Notify_Control = Find("Adapter_Set_Notify_Control");
  decltype(&::HealthyTable_Read_Fan) HealthyTable_Read_Fan = Find("HealthyTable_Read_Fan");
  decltype(&::HealthyTable_SetFanIndex) HealthyTable_SetFanIndex = Find("HealthyTable_SetFanIndex");
  decltype(&::HealthyTable_SetFanPwmDuty) HealthyTable_SetFanPwmDuty = Find("HealthyTable_SetFanPwmDuty");
  decltype(&::HealthyTable_SetFanTestMode) HealthyTable_SetFanTestMode = Find("HealthyTable_SetFanTestMode");
  decltype(&::Quillo_Read_Fan) Quillo_Read_Fan = Find("Quillo_Read_Fan");
  decltype(&::System_Read_VolumeLevel) System_Read_VolumeLevel = Find("System_Read_VolumeLevel");
  decltype(&::System_Read_LocalTime) System_Read_LocalTime = Find("System_Read_LocalTime");
  decltype(&::GetUWPVersion) GetUWPVersion = Find("GetUWPVersion");
  decltype(&::GetInfVersion) GetInfVersion = Find("GetInfVersion");
  decltype(&::Power_Set_Monitor_PowerDropped) Power_Set_Monitor_PowerDropped = Find("Power_Set_Monitor_PowerDropped");
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
