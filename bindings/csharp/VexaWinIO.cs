// VexaWinIO64.dll for .NET: every answer is a value or the reason why there is none.
//
// Made by interface/generate.py from interface/exports.json and interface/templates/VexaWinIO.cs: change those.
//
//   using (var library = new Vexa.Library(@"C:\Program Files\Vexa\VexaWinIO64.dll"))
//   using (library.Start()) {                       // InitializeWinIo; its end is ShutdownWinIo
//     var charge = library.BatteryHealthyTable_Rsoc();
//     Console.WriteLine(charge.HasValue ? charge.Value + " %" : charge.Why.ToString());
//   }
//
// C# 7 or later with unsafe code allowed; .NET Framework 4.6 or later and every .NET, on x64 and ARM64.
using System;
using System.Collections.Generic;
using System.ComponentModel;
using System.IO;
using System.Runtime.InteropServices;
using System.Text;

namespace Vexa {

public enum Reason {
  NoAnswer,  // asked, and the source did not answer
  Unsupported,  // this machine, firmware or EC has no such value
  NotPresent,  // the thing that it tells about is not there
  NotCollected,  // nothing has been collected
  Refused,  // the action was not carried out
  MissingExport,
}

public struct Answer<T> {
  public readonly bool HasValue;
  public readonly Reason Why;
  private readonly T value;

  public Answer(T value) {
    HasValue = true;
    Why = default(Reason);
    this.value = value;
  }

  public Answer(Reason why) {
    HasValue = false;
    Why = why;
    value = default(T);
  }

  public T Value {
    get {
      if (!HasValue) throw new InvalidOperationException(Why.ToString());
      return value;
    }
  }
}

// The exports as they are. Library loads the file that they are taken from.
public static unsafe class Native {
  private const string Dll = "VexaWinIO64.dll";

  [StructLayout(LayoutKind.Sequential)]
  public struct VexaText {
    public fixed byte text[1024];
  }

