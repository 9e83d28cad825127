"""VexaWinIO64.dll for Python: every answer is a value, or the exception Missing with its reason.

Made by interface/generate.py from interface/exports.json and interface/templates/vexawinio.py: change those.

    library = vexawinio.Library(r"C:\\Program Files\\Vexa\\VexaWinIO64.dll")
    with library.session():                       # InitializeWinIo; its end is ShutdownWinIo
        try:
            print(library.BatteryHealthyTable_Rsoc(), "%")
        except vexawinio.Missing as missing:
            print(missing.reason)

Needs nothing but the standard library; Python 3.8 or later, 64 bits. The methods have the exports' names.
"""

import contextlib
import ctypes
import ntpath

NO_ANSWER = 0x7FFFFFFF
NOT_AVAILABLE = 0xFFFFFFFF
FAN_SLOTS = 255

REASONS = ("no_answer", "unsupported", "not_present", "not_collected", "refused", "missing_export")

u8, u32, i32 = ctypes.c_uint8, ctypes.c_uint32, ctypes.c_int32
text8, text16, memory = ctypes.c_char_p, ctypes.c_wchar_p, ctypes.c_void_p

class VexaText(ctypes.Structure):
    _fields_ = [("text", ctypes.c_char * 1024)]


class VexaPdIcPartNumber(ctypes.Structure):
    _fields_ = [("told_length", u32), ("length", u32), ("text", ctypes.c_char * 64)]


class Missing(Exception):
    """There is no value; the reason is one of REASONS."""

    def __init__(self, export, reason):
        super().__init__(f"{export}: {reason}")
        self.export = export
        self.reason = reason