  [StructLayout(LayoutKind.Sequential)]
  public struct VexaPdIcPartNumber {
    public uint told_length;
    public uint length;
    public fixed byte text[64];
  }

  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Clear_Charger_Data();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Clear_Power_Data_Flag();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_ChampionPort_Watt();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_Charger_Information();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_Charger_Interrupt();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_Contract_PDO();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PDO(uint index);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PDO1();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PDO2();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PDO3();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PDO4();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PDO5();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PDO6();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PDO7();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PDO_Watt();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PD_ADO();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PD_Get_Emark_Other();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PD_Get_Emark_PID();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PD_Get_Emark_VID();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PD_Get_Emark_XID();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PD_Get_Source_Cap_Extend_PID();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PD_Get_Source_Cap_Extend_VID();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PD_Get_Source_Cap_Extend_XID();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PD_Get_Status_EventFlag();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PD_Get_Status_Temperature();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_PD_IC_PN(VexaPdIcPartNumber* record);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_Power_Big_Data_Config();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_Power_Data_Flag();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_Standard_Watt();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Read_Sufficient_Watt();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Adapter_Set_Notify_Control(byte value);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_ACStatus();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_BatteryError();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern VexaText BatteryHealthyTable_BatteryInformation();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_CellVoltage1();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_CellVoltage2();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_CellVoltage3();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_CellVoltage4();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_ChargingCurrent();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_ChargingVoltage();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_Current();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_CycleCount();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_DesignVoltage();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_DeviceName(byte[] text);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_ECChipID();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_ECChipName(byte[] text);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_FullChargeCapacity();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_FullCharged();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_GaugeIC();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_LidStatus();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_ManufactureDate();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_ManufactureName(byte[] text);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_ManufactureNameBySMBus(byte[] text);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_PFStatus();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_PackageVoltage();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_ReadVendorType();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_ReadVersion();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_RemainingCapacity();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_Rsoc();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_SafetyStatus();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_SerialNumber();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_Temperature();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint BatteryHealthyTable_TimeoutStatus();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint EC_ReadEcChipId();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint EC_ReadEcChipName();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint EC_ReadEcFwRev();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint EC_ReadProjectInformation();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint GetDriverVersion();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern void GetInfVersion([In, Out] char[] text);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint GetIoDllVersion();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint GetRefCount();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern void GetUWPVersion([In, Out] char[] text);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint HealthyTable_FanCounts();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint HealthyTable_FanRPM();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint HealthyTable_GetFanTestMode();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint HealthyTable_Read_BoardTS0L_Temperature();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint HealthyTable_Read_Cpu_Temperature();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint HealthyTable_Read_Fan([In, Out] uint[] rpm);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint HealthyTable_SetFanIndex(uint index);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint HealthyTable_SetFanPwmDuty(byte duty);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint HealthyTable_SetFanTestMode(uint mode);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint InitializeWinIo();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Power_PD_Charging();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Power_Read_ACDCMode();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Power_Set_Monitor_PowerDropped(uint enable);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Quillo_Read_Cpu_Temperature();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint Quillo_Read_Fan(int index);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern void RF_AP_MAC(byte[] mac);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_BTConnectedNum();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern VexaText RF_BTConnectedType();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_BTIsUsed();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern VexaText RF_Net_Connected_Type();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern VexaText RF_PhyMode();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_USBHDMIIsUsed();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_USBISTYPEC(string device_instance_id);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_USBIsTranster();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern VexaText RF_USBNum();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern VexaText RF_USBPort();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_USB_A_Num();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_USB_C_Num();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_WiFiCardName([In, Out] char[] name);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_WiFiChannel();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_WiFiIsConnected();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_WiFiMaxRate();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_WiFiRssi();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern VexaText RF_WiFi_2_4G_AP_Ch_Num();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_WiFi_2_4G_AP_Num();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern VexaText RF_WiFi_2_4G_AP_RSSI_Num();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern VexaText RF_WiFi_5G_AP_Band_Num();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_WiFi_5G_AP_Num();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern VexaText RF_WiFi_5G_AP_RSSI_Num();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern VexaText RF_WiFi_6G_AP_NUII_Num();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint RF_WiFi_6G_AP_Num();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern VexaText RF_WiFi_6G_AP_RSSI_Num();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern VexaText RF_WiFi_Main_Aux_Rssi();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern void ShutdownWinIo();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint StopWinIoDriver(uint holds_mutex);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint System_Check_S_Mode();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint System_Read_LocalTime(byte[] text);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint System_Read_TabletMode();
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern int System_Read_VolumeLevel(byte initialize_com);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern void TraceOutput(int length, string text);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern void TraceOutputCritical(int length, string text);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMICheckAppExist(uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMICheckBatteryHealthSupport(uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMICheckQuietFanSupport(uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGet90Number([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetAppPath([In, Out] char[] path, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetBatteryHealth(uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetBiosManufacture([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetBiosReleaseDate([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetBiosVersion([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetBoardUUID([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetCPUArchitecture(uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetCPUInfo([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetCPUUsg(uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetCardReaderCaption([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetComputerFamilyName([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetExternMonitorNum(uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetExternMonitorPropList([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetGPUInfo([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetGPUUsg(uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetHDDCaption([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetHDDInfo([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetHDDList([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetHDDModel([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetHDDSize([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetHDDUsage([In, Out] char[] free_bytes, [In, Out] char[] serials, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetLCDModel([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetMacAddress([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetMemFrequency([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetMemInfo([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetMemManufacture([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetMemModel([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetMemSize([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetModelName([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetMonitorBrightness(uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetOSInfo([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetPhysicalDiskInfo([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetProductName([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetQuietFan(uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetSDCardCaption([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetSDCardSize([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetSN([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetSSDList([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetSSDModel([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetSSDUsage([In, Out] char[] free_bytes, [In, Out] char[] serials, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetSystemChassisTypes([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetType2SN([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetWiFiBytesPersec([In, Out] char[] text, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMIGetWiFiCardName(out IntPtr name, byte com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMISetAppPath(string path, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMISetBatteryHealth(int level, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMISetBatteryHealthToUser(int level, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WMISetQuietFan(byte on, uint com_flag);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern int WOA_EC_read(byte offset, byte table);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint WOA_EC_write(byte offset, byte table, byte value);
  [DllImport(Dll, ExactSpelling = true, CharSet = CharSet.Unicode, CallingConvention = CallingConvention.Cdecl)]
  public static extern uint wmiadd(uint x);
}

public sealed unsafe class Library : IDisposable {
  private const uint NoAnswer = 0x7FFFFFFF, NotAvailable = 0xFFFFFFFF;
  private const int FanSlots = 255;
  private const uint SearchDllFolder = 0x100, SearchSystem32 = 0x800;
  private enum Doubt { None, Battery, Version }

  private struct Reserved {
    public uint Value;
    public Reason Why;
    public bool AlsoReading;
  }

  private IntPtr module;

  // Loads the file at this absolute path. What it needs comes from its own folder and the system's.
  public Library(string path) {
    if (!Path.IsPathRooted(path)) throw new ArgumentException("the path of the library must be absolute", "path");
    module = LoadLibraryExW(path, IntPtr.Zero, SearchDllFolder | SearchSystem32);
    if (module == IntPtr.Zero) throw new Win32Exception(Marshal.GetLastWin32Error());
  }

  // No call of this object, and no session, may be under way.
  public void Dispose() {
    if (module != IntPtr.Zero) FreeLibrary(module);
    module = IntPtr.Zero;
  }

  public sealed class Session : IDisposable {
    private bool open = true;

    public void Dispose() {
      if (open) Native.ShutdownWinIo();
      open = false;
    }
  }

  // Makes the library ready until the session is disposed of; null when it can't be. See InitializeWinIo.
  public Session Start() {
    return Native.InitializeWinIo() == 1 ? new Session() : null;
  }

  // Speeds of all fans in the order of their indexes.
  public Answer<Answer<uint>[]> HealthyTable_Read_Fan() {
    var count = HealthyTable_FanCounts();
    if (!count.HasValue) return new Answer<Answer<uint>[]>(count.Why);
    var slots = new uint[FanSlots];
    try {
      Native.HealthyTable_Read_Fan(slots);
    } catch (EntryPointNotFoundException) {
      return new Answer<Answer<uint>[]>(Reason.MissingExport);
    }
    var speeds = new Answer<uint>[Math.Min((int)count.Value, FanSlots)];
    for (int i = 0; i < speeds.Length; ++i) {
      speeds[i] = slots[i] == NoAnswer ? new Answer<uint>(Reason.NoAnswer)
          : slots[i] == NotAvailable ? new Answer<uint>(Reason.Unsupported) : new Answer<uint>(slots[i]);
    }
    return new Answer<Answer<uint>[]>(speeds);
  }

  public void TraceOutput(string text) { Native.TraceOutput(2 * text.Length, text); }
  public void TraceOutputCritical(string text) { Native.TraceOutputCritical(2 * text.Length, text); }

  // Clears the charger interrupt and then the charger information.
  public Answer<bool> Adapter_Clear_Charger_Data() {
    return Done(() => Native.Adapter_Clear_Charger_Data(), new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x0, Reason.Refused) });
  }

  // Clears all data flags.
  public Answer<bool> Adapter_Clear_Power_Data_Flag() {
    return Done(() => Native.Adapter_Clear_Power_Data_Flag(), new[] { R(0x0, Reason.Refused) });
  }

  // Wattage of the adapter at the champion port.
  public Answer<uint> Adapter_Read_ChampionPort_Watt() {
    return Number(() => Native.Adapter_Read_ChampionPort_Watt(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Charger information byte.
  public Answer<uint> Adapter_Read_Charger_Information() {
    return Number(() => Native.Adapter_Read_Charger_Information(), a => a, new[] { R(0x0, Reason.Unsupported, true) }, Doubt.Version, 14, false);
  }

  // Charger interrupt byte.
  public Answer<uint> Adapter_Read_Charger_Interrupt() {
    return Number(() => Native.Adapter_Read_Charger_Interrupt(), a => a, new[] { R(0x0, Reason.Unsupported, true) }, Doubt.Version, 14, false);
  }

  // The PDO that the contract rests on; 0: no contract.
  public Answer<uint> Adapter_Read_Contract_PDO() {
    return Number(() => Native.Adapter_Read_Contract_PDO(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // One PDO of the attached source; 0: the source has none at this place.
  public Answer<uint> Adapter_Read_PDO(uint index) {
    return Number(() => Native.Adapter_Read_PDO(index), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // PDO 1 of the attached source; 0: the source has none at this place.
  public Answer<uint> Adapter_Read_PDO1() {
    return Number(() => Native.Adapter_Read_PDO1(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // PDO 2 of the attached source; 0: the source has none at this place.
  public Answer<uint> Adapter_Read_PDO2() {
    return Number(() => Native.Adapter_Read_PDO2(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // PDO 3 of the attached source; 0: the source has none at this place.
  public Answer<uint> Adapter_Read_PDO3() {
    return Number(() => Native.Adapter_Read_PDO3(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // PDO 4 of the attached source; 0: the source has none at this place.
  public Answer<uint> Adapter_Read_PDO4() {
    return Number(() => Native.Adapter_Read_PDO4(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // PDO 5 of the attached source; 0: the source has none at this place.
  public Answer<uint> Adapter_Read_PDO5() {
    return Number(() => Native.Adapter_Read_PDO5(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // PDO 6 of the attached source; 0: the source has none at this place.
  public Answer<uint> Adapter_Read_PDO6() {
    return Number(() => Native.Adapter_Read_PDO6(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // PDO 7 of the attached source; 0: the source has none at this place.
  public Answer<uint> Adapter_Read_PDO7() {
    return Number(() => Native.Adapter_Read_PDO7(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // The EC's wattage record of the PDOs, as the EC holds it.
  public Answer<uint> Adapter_Read_PDO_Watt() {
    return Number(() => Native.Adapter_Read_PDO_Watt(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Type byte of the last alert data object.
  public Answer<uint> Adapter_Read_PD_ADO() {
    return Number(() => Native.Adapter_Read_PD_ADO(), a => a, new[] { R(0x0, Reason.Unsupported, true) }, Doubt.Version, 14, false);
  }

  // What else the cable's electronic marker tells.
  public Answer<uint> Adapter_Read_PD_Get_Emark_Other() {
    return Number(() => Native.Adapter_Read_PD_Get_Emark_Other(), a => a, new[] { R(0x0, Reason.Unsupported, true) }, Doubt.Version, 23, false);
  }

  // Product id of the cable's electronic marker.
  public Answer<uint> Adapter_Read_PD_Get_Emark_PID() {
    return Number(() => Native.Adapter_Read_PD_Get_Emark_PID(), a => a, new[] { R(0x0, Reason.Unsupported, true) }, Doubt.Version, 23, false);
  }

  // Vendor id of the cable's electronic marker.
  public Answer<uint> Adapter_Read_PD_Get_Emark_VID() {
    return Number(() => Native.Adapter_Read_PD_Get_Emark_VID(), a => a, new[] { R(0x0, Reason.Unsupported, true) }, Doubt.Version, 23, false);
  }

  // Id that the certification gave the cable.
  public Answer<uint> Adapter_Read_PD_Get_Emark_XID() {
    return Number(() => Native.Adapter_Read_PD_Get_Emark_XID(), a => a, new[] { R(0x0, Reason.Unsupported, true) }, Doubt.Version, 23, false);
  }

  // Firmware version of the source.
  public Answer<uint> Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion() {
    return Number(() => Native.Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion(), a => a, new[] { R(0x0, Reason.Unsupported, true) }, Doubt.Version, 14, false);
  }

  // Hardware version of the source.
  public Answer<uint> Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion() {
    return Number(() => Native.Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion(), a => a, new[] { R(0x0, Reason.Unsupported, true) }, Doubt.Version, 14, false);
  }

  // Product id of the source.
  public Answer<uint> Adapter_Read_PD_Get_Source_Cap_Extend_PID() {
    return Number(() => Native.Adapter_Read_PD_Get_Source_Cap_Extend_PID(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // USB vendor id of the source.
  public Answer<uint> Adapter_Read_PD_Get_Source_Cap_Extend_VID() {
    return Number(() => Native.Adapter_Read_PD_Get_Source_Cap_Extend_VID(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Id that the certification gave the source; 0: none.
  public Answer<uint> Adapter_Read_PD_Get_Source_Cap_Extend_XID() {
    return Number(() => Native.Adapter_Read_PD_Get_Source_Cap_Extend_XID(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Event flags of the source's status.
  public Answer<uint> Adapter_Read_PD_Get_Status_EventFlag() {
    return Number(() => Native.Adapter_Read_PD_Get_Status_EventFlag(), a => a, new[] { R(0x0, Reason.Unsupported, true) }, Doubt.Version, 14, false);
  }

  // Temperature inside the source.
  public Answer<uint> Adapter_Read_PD_Get_Status_Temperature() {
    return Number(() => Native.Adapter_Read_PD_Get_Status_Temperature(), a => a, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Part number of the PD controller.
  public Answer<Native.VexaPdIcPartNumber> Adapter_Read_PD_IC_PN() {
    var record = new Native.VexaPdIcPartNumber();
    uint answer;
    try {
      answer = Native.Adapter_Read_PD_IC_PN(&record);
    } catch (EntryPointNotFoundException) {
      return new Answer<Native.VexaPdIcPartNumber>(Reason.MissingExport);
    }
    return answer == 1 ? new Answer<Native.VexaPdIcPartNumber>(record) : new Answer<Native.VexaPdIcPartNumber>(Reason.NoAnswer);
  }

  // Configuration byte of the EC's power data.
  public Answer<uint> Adapter_Read_Power_Big_Data_Config() {
    return Number(() => Native.Adapter_Read_Power_Big_Data_Config(), a => a, new[] { R(0x0, Reason.Unsupported, true) }, Doubt.Version, 14, false);
  }

  // Data flags: which of the EC's power data are new. Above table version 23 reading clears them.
  public Answer<uint> Adapter_Read_Power_Data_Flag() {
    return Number(() => Native.Adapter_Read_Power_Data_Flag(), a => a, new[] { R(0x0, Reason.Unsupported, true) }, Doubt.Version, 14, false);
  }

  // Wattage of the adapter that the machine is sold with.
  public Answer<uint> Adapter_Read_Standard_Watt() {
    return Number(() => Native.Adapter_Read_Standard_Watt(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Least wattage that is enough for the machine.
  public Answer<uint> Adapter_Read_Sufficient_Watt() {
    return Number(() => Native.Adapter_Read_Sufficient_Watt(), a => a, new[] { R(0xFFFFFFFF, Reason.Unsupported), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Sets the notification control byte.
  public Answer<bool> Adapter_Set_Notify_Control(byte value) {
    return Done(() => Native.Adapter_Set_Notify_Control(value), new[] { R(0x0, Reason.Refused) });
  }

  // 1: external power is present.
  public Answer<bool> BatteryHealthyTable_ACStatus() {
    return Number(() => Native.BatteryHealthyTable_ACStatus(), a => a != 0, new[] { R(0x0, Reason.NoAnswer, true) }, Doubt.Battery, 1, true);
  }

  // 1: the EC reports a battery error.
  public Answer<bool> BatteryHealthyTable_BatteryError() {
    return Number(() => Native.BatteryHealthyTable_BatteryError(), a => a != 0, new[] { R(0x0, Reason.NoAnswer, true) }, Doubt.Battery, 1, true);
  }

  // The 32 bytes of the battery's manufacture information as "0x.." texts, joined by commas.
  public Answer<string> BatteryHealthyTable_BatteryInformation() {
    return Returned(() => Native.BatteryHealthyTable_BatteryInformation(), T("", Reason.NoAnswer));
  }

  // Voltage of cell 1; a pack with fewer cells reports 0 for the others.
  public Answer<uint> BatteryHealthyTable_CellVoltage1() {
    return Number(() => Native.BatteryHealthyTable_CellVoltage1(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0x0, Reason.Unsupported, true) }, Doubt.Battery, 1, true);
  }

  // Voltage of cell 2; a pack with fewer cells reports 0 for the others.
  public Answer<uint> BatteryHealthyTable_CellVoltage2() {
    return Number(() => Native.BatteryHealthyTable_CellVoltage2(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0x0, Reason.Unsupported, true) }, Doubt.Battery, 1, true);
  }

  // Voltage of cell 3; a pack with fewer cells reports 0 for the others.
  public Answer<uint> BatteryHealthyTable_CellVoltage3() {
    return Number(() => Native.BatteryHealthyTable_CellVoltage3(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0x0, Reason.Unsupported, true) }, Doubt.Battery, 1, true);
  }

  // Voltage of cell 4; a pack with fewer cells reports 0 for the others.
  public Answer<uint> BatteryHealthyTable_CellVoltage4() {
    return Number(() => Native.BatteryHealthyTable_CellVoltage4(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0x0, Reason.Unsupported, true) }, Doubt.Battery, 1, true);
  }

  // Charging current that the gauge asks for.
  public Answer<int> BatteryHealthyTable_ChargingCurrent() {
    return Number(() => Native.BatteryHealthyTable_ChargingCurrent(), a => unchecked((int)a), new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0xFFFFFFFF, Reason.Unsupported, true), R(0x0, Reason.Unsupported, true) }, Doubt.Battery, 1, false);
  }

  // Charging voltage that the gauge asks for.
  public Answer<uint> BatteryHealthyTable_ChargingVoltage() {
    return Number(() => Native.BatteryHealthyTable_ChargingVoltage(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0xFFFFFFFF, Reason.Unsupported), R(0x0, Reason.NoAnswer, true) }, Doubt.Battery, 1, true);
  }

  // Current; negative while discharging.
  public Answer<int> BatteryHealthyTable_Current() {
    return Number(() => Native.BatteryHealthyTable_Current(), a => unchecked((int)a), new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0xFFFFFFFF, Reason.Unsupported, true), R(0x0, Reason.NoAnswer, true) }, Doubt.Battery, 1, true);
  }

  // Charge cycles so far.
  public Answer<uint> BatteryHealthyTable_CycleCount() {
    return Number(() => Native.BatteryHealthyTable_CycleCount(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0xFFFFFFFF, Reason.Unsupported), R(0x0, Reason.NoAnswer, true) }, Doubt.Battery, 1, true);
  }

  // Design voltage.
  public Answer<uint> BatteryHealthyTable_DesignVoltage() {
    return Number(() => Native.BatteryHealthyTable_DesignVoltage(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0x0, Reason.Unsupported, true) }, Doubt.Battery, 1, true);
  }

  // Device name of the battery from the gauge (register 0x21), at most 32 characters.
  public Answer<string> BatteryHealthyTable_DeviceName() {
    return Narrow(text => Native.BatteryHealthyTable_DeviceName(text), 33, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Chip id of the EC.
  public Answer<uint> BatteryHealthyTable_ECChipID() {
    return Number(() => Native.BatteryHealthyTable_ECChipID(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Name of the EC chip, at most 14 characters.
  public Answer<string> BatteryHealthyTable_ECChipName() {
    return Narrow(text => Native.BatteryHealthyTable_ECChipName(text), 15, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Full-charge capacity in the gauge's unit: mAh, or 10 mWh as bit 15 of the battery mode says.
  public Answer<uint> BatteryHealthyTable_FullChargeCapacity() {
    return Number(() => Native.BatteryHealthyTable_FullChargeCapacity(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0x0, Reason.Unsupported, true) }, Doubt.Battery, 1, true);
  }

  // 1: the battery is fully charged.
  public Answer<bool> BatteryHealthyTable_FullCharged() {
    return Number(() => Native.BatteryHealthyTable_FullCharged(), a => a != 0, new[] { R(0x7FFFFFFF, Reason.Unsupported), R(0x0, Reason.NoAnswer, true) }, Doubt.Battery, 1, false);
  }

  // Code of the gauge chip.
  public Answer<uint> BatteryHealthyTable_GaugeIC() {
    return Number(() => Native.BatteryHealthyTable_GaugeIC(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0x0, Reason.Unsupported, true) }, Doubt.Battery, 1, true);
  }

  // Lid state byte of the EC.
  public Answer<uint> BatteryHealthyTable_LidStatus() {
    return Number(() => Native.BatteryHealthyTable_LidStatus(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0x0, Reason.Unsupported, true) }, Doubt.Battery, 1, false);
  }

  // Date of manufacture: day in bits 0-4, month in bits 5-8, year since 1980 in bits 9-15.
  public Answer<uint> BatteryHealthyTable_ManufactureDate() {
    return Number(() => Native.BatteryHealthyTable_ManufactureDate(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0xFFFFFFFF, Reason.Unsupported), R(0x0, Reason.NoAnswer, true) }, Doubt.Battery, 1, true);
  }

  // Manufacturer of the battery from the healthy table, at most 16 characters.
  public Answer<string> BatteryHealthyTable_ManufactureName() {
    return Narrow(text => Native.BatteryHealthyTable_ManufactureName(text), 33, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Manufacturer of the battery from the gauge itself (register 0x20), at most 32 characters.
  public Answer<string> BatteryHealthyTable_ManufactureNameBySMBus() {
    return Narrow(text => Native.BatteryHealthyTable_ManufactureNameBySMBus(text), 33, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Permanent-failure status of the gauge (register 0x53).
  public Answer<uint> BatteryHealthyTable_PFStatus() {
    return Number(() => Native.BatteryHealthyTable_PFStatus(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Voltage of the pack.
  public Answer<uint> BatteryHealthyTable_PackageVoltage() {
    return Number(() => Native.BatteryHealthyTable_PackageVoltage(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0xFFFFFFFF, Reason.Unsupported), R(0x0, Reason.NoAnswer, true) }, Doubt.Battery, 1, true);
  }

  // Bit 7 of the EC's project information.
  public Answer<bool> BatteryHealthyTable_ReadVendorType() {
    return Number(() => Native.BatteryHealthyTable_ReadVendorType(), a => a != 0, new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Version of the healthy table, 0 to 255; 0: the EC has none.
  public Answer<uint> BatteryHealthyTable_ReadVersion() {
    return Number(() => Native.BatteryHealthyTable_ReadVersion(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Remaining capacity in the gauge's unit: mAh, or 10 mWh as bit 15 of the battery mode says.
  public Answer<uint> BatteryHealthyTable_RemainingCapacity() {
    return Number(() => Native.BatteryHealthyTable_RemainingCapacity(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0x0, Reason.Unsupported, true) }, Doubt.Battery, 1, true);
  }

  // Relative state of charge, of the full-charge capacity.
  public Answer<uint> BatteryHealthyTable_Rsoc() {
    return Number(() => Native.BatteryHealthyTable_Rsoc(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0x0, Reason.Unsupported, true) }, Doubt.Battery, 1, true);
  }

  // Safety status of the gauge (register 0x51).
  public Answer<uint> BatteryHealthyTable_SafetyStatus() {
    return Number(() => Native.BatteryHealthyTable_SafetyStatus(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Serial number.
  public Answer<uint> BatteryHealthyTable_SerialNumber() {
    return Number(() => Native.BatteryHealthyTable_SerialNumber(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0x0, Reason.Unsupported, true) }, Doubt.Battery, 1, true);
  }

  // Temperature of the pack.
  public Answer<uint> BatteryHealthyTable_Temperature() {
    return Number(() => Native.BatteryHealthyTable_Temperature(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0xFFFFFFFF, Reason.Unsupported), R(0x0, Reason.NoAnswer, true) }, Doubt.Battery, 1, true);
  }

  // Charge-error status byte of the EC; 0: no charge time-out.
  public Answer<uint> BatteryHealthyTable_TimeoutStatus() {
    return Number(() => Native.BatteryHealthyTable_TimeoutStatus(), a => a, new[] { R(0x0, Reason.NoAnswer, true) }, Doubt.Battery, 1, false);
  }

  // Chip id.
  public Answer<uint> EC_ReadEcChipId() {
    return Number(() => Native.EC_ReadEcChipId(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // The first four characters of the chip's name, the first in the top byte.
  public Answer<uint> EC_ReadEcChipName() {
    return Number(() => Native.EC_ReadEcChipName(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Firmware revision: its two characters, the first in bits 8-15.
  public Answer<uint> EC_ReadEcFwRev() {
    return Number(() => Native.EC_ReadEcFwRev(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0xFFFF, Reason.Unsupported), R(0x7FFF, Reason.Unsupported) });
  }

  // Project information byte; bit 7: the EC reports a firmware revision. Never kept.
  public Answer<uint> EC_ReadProjectInformation() {
    return Number(() => Native.EC_ReadProjectInformation(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Version word of the kernel driver.
  public Answer<uint> GetDriverVersion() {
    return Number(() => Native.GetDriverVersion(), a => a, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Driver version of the device "Vexa System Control Interface V2".
  public Answer<string> GetInfVersion() {
    return Wide(text => { Native.GetInfVersion(text); return 1; }, 64, new Reserved[0], T("", Reason.NotPresent));
  }

  // Version of this interface: always 0x00010001, major version in the high half.
  public Answer<uint> GetIoDllVersion() {
    return Number(() => Native.GetIoDllVersion(), a => a, new Reserved[0]);
  }

  // The kernel driver's own count of its users, over all processes.
  public Answer<uint> GetRefCount() {
    return Number(() => Native.GetRefCount(), a => a, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Version of the companion app from the store.
  public Answer<string> GetUWPVersion() {
    return Wide(text => { Native.GetUWPVersion(text); return 1; }, 64, new Reserved[0], T("", Reason.NotPresent));
  }

  // Number of fans.
  public Answer<uint> HealthyTable_FanCounts() {
    return Number(() => Native.HealthyTable_FanCounts(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Speed of the selected fan.
  public Answer<uint> HealthyTable_FanRPM() {
    return Number(() => Native.HealthyTable_FanRPM(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0xFFFFFFFF, Reason.Unsupported) });
  }

  // Test mode of the fans: 0 off; on x64 the EC's byte as it is.
  public Answer<uint> HealthyTable_GetFanTestMode() {
    return Number(() => Native.HealthyTable_GetFanTestMode(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Temperature of board sensor 0; 0 also when there is no board sensor.
  public Answer<uint> HealthyTable_Read_BoardTS0L_Temperature() {
    return Number(() => Native.HealthyTable_Read_BoardTS0L_Temperature(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Temperature of the CPU.
  public Answer<uint> HealthyTable_Read_Cpu_Temperature() {
    return Number(() => Native.HealthyTable_Read_Cpu_Temperature(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Selects the fan that HealthyTable_FanRPM and HealthyTable_SetFanPwmDuty speak of.
  public Answer<bool> HealthyTable_SetFanIndex(uint index) {
    return Done(() => Native.HealthyTable_SetFanIndex(index), new[] { R(0x0, Reason.Refused) });
  }

  // Sets the duty of the selected fan's PWM signal, in the EC's own steps; it lasts while test mode is on.
  public Answer<bool> HealthyTable_SetFanPwmDuty(byte duty) {
    return Done(() => Native.HealthyTable_SetFanPwmDuty(duty), new[] { R(0x0, Reason.Refused) });
  }

  // Turns the fans' test mode on or off. Turning on takes the fan mutex and keeps it until the same thread turns it off.
  public Answer<bool> HealthyTable_SetFanTestMode(uint mode) {
    return Done(() => Native.HealthyTable_SetFanTestMode(mode), new[] { R(0x0, Reason.Refused) });
  }

  // 1: the machine runs on a USB-PD source.
  public Answer<bool> Power_PD_Charging() {
    return Number(() => Native.Power_PD_Charging(), a => a != 0, new[] { R(0x0, Reason.Unsupported, true) }, Doubt.Version, 8, false);
  }

  // Power line as the system knows it: 0 on battery, 1 on external power.
  public Answer<bool> Power_Read_ACDCMode() {
    return Number(() => Native.Power_Read_ACDCMode(), a => a != 0, new[] { R(0xFF, Reason.NoAnswer) });
  }

  // Has the EC watch for drops of the power, or no longer.
  public Answer<bool> Power_Set_Monitor_PowerDropped(uint enable) {
    return Done(() => Native.Power_Set_Monitor_PowerDropped(enable), new[] { R(0x0, Reason.Refused) });
  }

  // Temperature of the CPU, as HealthyTable_Read_Cpu_Temperature.
  public Answer<uint> Quillo_Read_Cpu_Temperature() {
    return Number(() => Native.Quillo_Read_Cpu_Temperature(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Speed of one fan, under the fan mutex.
  public Answer<uint> Quillo_Read_Fan(int index) {
    return Number(() => Native.Quillo_Read_Fan(index), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer), R(0xFFFFFFFF, Reason.Unsupported), R(0x0, Reason.NotPresent, true) });
  }

  // Vendor prefix of the connected access point's address, "00:11:22".
  public Answer<string> RF_AP_MAC() {
    return Narrow(text => { Native.RF_AP_MAC(text); return 1; }, 13, new Reserved[0], T("init_string", Reason.NotCollected), T("error_string", Reason.NoAnswer));
  }

  // Connected devices on the last radio that has any.
  public Answer<uint> RF_BTConnectedNum() {
    return Number(() => Native.RF_BTConnectedNum(), a => a, new[] { R(0xFFFFFC18, Reason.NotPresent), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // The kinds of the connected Bluetooth devices, one word for each, each ended by ";".
  public Answer<string> RF_BTConnectedType() {
    return Returned(() => Native.RF_BTConnectedType(), T("init_string", Reason.NotPresent), T("error_string", Reason.NoAnswer), T("", Reason.NoAnswer));
  }

  // 1: Bluetooth devices are connected.
  public Answer<bool> RF_BTIsUsed() {
    return Number(() => Native.RF_BTIsUsed(), a => a != 0, new[] { R(0xFFFFFC18, Reason.NotPresent), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // The kind of the network link: "ETHERNET", "WWANPP2", "WIFI".
  public Answer<string> RF_Net_Connected_Type() {
    return Returned(() => Native.RF_Net_Connected_Type(), T("Unknow", Reason.NotPresent), T("", Reason.NoAnswer));
  }

  // Kind of the connection, such as "802.11ax".
  public Answer<string> RF_PhyMode() {
    return Returned(() => Native.RF_PhyMode(), T("init_string", Reason.NotCollected), T("error_string", Reason.NoAnswer));
  }

  // 1: an HDMI monitor was connected while collecting.
  public Answer<bool> RF_USBHDMIIsUsed() {
    return Number(() => Native.RF_USBHDMIIsUsed(), a => a != 0, new[] { R(0x0, Reason.NoAnswer, true) });
  }

  // Whether a USB device is plugged into a type-C port: 2 type C, 1 other.
  public Answer<uint> RF_USBISTYPEC(string device_instance_id) {
    return Number(() => Native.RF_USBISTYPEC(device_instance_id), a => a, new[] { R(0x0, Reason.NotPresent) });
  }

  // 1: a disk was busy while collecting.
  public Answer<bool> RF_USBIsTranster() {
    return Number(() => Native.RF_USBIsTranster(), a => a != 0, new[] { R(0x0, Reason.NoAnswer, true) });
  }

  // USB mass-storage devices by USB version, as JSON with text counts.
  public Answer<string> RF_USBNum() {
    return Returned(() => Native.RF_USBNum(), T("init_string", Reason.NoAnswer), T("", Reason.NoAnswer));
  }

  // Port number of each of these devices, each followed by ","; empty when there is none.
  public Answer<string> RF_USBPort() {
    return Returned(() => Native.RF_USBPort(), T("init_string", Reason.NoAnswer));
  }

  // User-accessible ports with a device on them whose connector is not type C.
  public Answer<uint> RF_USB_A_Num() {
    return Number(() => Native.RF_USB_A_Num(), a => a, new Reserved[0]);
  }

  // User-accessible type-C ports with a device on them.
  public Answer<uint> RF_USB_C_Num() {
    return Number(() => Native.RF_USB_C_Num(), a => a, new Reserved[0]);
  }

  // Description of the Wi-Fi adapter.
  public Answer<string> RF_WiFiCardName() {
    return Wide(text => Native.RF_WiFiCardName(text), 256, new[] { R(0x16, Reason.Refused), R(0x7FFFFFFF, Reason.NoAnswer) }, T("init_string", Reason.NotCollected), T("error_string", Reason.NoAnswer));
  }

  // Channel number of the connected interface.
  public Answer<uint> RF_WiFiChannel() {
    return Number(() => Native.RF_WiFiChannel(), a => a, new[] { R(0xFFFFFC18, Reason.NotCollected), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // 1: a Wi-Fi interface is connected, 0: none is.
  public Answer<bool> RF_WiFiIsConnected() {
    return Number(() => Native.RF_WiFiIsConnected(), a => a != 0, new[] { R(0xFFFFFC18, Reason.NotCollected), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Greatest rate that the connected access point can receive; 0: its beacon does not tell.
  public Answer<uint> RF_WiFiMaxRate() {
    return Number(() => Native.RF_WiFiMaxRate(), a => a, new[] { R(0xFFFFFC18, Reason.NotCollected), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Signal strength of the connected access point.
  public Answer<int> RF_WiFiRssi() {
    return Number(() => Native.RF_WiFiRssi(), a => unchecked((int)a), new[] { R(0xFFFFFC18, Reason.NotCollected), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Access points on 2.4 GHz by channel, as JSON with text counts.
  public Answer<string> RF_WiFi_2_4G_AP_Ch_Num() {
    return Returned(() => Native.RF_WiFi_2_4G_AP_Ch_Num(), T("init_string", Reason.NotCollected), T("error_string", Reason.NoAnswer));
  }

  // Access points on 2.4 GHz.
  public Answer<uint> RF_WiFi_2_4G_AP_Num() {
    return Number(() => Native.RF_WiFi_2_4G_AP_Num(), a => a, new[] { R(0xFFFFFC18, Reason.NotCollected), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Access points on 2.4 GHz by signal strength, as JSON with text counts.
  public Answer<string> RF_WiFi_2_4G_AP_RSSI_Num() {
    return Returned(() => Native.RF_WiFi_2_4G_AP_RSSI_Num(), T("init_string", Reason.NotCollected), T("error_string", Reason.NoAnswer));
  }

  // Access points on 5 GHz by band, as JSON with text counts.
  public Answer<string> RF_WiFi_5G_AP_Band_Num() {
    return Returned(() => Native.RF_WiFi_5G_AP_Band_Num(), T("init_string", Reason.NotCollected), T("error_string", Reason.NoAnswer));
  }

  // Access points on 5 GHz.
  public Answer<uint> RF_WiFi_5G_AP_Num() {
    return Number(() => Native.RF_WiFi_5G_AP_Num(), a => a, new[] { R(0xFFFFFC18, Reason.NotCollected), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Access points on 5 GHz by signal strength, as JSON with text counts.
  public Answer<string> RF_WiFi_5G_AP_RSSI_Num() {
    return Returned(() => Native.RF_WiFi_5G_AP_RSSI_Num(), T("init_string", Reason.NotCollected), T("error_string", Reason.NoAnswer));
  }

  // Access points on 6 GHz by band, as JSON with text counts.
  public Answer<string> RF_WiFi_6G_AP_NUII_Num() {
    return Returned(() => Native.RF_WiFi_6G_AP_NUII_Num(), T("init_string", Reason.NotCollected), T("error_string", Reason.NoAnswer));
  }

  // Access points on 6 GHz.
  public Answer<uint> RF_WiFi_6G_AP_Num() {
    return Number(() => Native.RF_WiFi_6G_AP_Num(), a => a, new[] { R(0xFFFFFC18, Reason.NotCollected), R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Access points on 6 GHz by signal strength, as JSON with text counts.
  public Answer<string> RF_WiFi_6G_AP_RSSI_Num() {
    return Returned(() => Native.RF_WiFi_6G_AP_RSSI_Num(), T("init_string", Reason.NotCollected), T("error_string", Reason.NoAnswer));
  }

  // Signal strength at the main and at the auxiliary antenna in dBm, "-52:-58".
  public Answer<string> RF_WiFi_Main_Aux_Rssi() {
    return Returned(() => Native.RF_WiFi_Main_Aux_Rssi(), T("0:0", Reason.NotCollected));
  }

  // Stops the driver service.
  public Answer<bool> StopWinIoDriver(uint holds_mutex) {
    return Done(() => Native.StopWinIoDriver(holds_mutex), new[] { R(0x0, Reason.Refused) });
  }

  // 1: Windows runs in S mode; 0 also when the system can't tell.
  public Answer<bool> System_Check_S_Mode() {
    return Number(() => Native.System_Check_S_Mode(), a => a != 0, new Reserved[0]);
  }

  // The local time as "2026-02-03 09:05:00".
  public Answer<string> System_Read_LocalTime() {
    return Narrow(text => Native.System_Read_LocalTime(text), 20, new[] { R(0x0, Reason.Refused) });
  }

  // The EC's tablet-mode byte; 0: a notebook, also on machines whose EC reports no firmware revision.
  public Answer<uint> System_Read_TabletMode() {
    return Number(() => Native.System_Read_TabletMode(), a => a, new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Master volume of the default speaker, cut to a whole number; muting does not show.
  public Answer<int> System_Read_VolumeLevel(byte initialize_com = 1) {
    return Number(() => unchecked((uint)Native.System_Read_VolumeLevel(initialize_com)), a => unchecked((int)a), new[] { R(0xFFFFFFFF, Reason.NotPresent) });
  }

  // 1 when the stored application folder exists.
  public Answer<bool> WMICheckAppExist(uint com_flag = 1) {
    return Number(() => Native.WMICheckAppExist(com_flag), a => a != 0, new Reserved[0]);
  }

  // 1 when the firmware can limit the charge, 0 when not or when it does not answer.
  public Answer<bool> WMICheckBatteryHealthSupport(uint com_flag = 1) {
    return Number(() => Native.WMICheckBatteryHealthSupport(com_flag), a => a != 0, new Reserved[0]);
  }

  // The firmware's quiet fan: 1 on, 0 off.
  public Answer<bool> WMICheckQuietFanSupport(uint com_flag = 1) {
    return Number(() => Native.WMICheckQuietFanSupport(com_flag), a => a != 0, new[] { R(0xFFFFFFFF, Reason.Unsupported) });
  }

  // The fifth of the firmware's OEM strings, the order number.
  public Answer<string> WMIGet90Number(uint com_flag = 1) {
    return Long(text => Native.WMIGet90Number(text, com_flag), 256, new[] { R(0x0, Reason.NoAnswer) });
  }

  // The application folder of the signed-in user.
  public Answer<string> WMIGetAppPath(uint com_flag = 1) {
    return Wide(text => Native.WMIGetAppPath(text, com_flag), 260, new[] { R(0x0, Reason.NotPresent) });
  }

  // The remembered charge limit; 100 for everything unknown.
  public Answer<uint> WMIGetBatteryHealth(uint com_flag = 1) {
    return Number(() => Native.WMIGetBatteryHealth(com_flag), a => a, new Reserved[0]);
  }

  // Manufacturer of the baseboard.
  public Answer<string> WMIGetBiosManufacture(uint com_flag = 1) {
    return Long(text => Native.WMIGetBiosManufacture(text, com_flag), 256, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Date of the BIOS in CIM form.
  public Answer<string> WMIGetBiosReleaseDate(uint com_flag = 1) {
    return Long(text => Native.WMIGetBiosReleaseDate(text, com_flag), 64, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Name of the BIOS, which carries its version.
  public Answer<string> WMIGetBiosVersion(uint com_flag = 1) {
    return Long(text => Native.WMIGetBiosVersion(text, com_flag), 256, new[] { R(0x0, Reason.NoAnswer) });
  }

  // UUID of the machine.
  public Answer<string> WMIGetBoardUUID(uint com_flag = 1) {
    return Long(text => Native.WMIGetBoardUUID(text, com_flag), 64, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Architecture by Win32_Processor: 0 x86, 5 ARM, 9 x64, 12 ARM64.
  public Answer<uint> WMIGetCPUArchitecture(uint com_flag = 1) {
    return Number(() => Native.WMIGetCPUArchitecture(com_flag), a => a, new[] { R(0xFFFFFFFF, Reason.NoAnswer) });
  }

  // Name of each processor.
  public Answer<string> WMIGetCPUInfo(uint com_flag = 1) {
    return Long(text => Native.WMIGetCPUInfo(text, com_flag), 512, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Load of the last listed processor; WMI measures it while it answers, for about a second.
  public Answer<uint> WMIGetCPUUsg(uint com_flag = 1) {
    return Number(() => Native.WMIGetCPUUsg(com_flag), a => a, new[] { R(0xFFFFFFFF, Reason.NoAnswer) });
  }

  // Caption of the built-in card reader, when it is of the known kind.
  public Answer<string> WMIGetCardReaderCaption(uint com_flag = 1) {
    return Long(text => Native.WMIGetCardReaderCaption(text, com_flag), 1024, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Product family.
  public Answer<string> WMIGetComputerFamilyName(uint com_flag = 1) {
    return Long(text => Native.WMIGetComputerFamilyName(text, com_flag), 256, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Number of external monitors; 0 also when the query failed.
  public Answer<uint> WMIGetExternMonitorNum(uint com_flag = 1) {
    return Number(() => Native.WMIGetExternMonitorNum(com_flag), a => a, new[] { R(0x0, Reason.NoAnswer, true) });
  }

  // "instance name,vot=technology" of each external monitor.
  public Answer<string> WMIGetExternMonitorPropList(uint com_flag = 1) {
    return Long(text => Native.WMIGetExternMonitorPropList(text, com_flag), 4096, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Caption of each video controller.
  public Answer<string> WMIGetGPUInfo(uint com_flag = 1) {
    return Long(text => Native.WMIGetGPUInfo(text, com_flag), 1024, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Load of the graphics engines of all processes, added up, 0 to 100; 0 also when there is no engine.
  public Answer<uint> WMIGetGPUUsg(uint com_flag = 1) {
    return Number(() => Native.WMIGetGPUUsg(com_flag), a => a, new[] { R(0xFFFFFFFF, Reason.NoAnswer) });
  }

  // Caption of each fixed disk of any kind.
  public Answer<string> WMIGetHDDCaption(uint com_flag = 1) {
    return Long(text => Native.WMIGetHDDCaption(text, com_flag), 2048, new[] { R(0x0, Reason.NoAnswer) });
  }

  // "model,size in bytes,media type" of each hard disk.
  public Answer<string> WMIGetHDDInfo(uint com_flag = 1) {
    return Long(text => Native.WMIGetHDDInfo(text, com_flag), 4096, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Device id of each hard disk.
  public Answer<string> WMIGetHDDList(uint com_flag = 1) {
    return Long(text => Native.WMIGetHDDList(text, com_flag), 1024, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Model of each hard disk.
  public Answer<string> WMIGetHDDModel(uint com_flag = 1) {
    return Long(text => Native.WMIGetHDDModel(text, com_flag), 2048, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Size in bytes of each fixed disk of any kind.
  public Answer<string> WMIGetHDDSize(uint com_flag = 1) {
    return Long(text => Native.WMIGetHDDSize(text, com_flag), 1024, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Free space of the hard disks' volumes.
  public Answer<string[]> WMIGetHDDUsage(uint com_flag = 1) {
    return Two((a, b) => Native.WMIGetHDDUsage(a, b, com_flag), 4096);
  }

  // Name of each monitor that tells one.
  public Answer<string> WMIGetLCDModel(uint com_flag = 1) {
    return Long(text => Native.WMIGetLCDModel(text, com_flag), 512, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Address of each physical adapter.
  public Answer<string> WMIGetMacAddress(uint com_flag = 1) {
    return Long(text => Native.WMIGetMacAddress(text, com_flag), 1024, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Configured speed of the last listed memory module in MT/s as decimal text; "-1" when it can't be told.
  public Answer<string> WMIGetMemFrequency(uint com_flag = 1) {
    return Long(text => Native.WMIGetMemFrequency(text, com_flag), 16, new[] { R(0x0, Reason.NoAnswer) }, T("-1", Reason.NoAnswer));
  }

  // "manufacturer,part number,capacity in bytes,speed in MT/s,slot" of each memory module.
  public Answer<string> WMIGetMemInfo(uint com_flag = 1) {
    return Long(text => Native.WMIGetMemInfo(text, com_flag), 4096, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Manufacturer of each memory module.
  public Answer<string> WMIGetMemManufacture(uint com_flag = 1) {
    return Long(text => Native.WMIGetMemManufacture(text, com_flag), 1024, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Part number of each memory module.
  public Answer<string> WMIGetMemModel(uint com_flag = 1) {
    return Long(text => Native.WMIGetMemModel(text, com_flag), 1024, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Capacity of each memory module in bytes.
  public Answer<string> WMIGetMemSize(uint com_flag = 1) {
    return Long(text => Native.WMIGetMemSize(text, com_flag), 1024, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Product name of the baseboard.
  public Answer<string> WMIGetModelName(uint com_flag = 1) {
    return Long(text => Native.WMIGetModelName(text, com_flag), 256, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Brightness of the built-in display.
  public Answer<uint> WMIGetMonitorBrightness(uint com_flag = 1) {
    return Number(() => Native.WMIGetMonitorBrightness(com_flag), a => a, new[] { R(0xFFFFFFFF, Reason.NoAnswer) });
  }

  // Caption and architecture of the operating system.
  public Answer<string> WMIGetOSInfo(uint com_flag = 1) {
    return Long(text => Native.WMIGetOSInfo(text, com_flag), 256, new[] { R(0x0, Reason.NoAnswer) });
  }

  // "model,size in bytes,media type,device id" of each disk; media type 3: hard disk, 4: solid-state disk.
  public Answer<string> WMIGetPhysicalDiskInfo(uint com_flag = 1) {
    return Long(text => Native.WMIGetPhysicalDiskInfo(text, com_flag), 4096, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Product name of the system.
  public Answer<string> WMIGetProductName(uint com_flag = 1) {
    return Long(text => Native.WMIGetProductName(text, com_flag), 256, new[] { R(0x0, Reason.NoAnswer) });
  }

  // The remembered quiet-fan mode: 1 to 3; 0 for everything unknown.
  public Answer<uint> WMIGetQuietFan(uint com_flag = 1) {
    return Number(() => Native.WMIGetQuietFan(com_flag), a => a, new Reserved[0]);
  }

  // Caption of each removable disk.
  public Answer<string> WMIGetSDCardCaption(uint com_flag = 1) {
    return Long(text => Native.WMIGetSDCardCaption(text, com_flag), 1024, new[] { R(0x0, Reason.NoAnswer) });
  }

  // "size in bytes,caption" of each removable disk.
  public Answer<string> WMIGetSDCardSize(uint com_flag = 1) {
    return Long(text => Native.WMIGetSDCardSize(text, com_flag), 2048, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Serial number of the system.
  public Answer<string> WMIGetSN(uint com_flag = 1) {
    return Long(text => Native.WMIGetSN(text, com_flag), 256, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Device id of each solid-state disk.
  public Answer<string> WMIGetSSDList(uint com_flag = 1) {
    return Long(text => Native.WMIGetSSDList(text, com_flag), 1024, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Model of each solid-state disk.
  public Answer<string> WMIGetSSDModel(uint com_flag = 1) {
    return Long(text => Native.WMIGetSSDModel(text, com_flag), 2048, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Free space of the solid-state disks' volumes.
  public Answer<string[]> WMIGetSSDUsage(uint com_flag = 1) {
    return Two((a, b) => Native.WMIGetSSDUsage(a, b, com_flag), 4096);
  }

  // Form of the machine by its first chassis type: "Notebook", "Desktop" or "unknown".
  public Answer<string> WMIGetSystemChassisTypes(uint com_flag = 1) {
    return Long(text => Native.WMIGetSystemChassisTypes(text, com_flag), 16, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Serial number of the baseboard.
  public Answer<string> WMIGetType2SN(uint com_flag = 1) {
    return Long(text => Native.WMIGetType2SN(text, com_flag), 256, new[] { R(0x0, Reason.NoAnswer) });
  }

  // "received,sent" of the Wi-Fi adapter in bytes per second.
  public Answer<string> WMIGetWiFiBytesPersec(uint com_flag = 1) {
    return Long(text => Native.WMIGetWiFiBytesPersec(text, com_flag), 256, new[] { R(0x0, Reason.NoAnswer) });
  }

  // Name of the Wi-Fi adapter.
  public Answer<string> WMIGetWiFiCardName(byte com_flag = 1) {
    return Allocated((out IntPtr t) => Native.WMIGetWiFiCardName(out t, com_flag));
  }

  // Remembers the application folder of the signed-in user.
  public Answer<bool> WMISetAppPath(string path, uint com_flag = 1) {
    return Done(() => Native.WMISetAppPath(path, com_flag), new[] { R(0x0, Reason.Refused) });
  }

  // Tells the firmware to charge to this level.
  public Answer<bool> WMISetBatteryHealth(int level, uint com_flag = 1) {
    return Done(() => Native.WMISetBatteryHealth(level, com_flag), new[] { R(0x0, Reason.Refused) });
  }

  // Writes the level into the battery-health file of the application folder.
  public Answer<bool> WMISetBatteryHealthToUser(int level, uint com_flag = 1) {
    return Done(() => Native.WMISetBatteryHealthToUser(level, com_flag), new[] { R(0x0, Reason.Refused) });
  }

  // Switches the firmware's quiet fan.
  public Answer<bool> WMISetQuietFan(byte on, uint com_flag = 1) {
    return Done(() => Native.WMISetQuietFan(on, com_flag), new[] { R(0x0, Reason.Refused) });
  }

  // Reads one byte of an EC table.
  public Answer<int> WOA_EC_read(byte offset, byte table) {
    return Number(() => unchecked((uint)Native.WOA_EC_read(offset, table)), a => unchecked((int)a), new[] { R(0x7FFFFFFF, Reason.NoAnswer) });
  }

  // Writes one byte of an EC table.
  public Answer<bool> WOA_EC_write(byte offset, byte table, byte value) {
    return Done(() => Native.WOA_EC_write(offset, table, value), new[] { R(0x0, Reason.Refused) });
  }

  // x + 1, wrapping at 32 bits: tells that the library is loaded and called rightly.
  public Answer<uint> wmiadd(uint x) {
    return Number(() => Native.wmiadd(x), a => a, new Reserved[0]);
  }

  [DllImport("kernel32", ExactSpelling = true, SetLastError = true, CharSet = CharSet.Unicode)]
  private static extern IntPtr LoadLibraryExW(string path, IntPtr file, uint flags);
  [DllImport("kernel32", ExactSpelling = true)]
  private static extern int FreeLibrary(IntPtr module);

  private static Reserved R(uint value, Reason why, bool alsoReading = false) {
    return new Reserved { Value = value, Why = why, AlsoReading = alsoReading };
  }

  private static KeyValuePair<string, Reason> T(string text, Reason why) {
    return new KeyValuePair<string, Reason>(text, why);
  }

  // Why a doubtful answer is none; null when it is a true reading.
  private static Reason? Doubtful(Doubt doubt, uint leastVersion, bool onArm64) {
    uint voltage = doubt == Doubt.Battery ? Native.BatteryHealthyTable_PackageVoltage() : NoAnswer;
    bool answered = voltage != 0 && voltage != NoAnswer && voltage != NotAvailable;
    if (answered && onArm64) return null;
    uint version = Native.BatteryHealthyTable_ReadVersion();
    // With a pack voltage: an ARM64 machine.
    if (version == NoAnswer) return answered ? Reason.Unsupported : Reason.NoAnswer;
    if (version < leastVersion) return Reason.Unsupported;
    if (doubt == Doubt.Battery && (voltage == NoAnswer || voltage == NotAvailable)) return Reason.NoAnswer;
    return null;
  }

  private static Answer<TTo> Number<TTo>(Func<uint> call, Func<uint, TTo> convert, Reserved[] reserved,
                                         Doubt doubt = Doubt.None, uint leastVersion = 0, bool onArm64 = true) {
    try {
      uint answer = call();
      foreach (var one in reserved) {
        if (one.Value != answer) continue;
        if (!one.AlsoReading) return new Answer<TTo>(one.Why);
        Reason? why = doubt == Doubt.None ? null : Doubtful(doubt, leastVersion, onArm64);
        if (why != null) return new Answer<TTo>(why.Value);
        break;
      }
      return new Answer<TTo>(convert(answer));
    } catch (EntryPointNotFoundException) {
      return new Answer<TTo>(Reason.MissingExport);
    }
  }

  // The value is always true.
  private static Answer<bool> Done(Func<uint> call, Reserved[] reserved) {
    var answer = Number(call, a => a == 1, reserved);
    return answer.HasValue && !answer.Value ? new Answer<bool>(Reason.Refused) : answer;
  }

  private static Answer<string> Judge(string text, KeyValuePair<string, Reason>[] texts) {
    foreach (var one in texts) {
      if (one.Key == text) return new Answer<string>(one.Value);
    }
    return new Answer<string>(text);
  }

  private static string FromBytes(byte* bytes, int capacity) {
    int length = 0;
    while (length < capacity && bytes[length] != 0) ++length;
    return Marshal.PtrToStringAnsi((IntPtr)bytes, length);
  }

  private static string FromChars(char[] text) {
    int length = Array.IndexOf(text, '\0');
    return new string(text, 0, length < 0 ? text.Length : length);
  }

  private static Answer<string> Narrow(Func<byte[], uint> call, int capacity, Reserved[] reserved,
                                       params KeyValuePair<string, Reason>[] texts) {
    var buffer = new byte[capacity];
    var answer = Number(() => call(buffer), a => a, reserved);
    if (!answer.HasValue) return new Answer<string>(answer.Why);
    fixed (byte* bytes = buffer) return Judge(FromBytes(bytes, capacity), texts);
  }

  private static Answer<string> Wide(Func<char[], uint> call, int capacity, Reserved[] reserved,
                                     params KeyValuePair<string, Reason>[] texts) {
    var buffer = new char[capacity];
    var answer = Number(() => call(buffer), a => a, reserved);
    return answer.HasValue ? Judge(FromChars(buffer), texts) : new Answer<string>(answer.Why);
  }

  // Without a buffer the export tells the length; there is room for twice as much, should it grow meanwhile.
  private static Answer<string> Long(Func<char[], uint> call, int capacity, Reserved[] reserved,
                                     params KeyValuePair<string, Reason>[] texts) {
    var length = Number(() => call(null), a => a, new Reserved[0]);
    if (!length.HasValue) return new Answer<string>(length.Why);
    return Wide(call, Math.Max(capacity, 2 * (int)length.Value + 1), reserved, texts);
  }

  private static Answer<string[]> Two(Func<char[], char[], uint> call, int capacity) {
    var length = Number(() => call(null, null), a => a, new Reserved[0]);
    if (!length.HasValue) return new Answer<string[]>(length.Why);
    int room = Math.Max(capacity, 2 * (int)length.Value + 1);
    char[] first = new char[room], second = new char[room];
    if (call(first, second) == 0) return new Answer<string[]>(Reason.NoAnswer);
    return new Answer<string[]>(new[] { FromChars(first), FromChars(second) });
  }

  private delegate uint AllocatedCall(out IntPtr text);

  private static Answer<string> Allocated(AllocatedCall call) {
    IntPtr given = IntPtr.Zero;
    var answer = Number(() => call(out given), a => a, new Reserved[0]);
    if (!answer.HasValue) return new Answer<string>(answer.Why);
    string text = Marshal.PtrToStringUni(given);
    Marshal.FreeCoTaskMem(given);
    return string.IsNullOrEmpty(text) ? new Answer<string>(Reason.NoAnswer) : new Answer<string>(text);
  }

  private static Answer<string> Returned(Func<Native.VexaText> call, params KeyValuePair<string, Reason>[] texts) {
    try {
      var text = call();
      return Judge(FromBytes(text.text, 1024), texts);
    } catch (EntryPointNotFoundException) {
      return new Answer<string>(Reason.MissingExport);
    }
  }
}

}  // namespace Vexa