# name: (what it returns, argument types, shape of the answer, capacity of a text or None, signed,
#        {reserved number: (reason, also a true reading)}, {reserved text: reason}, doubt, default arguments)
EXPORTS = {
    "Adapter_Clear_Charger_Data": (u32, (), "done", None, False, {0xFFFFFFFF: ("unsupported", False), 0x0: ("refused", False)}, {}, None, ()),
    "Adapter_Clear_Power_Data_Flag": (u32, (), "done", None, False, {0x0: ("refused", False)}, {}, None, ()),
    "Adapter_Read_ChampionPort_Watt": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_Charger_Information": (u32, (), "number", None, False, {0x0: ("unsupported", True)}, {}, ('version', 14, False), ()),
    "Adapter_Read_Charger_Interrupt": (u32, (), "number", None, False, {0x0: ("unsupported", True)}, {}, ('version', 14, False), ()),
    "Adapter_Read_Contract_PDO": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_PDO": (u32, (u32,), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, (None,)),
    "Adapter_Read_PDO1": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_PDO2": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_PDO3": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_PDO4": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_PDO5": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_PDO6": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_PDO7": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_PDO_Watt": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_PD_ADO": (u32, (), "number", None, False, {0x0: ("unsupported", True)}, {}, ('version', 14, False), ()),
    "Adapter_Read_PD_Get_Emark_Other": (u32, (), "number", None, False, {0x0: ("unsupported", True)}, {}, ('version', 23, False), ()),
    "Adapter_Read_PD_Get_Emark_PID": (u32, (), "number", None, False, {0x0: ("unsupported", True)}, {}, ('version', 23, False), ()),
    "Adapter_Read_PD_Get_Emark_VID": (u32, (), "number", None, False, {0x0: ("unsupported", True)}, {}, ('version', 23, False), ()),
    "Adapter_Read_PD_Get_Emark_XID": (u32, (), "number", None, False, {0x0: ("unsupported", True)}, {}, ('version', 23, False), ()),
    "Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion": (u32, (), "number", None, False, {0x0: ("unsupported", True)}, {}, ('version', 14, False), ()),
    "Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion": (u32, (), "number", None, False, {0x0: ("unsupported", True)}, {}, ('version', 14, False), ()),
    "Adapter_Read_PD_Get_Source_Cap_Extend_PID": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_PD_Get_Source_Cap_Extend_VID": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_PD_Get_Source_Cap_Extend_XID": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_PD_Get_Status_EventFlag": (u32, (), "number", None, False, {0x0: ("unsupported", True)}, {}, ('version', 14, False), ()),
    "Adapter_Read_PD_Get_Status_Temperature": (u32, (), "number", None, False, {0x0: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_PD_IC_PN": (u32, (ctypes.POINTER(VexaPdIcPartNumber),), "record", None, False, {0x0: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_Power_Big_Data_Config": (u32, (), "number", None, False, {0x0: ("unsupported", True)}, {}, ('version', 14, False), ()),
    "Adapter_Read_Power_Data_Flag": (u32, (), "number", None, False, {0x0: ("unsupported", True)}, {}, ('version', 14, False), ()),
    "Adapter_Read_Standard_Watt": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Read_Sufficient_Watt": (u32, (), "number", None, False, {0xFFFFFFFF: ("unsupported", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Adapter_Set_Notify_Control": (u32, (u8,), "done", None, False, {0x0: ("refused", False)}, {}, None, (None,)),
    "BatteryHealthyTable_ACStatus": (u32, (), "flag", None, False, {0x0: ("no_answer", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_BatteryError": (u32, (), "flag", None, False, {0x0: ("no_answer", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_BatteryInformation": (VexaText, (), "returned", None, False, {}, {"": "no_answer"}, None, ()),
    "BatteryHealthyTable_CellVoltage1": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0x0: ("unsupported", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_CellVoltage2": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0x0: ("unsupported", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_CellVoltage3": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0x0: ("unsupported", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_CellVoltage4": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0x0: ("unsupported", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_ChargingCurrent": (u32, (), "number", None, True, {0x7FFFFFFF: ("no_answer", False), 0xFFFFFFFF: ("unsupported", True), 0x0: ("unsupported", True)}, {}, ('battery', 1, False), ()),
    "BatteryHealthyTable_ChargingVoltage": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0xFFFFFFFF: ("unsupported", False), 0x0: ("no_answer", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_Current": (u32, (), "number", None, True, {0x7FFFFFFF: ("no_answer", False), 0xFFFFFFFF: ("unsupported", True), 0x0: ("no_answer", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_CycleCount": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0xFFFFFFFF: ("unsupported", False), 0x0: ("no_answer", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_DesignVoltage": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0x0: ("unsupported", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_DeviceName": (u32, (text8,), "narrow", 33, False, {0x0: ("no_answer", False)}, {}, None, ()),
    "BatteryHealthyTable_ECChipID": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "BatteryHealthyTable_ECChipName": (u32, (text8,), "narrow", 15, False, {0x0: ("no_answer", False)}, {}, None, ()),
    "BatteryHealthyTable_FullChargeCapacity": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0x0: ("unsupported", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_FullCharged": (u32, (), "flag", None, False, {0x7FFFFFFF: ("unsupported", False), 0x0: ("no_answer", True)}, {}, ('battery', 1, False), ()),
    "BatteryHealthyTable_GaugeIC": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0x0: ("unsupported", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_LidStatus": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0x0: ("unsupported", True)}, {}, ('battery', 1, False), ()),
    "BatteryHealthyTable_ManufactureDate": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0xFFFFFFFF: ("unsupported", False), 0x0: ("no_answer", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_ManufactureName": (u32, (text8,), "narrow", 33, False, {0x0: ("no_answer", False)}, {}, None, ()),
    "BatteryHealthyTable_ManufactureNameBySMBus": (u32, (text8,), "narrow", 33, False, {0x0: ("no_answer", False)}, {}, None, ()),
    "BatteryHealthyTable_PFStatus": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "BatteryHealthyTable_PackageVoltage": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0xFFFFFFFF: ("unsupported", False), 0x0: ("no_answer", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_ReadVendorType": (u32, (), "flag", None, False, {0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "BatteryHealthyTable_ReadVersion": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "BatteryHealthyTable_RemainingCapacity": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0x0: ("unsupported", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_Rsoc": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0x0: ("unsupported", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_SafetyStatus": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "BatteryHealthyTable_SerialNumber": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0x0: ("unsupported", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_Temperature": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0xFFFFFFFF: ("unsupported", False), 0x0: ("no_answer", True)}, {}, ('battery', 1, True), ()),
    "BatteryHealthyTable_TimeoutStatus": (u32, (), "number", None, False, {0x0: ("no_answer", True)}, {}, ('battery', 1, False), ()),
    "EC_ReadEcChipId": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "EC_ReadEcChipName": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "EC_ReadEcFwRev": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0xFFFF: ("unsupported", False), 0x7FFF: ("unsupported", False)}, {}, None, ()),
    "EC_ReadProjectInformation": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "GetDriverVersion": (u32, (), "number", None, False, {0x0: ("no_answer", False)}, {}, None, ()),
    "GetInfVersion": (None, (text16,), "wide", 64, False, {}, {"": "not_present"}, None, ()),
    "GetIoDllVersion": (u32, (), "number", None, False, {}, {}, None, ()),
    "GetRefCount": (u32, (), "number", None, False, {0x0: ("no_answer", False)}, {}, None, ()),
    "GetUWPVersion": (None, (text16,), "wide", 64, False, {}, {"": "not_present"}, None, ()),
    "HealthyTable_FanCounts": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "HealthyTable_FanRPM": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0xFFFFFFFF: ("unsupported", False)}, {}, None, ()),
    "HealthyTable_GetFanTestMode": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "HealthyTable_Read_BoardTS0L_Temperature": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "HealthyTable_Read_Cpu_Temperature": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "HealthyTable_Read_Fan": (u32, (ctypes.POINTER(u32),), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0xFFFFFFFF: ("unsupported", False), 0x0: ("not_present", True)}, {}, None, ()),
    "HealthyTable_SetFanIndex": (u32, (u32,), "done", None, False, {0x0: ("refused", False)}, {}, None, (None,)),
    "HealthyTable_SetFanPwmDuty": (u32, (u8,), "done", None, False, {0x0: ("refused", False)}, {}, None, (None,)),
    "HealthyTable_SetFanTestMode": (u32, (u32,), "done", None, False, {0x0: ("refused", False)}, {}, None, (None,)),
    "InitializeWinIo": (u32, (), "done", None, False, {0x0: ("refused", False)}, {}, None, ()),
    "Power_PD_Charging": (u32, (), "flag", None, False, {0x0: ("unsupported", True)}, {}, ('version', 8, False), ()),
    "Power_Read_ACDCMode": (u32, (), "flag", None, False, {0xFF: ("no_answer", False)}, {}, None, ()),
    "Power_Set_Monitor_PowerDropped": (u32, (u32,), "done", None, False, {0x0: ("refused", False)}, {}, None, (None,)),
    "Quillo_Read_Cpu_Temperature": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "Quillo_Read_Fan": (u32, (i32,), "number", None, False, {0x7FFFFFFF: ("no_answer", False), 0xFFFFFFFF: ("unsupported", False), 0x0: ("not_present", True)}, {}, None, (None,)),
    "RF_AP_MAC": (None, (text8,), "narrow", 13, False, {}, {"init_string": "not_collected", "error_string": "no_answer"}, None, ()),
    "RF_BTConnectedNum": (u32, (), "number", None, False, {0xFFFFFC18: ("not_present", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "RF_BTConnectedType": (VexaText, (), "returned", None, False, {}, {"init_string": "not_present", "error_string": "no_answer", "": "no_answer"}, None, ()),
    "RF_BTIsUsed": (u32, (), "flag", None, False, {0xFFFFFC18: ("not_present", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "RF_Net_Connected_Type": (VexaText, (), "returned", None, False, {}, {"Unknow": "not_present", "": "no_answer"}, None, ()),
    "RF_PhyMode": (VexaText, (), "returned", None, False, {}, {"init_string": "not_collected", "error_string": "no_answer"}, None, ()),
    "RF_USBHDMIIsUsed": (u32, (), "flag", None, False, {0x0: ("no_answer", True)}, {}, None, ()),
    "RF_USBISTYPEC": (u32, (text16,), "number", None, False, {0x0: ("not_present", False)}, {}, None, (None,)),
    "RF_USBIsTranster": (u32, (), "flag", None, False, {0x0: ("no_answer", True)}, {}, None, ()),
    "RF_USBNum": (VexaText, (), "returned", None, False, {}, {"init_string": "no_answer", "": "no_answer"}, None, ()),
    "RF_USBPort": (VexaText, (), "returned", None, False, {}, {"init_string": "no_answer"}, None, ()),
    "RF_USB_A_Num": (u32, (), "number", None, False, {}, {}, None, ()),
    "RF_USB_C_Num": (u32, (), "number", None, False, {}, {}, None, ()),
    "RF_WiFiCardName": (u32, (text16,), "wide", 256, False, {0x16: ("refused", False), 0x7FFFFFFF: ("no_answer", False)}, {"init_string": "not_collected", "error_string": "no_answer"}, None, ()),
    "RF_WiFiChannel": (u32, (), "number", None, False, {0xFFFFFC18: ("not_collected", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "RF_WiFiIsConnected": (u32, (), "flag", None, False, {0xFFFFFC18: ("not_collected", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "RF_WiFiMaxRate": (u32, (), "number", None, False, {0xFFFFFC18: ("not_collected", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "RF_WiFiRssi": (u32, (), "number", None, True, {0xFFFFFC18: ("not_collected", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "RF_WiFi_2_4G_AP_Ch_Num": (VexaText, (), "returned", None, False, {}, {"init_string": "not_collected", "error_string": "no_answer"}, None, ()),
    "RF_WiFi_2_4G_AP_Num": (u32, (), "number", None, False, {0xFFFFFC18: ("not_collected", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "RF_WiFi_2_4G_AP_RSSI_Num": (VexaText, (), "returned", None, False, {}, {"init_string": "not_collected", "error_string": "no_answer"}, None, ()),
    "RF_WiFi_5G_AP_Band_Num": (VexaText, (), "returned", None, False, {}, {"init_string": "not_collected", "error_string": "no_answer"}, None, ()),
    "RF_WiFi_5G_AP_Num": (u32, (), "number", None, False, {0xFFFFFC18: ("not_collected", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "RF_WiFi_5G_AP_RSSI_Num": (VexaText, (), "returned", None, False, {}, {"init_string": "not_collected", "error_string": "no_answer"}, None, ()),
    "RF_WiFi_6G_AP_NUII_Num": (VexaText, (), "returned", None, False, {}, {"init_string": "not_collected", "error_string": "no_answer"}, None, ()),
    "RF_WiFi_6G_AP_Num": (u32, (), "number", None, False, {0xFFFFFC18: ("not_collected", False), 0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "RF_WiFi_6G_AP_RSSI_Num": (VexaText, (), "returned", None, False, {}, {"init_string": "not_collected", "error_string": "no_answer"}, None, ()),
    "RF_WiFi_Main_Aux_Rssi": (VexaText, (), "returned", None, False, {}, {"0:0": "not_collected"}, None, ()),
    "ShutdownWinIo": (None, (), "line", None, False, {}, {}, None, ()),
    "StopWinIoDriver": (u32, (u32,), "done", None, False, {0x0: ("refused", False)}, {}, None, (None,)),
    "System_Check_S_Mode": (u32, (), "flag", None, False, {}, {}, None, ()),
    "System_Read_LocalTime": (u32, (text8,), "narrow", 20, False, {0x0: ("refused", False)}, {}, None, ()),
    "System_Read_TabletMode": (u32, (), "number", None, False, {0x7FFFFFFF: ("no_answer", False)}, {}, None, ()),
    "System_Read_VolumeLevel": (i32, (u8,), "number", None, True, {0xFFFFFFFF: ("not_present", False)}, {}, None, (1,)),
    "TraceOutput": (None, (i32, text8,), "line", None, False, {}, {}, None, (None,)),
    "TraceOutputCritical": (None, (i32, text8,), "line", None, False, {}, {}, None, (None,)),
    "WMICheckAppExist": (u32, (u32,), "flag", None, False, {}, {}, None, (1,)),
    "WMICheckBatteryHealthSupport": (u32, (u32,), "flag", None, False, {}, {}, None, (1,)),
    "WMICheckQuietFanSupport": (u32, (u32,), "flag", None, False, {0xFFFFFFFF: ("unsupported", False)}, {}, None, (1,)),
    "WMIGet90Number": (u32, (text16, u32,), "long", 256, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetAppPath": (u32, (text16, u32,), "wide", 260, False, {0x0: ("not_present", False)}, {}, None, (1,)),
    "WMIGetBatteryHealth": (u32, (u32,), "number", None, False, {}, {}, None, (1,)),
    "WMIGetBiosManufacture": (u32, (text16, u32,), "long", 256, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetBiosReleaseDate": (u32, (text16, u32,), "long", 64, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetBiosVersion": (u32, (text16, u32,), "long", 256, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetBoardUUID": (u32, (text16, u32,), "long", 64, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetCPUArchitecture": (u32, (u32,), "number", None, False, {0xFFFFFFFF: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetCPUInfo": (u32, (text16, u32,), "long", 512, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetCPUUsg": (u32, (u32,), "number", None, False, {0xFFFFFFFF: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetCardReaderCaption": (u32, (text16, u32,), "long", 1024, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetComputerFamilyName": (u32, (text16, u32,), "long", 256, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetExternMonitorNum": (u32, (u32,), "number", None, False, {0x0: ("no_answer", True)}, {}, None, (1,)),
    "WMIGetExternMonitorPropList": (u32, (text16, u32,), "long", 4096, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetGPUInfo": (u32, (text16, u32,), "long", 1024, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetGPUUsg": (u32, (u32,), "number", None, False, {0xFFFFFFFF: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetHDDCaption": (u32, (text16, u32,), "long", 2048, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetHDDInfo": (u32, (text16, u32,), "long", 4096, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetHDDList": (u32, (text16, u32,), "long", 1024, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetHDDModel": (u32, (text16, u32,), "long", 2048, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetHDDSize": (u32, (text16, u32,), "long", 1024, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetHDDUsage": (u32, (text16, text16, u32,), "two", 4096, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetLCDModel": (u32, (text16, u32,), "long", 512, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetMacAddress": (u32, (text16, u32,), "long", 1024, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetMemFrequency": (u32, (text16, u32,), "long", 16, False, {0x0: ("no_answer", False)}, {"-1": "no_answer"}, None, (1,)),
    "WMIGetMemInfo": (u32, (text16, u32,), "long", 4096, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetMemManufacture": (u32, (text16, u32,), "long", 1024, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetMemModel": (u32, (text16, u32,), "long", 1024, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetMemSize": (u32, (text16, u32,), "long", 1024, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetModelName": (u32, (text16, u32,), "long", 256, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetMonitorBrightness": (u32, (u32,), "number", None, False, {0xFFFFFFFF: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetOSInfo": (u32, (text16, u32,), "long", 256, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetPhysicalDiskInfo": (u32, (text16, u32,), "long", 4096, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetProductName": (u32, (text16, u32,), "long", 256, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetQuietFan": (u32, (u32,), "number", None, False, {}, {}, None, (1,)),
    "WMIGetSDCardCaption": (u32, (text16, u32,), "long", 1024, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetSDCardSize": (u32, (text16, u32,), "long", 2048, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetSN": (u32, (text16, u32,), "long", 256, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetSSDList": (u32, (text16, u32,), "long", 1024, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetSSDModel": (u32, (text16, u32,), "long", 2048, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetSSDUsage": (u32, (text16, text16, u32,), "two", 4096, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetSystemChassisTypes": (u32, (text16, u32,), "long", 16, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetType2SN": (u32, (text16, u32,), "long", 256, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetWiFiBytesPersec": (u32, (text16, u32,), "long", 256, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMIGetWiFiCardName": (u32, (ctypes.POINTER(memory), u8,), "allocated", None, False, {0x0: ("no_answer", False)}, {}, None, (1,)),
    "WMISetAppPath": (u32, (text16, u32,), "done", None, False, {0x0: ("refused", False)}, {}, None, (None, 1)),
    "WMISetBatteryHealth": (u32, (i32, u32,), "done", None, False, {0x0: ("refused", False)}, {}, None, (None, 1)),
    "WMISetBatteryHealthToUser": (u32, (i32, u32,), "done", None, False, {0x0: ("refused", False)}, {}, None, (None, 1)),
    "WMISetQuietFan": (u32, (u8, u32,), "done", None, False, {0x0: ("refused", False)}, {}, None, (None, 1)),
    "WOA_EC_read": (i32, (u8, u8,), "number", None, True, {0x7FFFFFFF: ("no_answer", False)}, {}, None, (None, None)),
    "WOA_EC_write": (u32, (u8, u8, u8,), "done", None, False, {0x0: ("refused", False)}, {}, None, (None, None, None)),
    "wmiadd": (u32, (u32,), "number", None, False, {}, {}, None, (None,)),
}


class Library:
    """The library at an absolute path. What it needs comes from its own folder and the system's."""

    def __init__(self, path):
        if not ntpath.splitdrive(path)[0] or not ntpath.isabs(path):
            raise ValueError("the path of the library must be absolute")
        # LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32
        self._dll = ctypes.CDLL(path, winmode=0x100 | 0x800)
        self._functions = {}

    @contextlib.contextmanager
    def session(self):
        """Makes the library ready for as long as the block runs. Administrator rights and waits: see InitializeWinIo."""
        if self.raw("InitializeWinIo")() != 1:
            raise Missing("InitializeWinIo", "refused")
        try:
            yield self
        finally:
            self.raw("ShutdownWinIo")()

    def raw(self, name):
        """The export itself, with its types."""
        if name not in self._functions:
            try:
                function = getattr(self._dll, name)
            except AttributeError:
                raise Missing(name, "missing_export") from None
            function.restype, function.argtypes = EXPORTS[name][0], EXPORTS[name][1]
            self._functions[name] = function
        return self._functions[name]

    def TraceOutput(self, text):
        """Writes a line at level 4 (informational)."""
        self._line("TraceOutput", text)

    def TraceOutputCritical(self, text):
        """Writes a line at level 1 (critical)."""
        self._line("TraceOutputCritical", text)

    def HealthyTable_Read_Fan(self):
        """Speeds of all fans in the order of their indexes; None for one that did not answer."""
        function = self.raw("HealthyTable_Read_Fan")
        count = self.HealthyTable_FanCounts()
        slots = (u32 * FAN_SLOTS)()
        function(slots)
        return [None if speed in (NO_ANSWER, NOT_AVAILABLE) else speed for speed in slots[:min(count, FAN_SLOTS)]]

    def _line(self, name, text):
        data = text.encode("utf-16-le", "surrogatepass")
        self.raw(name)(len(data), data)

    def _doubtful(self, kind, least_version, on_arm64):
        """Why a doubtful answer is none; None when it is a true reading."""
        voltage = self.raw("BatteryHealthyTable_PackageVoltage")() if kind == "battery" else NO_ANSWER
        answered = voltage not in (0, NO_ANSWER, NOT_AVAILABLE)
        if answered and on_arm64:
            return None
        version = self.raw("BatteryHealthyTable_ReadVersion")()
        if version == NO_ANSWER:  # with a pack voltage: an ARM64 machine
            return "unsupported" if answered else "no_answer"
        if version < least_version:
            return "unsupported"
        return "no_answer" if kind == "battery" and voltage in (NO_ANSWER, NOT_AVAILABLE) else None

    def _judge(self, name, answer):
        if answer is None:
            return
        reason, also_reading = EXPORTS[name][5].get(answer & 0xFFFFFFFF, (None, False))
        if also_reading:
            doubt = EXPORTS[name][7]
            reason = self._doubtful(*doubt) if doubt else None
        if reason is not None:
            raise Missing(name, reason)

    def _text(self, name, text):
        reason = EXPORTS[name][6].get(text)
        if reason is not None:
            raise Missing(name, reason)
        return text

    def _call(self, name, arguments):
        _, _, shape, capacity, signed, _, _, _, defaults = EXPORTS[name]
        function = self.raw(name)
        arguments = tuple(arguments) + defaults[len(arguments):]
        if shape in ("number", "flag", "done"):
            answer = function(*arguments)
            self._judge(name, answer)
            if shape == "done" and answer != 1:
                raise Missing(name, "refused")
            if shape == "flag":
                return answer != 0
            return None if shape == "done" else i32(answer).value if signed else answer
        if shape == "returned":
            return self._text(name, function().text.decode("mbcs", "replace"))
        if shape == "record":
            record = VexaPdIcPartNumber()
            if function(record) != 1:
                raise Missing(name, "no_answer")
            return record
        if shape == "narrow":
            buffer = ctypes.create_string_buffer(capacity)
            self._judge(name, function(buffer, *arguments))
            return self._text(name, buffer.value.decode("mbcs", "replace"))
        return self._wide(name, function, shape, capacity, arguments)

    def _wide(self, name, function, shape, capacity, arguments):
        if shape == "allocated":
            given = ctypes.c_void_p()
            function(ctypes.byref(given), *arguments)
            text = ctypes.wstring_at(given) if given else ""
            free = ctypes.WinDLL("ole32").CoTaskMemFree
            free.argtypes = (ctypes.c_void_p,)
            free(given)
            if not text:
                raise Missing(name, "no_answer")
            return text
        places = 2 if shape == "two" else 1
        if shape in ("long", "two"):  # null buffers ask for the length
            capacity = max(capacity, 2 * function(*(None,) * places, *arguments) + 1)
        buffers = [ctypes.create_unicode_buffer(capacity) for _ in range(places)]
        self._judge(name, function(*buffers, *arguments))
        texts = tuple(self._text(name, buffer.value) for buffer in buffers)
        return texts if shape == "two" else texts[0]


def _method(name, summary):
    def method(self, *arguments):
        return self._call(name, arguments)

    method.__name__ = name
    method.__doc__ = summary
    return method


SUMMARIES = {
    'Adapter_Clear_Charger_Data': 'Clears the charger interrupt and then the charger information.',
    'Adapter_Clear_Power_Data_Flag': 'Clears all data flags.',
    'Adapter_Read_ChampionPort_Watt': 'Wattage of the adapter at the champion port.',
    'Adapter_Read_Charger_Information': 'Charger information byte.',
    'Adapter_Read_Charger_Interrupt': 'Charger interrupt byte.',
    'Adapter_Read_Contract_PDO': 'The PDO that the contract rests on; 0: no contract.',
    'Adapter_Read_PDO': 'One PDO of the attached source; 0: the source has none at this place.',
    'Adapter_Read_PDO1': 'PDO 1 of the attached source; 0: the source has none at this place.',
    'Adapter_Read_PDO2': 'PDO 2 of the attached source; 0: the source has none at this place.',
    'Adapter_Read_PDO3': 'PDO 3 of the attached source; 0: the source has none at this place.',
    'Adapter_Read_PDO4': 'PDO 4 of the attached source; 0: the source has none at this place.',
    'Adapter_Read_PDO5': 'PDO 5 of the attached source; 0: the source has none at this place.',
    'Adapter_Read_PDO6': 'PDO 6 of the attached source; 0: the source has none at this place.',
    'Adapter_Read_PDO7': 'PDO 7 of the attached source; 0: the source has none at this place.',
    'Adapter_Read_PDO_Watt': "The EC's wattage record of the PDOs, as the EC holds it.",
    'Adapter_Read_PD_ADO': 'Type byte of the last alert data object.',
    'Adapter_Read_PD_Get_Emark_Other': "What else the cable's electronic marker tells.",
    'Adapter_Read_PD_Get_Emark_PID': "Product id of the cable's electronic marker.",
    'Adapter_Read_PD_Get_Emark_VID': "Vendor id of the cable's electronic marker.",
    'Adapter_Read_PD_Get_Emark_XID': 'Id that the certification gave the cable.',
    'Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion': 'Firmware version of the source.',
    'Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion': 'Hardware version of the source.',
    'Adapter_Read_PD_Get_Source_Cap_Extend_PID': 'Product id of the source.',
    'Adapter_Read_PD_Get_Source_Cap_Extend_VID': 'USB vendor id of the source.',
    'Adapter_Read_PD_Get_Source_Cap_Extend_XID': 'Id that the certification gave the source; 0: none.',
    'Adapter_Read_PD_Get_Status_EventFlag': "Event flags of the source's status.",
    'Adapter_Read_PD_Get_Status_Temperature': 'Temperature inside the source.',
    'Adapter_Read_PD_IC_PN': 'Part number of the PD controller.',
    'Adapter_Read_Power_Big_Data_Config': "Configuration byte of the EC's power data.",
    'Adapter_Read_Power_Data_Flag': "Data flags: which of the EC's power data are new. Above table version 23 reading clears them.",
    'Adapter_Read_Standard_Watt': 'Wattage of the adapter that the machine is sold with.',
    'Adapter_Read_Sufficient_Watt': 'Least wattage that is enough for the machine.',
    'Adapter_Set_Notify_Control': 'Sets the notification control byte.',
    'BatteryHealthyTable_ACStatus': '1: external power is present.',
    'BatteryHealthyTable_BatteryError': '1: the EC reports a battery error.',
    'BatteryHealthyTable_BatteryInformation': 'The 32 bytes of the battery\'s manufacture information as "0x.." texts, joined by commas.',
    'BatteryHealthyTable_CellVoltage1': 'Voltage of cell 1; a pack with fewer cells reports 0 for the others.',
    'BatteryHealthyTable_CellVoltage2': 'Voltage of cell 2; a pack with fewer cells reports 0 for the others.',
    'BatteryHealthyTable_CellVoltage3': 'Voltage of cell 3; a pack with fewer cells reports 0 for the others.',
    'BatteryHealthyTable_CellVoltage4': 'Voltage of cell 4; a pack with fewer cells reports 0 for the others.',
    'BatteryHealthyTable_ChargingCurrent': 'Charging current that the gauge asks for.',
    'BatteryHealthyTable_ChargingVoltage': 'Charging voltage that the gauge asks for.',
    'BatteryHealthyTable_Current': 'Current; negative while discharging.',
    'BatteryHealthyTable_CycleCount': 'Charge cycles so far.',
    'BatteryHealthyTable_DesignVoltage': 'Design voltage.',
    'BatteryHealthyTable_DeviceName': 'Device name of the battery from the gauge (register 0x21), at most 32 characters.',
    'BatteryHealthyTable_ECChipID': 'Chip id of the EC.',
    'BatteryHealthyTable_ECChipName': 'Name of the EC chip, at most 14 characters.',
    'BatteryHealthyTable_FullChargeCapacity': "Full-charge capacity in the gauge's unit: mAh, or 10 mWh as bit 15 of the battery mode says.",
    'BatteryHealthyTable_FullCharged': '1: the battery is fully charged.',
    'BatteryHealthyTable_GaugeIC': 'Code of the gauge chip.',
    'BatteryHealthyTable_LidStatus': 'Lid state byte of the EC.',
    'BatteryHealthyTable_ManufactureDate': 'Date of manufacture: day in bits 0-4, month in bits 5-8, year since 1980 in bits 9-15.',
    'BatteryHealthyTable_ManufactureName': 'Manufacturer of the battery from the healthy table, at most 16 characters.',
    'BatteryHealthyTable_ManufactureNameBySMBus': 'Manufacturer of the battery from the gauge itself (register 0x20), at most 32 characters.',
    'BatteryHealthyTable_PFStatus': 'Permanent-failure status of the gauge (register 0x53).',
    'BatteryHealthyTable_PackageVoltage': 'Voltage of the pack.',
    'BatteryHealthyTable_ReadVendorType': "Bit 7 of the EC's project information.",
    'BatteryHealthyTable_ReadVersion': 'Version of the healthy table, 0 to 255; 0: the EC has none.',
    'BatteryHealthyTable_RemainingCapacity': "Remaining capacity in the gauge's unit: mAh, or 10 mWh as bit 15 of the battery mode says.",
    'BatteryHealthyTable_Rsoc': 'Relative state of charge, of the full-charge capacity.',
    'BatteryHealthyTable_SafetyStatus': 'Safety status of the gauge (register 0x51).',
    'BatteryHealthyTable_SerialNumber': 'Serial number.',
    'BatteryHealthyTable_Temperature': 'Temperature of the pack.',
    'BatteryHealthyTable_TimeoutStatus': 'Charge-error status byte of the EC; 0: no charge time-out.',
    'EC_ReadEcChipId': 'Chip id.',
    'EC_ReadEcChipName': "The first four characters of the chip's name, the first in the top byte.",
    'EC_ReadEcFwRev': 'Firmware revision: its two characters, the first in bits 8-15.',
    'EC_ReadProjectInformation': 'Project information byte; bit 7: the EC reports a firmware revision. Never kept.',
    'GetDriverVersion': 'Version word of the kernel driver.',
    'GetInfVersion': 'Driver version of the device "Vexa System Control Interface V2".',
    'GetIoDllVersion': 'Version of this interface: always 0x00010001, major version in the high half.',
    'GetRefCount': "The kernel driver's own count of its users, over all processes.",
    'GetUWPVersion': 'Version of the companion app from the store.',
    'HealthyTable_FanCounts': 'Number of fans.',
    'HealthyTable_FanRPM': 'Speed of the selected fan.',
    'HealthyTable_GetFanTestMode': "Test mode of the fans: 0 off; on x64 the EC's byte as it is.",
    'HealthyTable_Read_BoardTS0L_Temperature': 'Temperature of board sensor 0; 0 also when there is no board sensor.',
    'HealthyTable_Read_Cpu_Temperature': 'Temperature of the CPU.',
    'HealthyTable_SetFanIndex': 'Selects the fan that HealthyTable_FanRPM and HealthyTable_SetFanPwmDuty speak of.',
    'HealthyTable_SetFanPwmDuty': "Sets the duty of the selected fan's PWM signal, in the EC's own steps; it lasts while test mode is on.",
    'HealthyTable_SetFanTestMode': "Turns the fans' test mode on or off. Turning on takes the fan mutex and keeps it until the same thread turns it off.",
    'Power_PD_Charging': '1: the machine runs on a USB-PD source.',
    'Power_Read_ACDCMode': 'Power line as the system knows it: 0 on battery, 1 on external power.',
    'Power_Set_Monitor_PowerDropped': 'Has the EC watch for drops of the power, or no longer.',
    'Quillo_Read_Cpu_Temperature': 'Temperature of the CPU, as HealthyTable_Read_Cpu_Temperature.',
    'Quillo_Read_Fan': 'Speed of one fan, under the fan mutex.',
    'RF_AP_MAC': 'Vendor prefix of the connected access point\'s address, "00:11:22".',
    'RF_BTConnectedNum': 'Connected devices on the last radio that has any.',
    'RF_BTConnectedType': 'The kinds of the connected Bluetooth devices, one word for each, each ended by ";".',
    'RF_BTIsUsed': '1: Bluetooth devices are connected.',
    'RF_Net_Connected_Type': 'The kind of the network link: "ETHERNET", "WWANPP2", "WIFI".',
    'RF_PhyMode': 'Kind of the connection, such as "802.11ax".',
    'RF_USBHDMIIsUsed': '1: an HDMI monitor was connected while collecting.',
    'RF_USBISTYPEC': 'Whether a USB device is plugged into a type-C port: 2 type C, 1 other.',
    'RF_USBIsTranster': '1: a disk was busy while collecting.',
    'RF_USBNum': 'USB mass-storage devices by USB version, as JSON with text counts.',
    'RF_USBPort': 'Port number of each of these devices, each followed by ","; empty when there is none.',
    'RF_USB_A_Num': 'User-accessible ports with a device on them whose connector is not type C.',
    'RF_USB_C_Num': 'User-accessible type-C ports with a device on them.',
    'RF_WiFiCardName': 'Description of the Wi-Fi adapter.',
    'RF_WiFiChannel': 'Channel number of the connected interface.',
    'RF_WiFiIsConnected': '1: a Wi-Fi interface is connected, 0: none is.',
    'RF_WiFiMaxRate': 'Greatest rate that the connected access point can receive; 0: its beacon does not tell.',
    'RF_WiFiRssi': 'Signal strength of the connected access point.',
    'RF_WiFi_2_4G_AP_Ch_Num': 'Access points on 2.4 GHz by channel, as JSON with text counts.',
    'RF_WiFi_2_4G_AP_Num': 'Access points on 2.4 GHz.',
    'RF_WiFi_2_4G_AP_RSSI_Num': 'Access points on 2.4 GHz by signal strength, as JSON with text counts.',
    'RF_WiFi_5G_AP_Band_Num': 'Access points on 5 GHz by band, as JSON with text counts.',
    'RF_WiFi_5G_AP_Num': 'Access points on 5 GHz.',
    'RF_WiFi_5G_AP_RSSI_Num': 'Access points on 5 GHz by signal strength, as JSON with text counts.',
    'RF_WiFi_6G_AP_NUII_Num': 'Access points on 6 GHz by band, as JSON with text counts.',
    'RF_WiFi_6G_AP_Num': 'Access points on 6 GHz.',
    'RF_WiFi_6G_AP_RSSI_Num': 'Access points on 6 GHz by signal strength, as JSON with text counts.',
    'RF_WiFi_Main_Aux_Rssi': 'Signal strength at the main and at the auxiliary antenna in dBm, "-52:-58".',
    'StopWinIoDriver': 'Stops the driver service.',
    'System_Check_S_Mode': "1: Windows runs in S mode; 0 also when the system can't tell.",
    'System_Read_LocalTime': 'The local time as "2026-02-03 09:05:00".',
    'System_Read_TabletMode': "The EC's tablet-mode byte; 0: a notebook, also on machines whose EC reports no firmware revision.",
    'System_Read_VolumeLevel': 'Master volume of the default speaker, cut to a whole number; muting does not show.',
    'WMICheckAppExist': '1 when the stored application folder exists.',
    'WMICheckBatteryHealthSupport': '1 when the firmware can limit the charge, 0 when not or when it does not answer.',
    'WMICheckQuietFanSupport': "The firmware's quiet fan: 1 on, 0 off.",
    'WMIGet90Number': "The fifth of the firmware's OEM strings, the order number.",
    'WMIGetAppPath': 'The application folder of the signed-in user.',
    'WMIGetBatteryHealth': 'The remembered charge limit; 100 for everything unknown.',
    'WMIGetBiosManufacture': 'Manufacturer of the baseboard.',
    'WMIGetBiosReleaseDate': 'Date of the BIOS in CIM form.',
    'WMIGetBiosVersion': 'Name of the BIOS, which carries its version.',
    'WMIGetBoardUUID': 'UUID of the machine.',
    'WMIGetCPUArchitecture': 'Architecture by Win32_Processor: 0 x86, 5 ARM, 9 x64, 12 ARM64.',
    'WMIGetCPUInfo': 'Name of each processor.',
    'WMIGetCPUUsg': 'Load of the last listed processor; WMI measures it while it answers, for about a second.',
    'WMIGetCardReaderCaption': 'Caption of the built-in card reader, when it is of the known kind.',
    'WMIGetComputerFamilyName': 'Product family.',
    'WMIGetExternMonitorNum': 'Number of external monitors; 0 also when the query failed.',
    'WMIGetExternMonitorPropList': '"instance name,vot=technology" of each external monitor.',
    'WMIGetGPUInfo': 'Caption of each video controller.',
    'WMIGetGPUUsg': 'Load of the graphics engines of all processes, added up, 0 to 100; 0 also when there is no engine.',
    'WMIGetHDDCaption': 'Caption of each fixed disk of any kind.',
    'WMIGetHDDInfo': '"model,size in bytes,media type" of each hard disk.',
    'WMIGetHDDList': 'Device id of each hard disk.',
    'WMIGetHDDModel': 'Model of each hard disk.',
    'WMIGetHDDSize': 'Size in bytes of each fixed disk of any kind.',
    'WMIGetHDDUsage': "Free space of the hard disks' volumes.",
    'WMIGetLCDModel': 'Name of each monitor that tells one.',
    'WMIGetMacAddress': 'Address of each physical adapter.',
    'WMIGetMemFrequency': 'Configured speed of the last listed memory module in MT/s as decimal text; "-1" when it can\'t be told.',
    'WMIGetMemInfo': '"manufacturer,part number,capacity in bytes,speed in MT/s,slot" of each memory module.',
    'WMIGetMemManufacture': 'Manufacturer of each memory module.',
    'WMIGetMemModel': 'Part number of each memory module.',
    'WMIGetMemSize': 'Capacity of each memory module in bytes.',
    'WMIGetModelName': 'Product name of the baseboard.',
    'WMIGetMonitorBrightness': 'Brightness of the built-in display.',
    'WMIGetOSInfo': 'Caption and architecture of the operating system.',
    'WMIGetPhysicalDiskInfo': '"model,size in bytes,media type,device id" of each disk; media type 3: hard disk, 4: solid-state disk.',
    'WMIGetProductName': 'Product name of the system.',
    'WMIGetQuietFan': 'The remembered quiet-fan mode: 1 to 3; 0 for everything unknown.',
    'WMIGetSDCardCaption': 'Caption of each removable disk.',
    'WMIGetSDCardSize': '"size in bytes,caption" of each removable disk.',
    'WMIGetSN': 'Serial number of the system.',
    'WMIGetSSDList': 'Device id of each solid-state disk.',
    'WMIGetSSDModel': 'Model of each solid-state disk.',
    'WMIGetSSDUsage': "Free space of the solid-state disks' volumes.",
    'WMIGetSystemChassisTypes': 'Form of the machine by its first chassis type: "Notebook", "Desktop" or "unknown".',
    'WMIGetType2SN': 'Serial number of the baseboard.',
    'WMIGetWiFiBytesPersec': '"received,sent" of the Wi-Fi adapter in bytes per second.',
    'WMIGetWiFiCardName': 'Name of the Wi-Fi adapter.',
    'WMISetAppPath': 'Remembers the application folder of the signed-in user.',
    'WMISetBatteryHealth': 'Tells the firmware to charge to this level.',
    'WMISetBatteryHealthToUser': 'Writes the level into the battery-health file of the application folder.',
    'WMISetQuietFan': "Switches the firmware's quiet fan.",
    'WOA_EC_read': 'Reads one byte of an EC table.',
    'WOA_EC_write': 'Writes one byte of an EC table.',
    'wmiadd': 'x + 1, wrapping at 32 bits: tells that the library is loaded and called rightly.',
}

for _name, _summary in SUMMARIES.items():
    setattr(Library, _name, _method(_name, _summary))
