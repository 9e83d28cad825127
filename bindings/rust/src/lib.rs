//! VexaWinIO64.dll for Rust: every answer is a value or the reason why there is none.
//!
//! Made by interface/generate.py from interface/exports.json and interface/templates/lib.rs: change those.
//!
//! The types of all exports stand in `raw`; the methods of `Library` cover those that answer a number, a flag or one text,
//! and the actions. `Library::get` gives any other export with its type from `raw`.
#![allow(non_snake_case, non_camel_case_types, clippy::too_many_arguments)]

use std::ffi::{c_void, CString, OsStr};
use std::os::windows::ffi::OsStrExt;
use std::path::Path;

#[derive(Clone, Copy, Debug, PartialEq, Eq)]
pub enum Reason {
    /// asked, and the source did not answer
    NoAnswer,
    /// this machine, firmware or EC has no such value
    Unsupported,
    /// the thing that it tells about is not there
    NotPresent,
    /// nothing has been collected
    NotCollected,
    /// the action was not carried out
    Refused,
    /// This version of the library has no such export.
    MissingExport,
}

pub type Answer<T> = Result<T, Reason>;

const NO_ANSWER: u32 = 0x7FFF_FFFF;
const NOT_AVAILABLE: u32 = 0xFFFF_FFFF;

/// The exports as they are.
pub mod raw {
    use std::ffi::c_void;

    #[repr(C)]
    #[derive(Clone, Copy)]
    pub struct VexaText {
        pub text: [u8; 1024],
    }

    #[repr(C)]
    #[derive(Clone, Copy)]
    pub struct VexaPdIcPartNumber {
        pub told_length: u32,
        pub length: u32,
        pub text: [u8; 64],
    }

    pub type Adapter_Clear_Charger_Data = unsafe extern "C" fn() -> u32;
    pub type Adapter_Clear_Power_Data_Flag = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_ChampionPort_Watt = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_Charger_Information = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_Charger_Interrupt = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_Contract_PDO = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PDO = unsafe extern "C" fn(u32) -> u32;
    pub type Adapter_Read_PDO1 = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PDO2 = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PDO3 = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PDO4 = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PDO5 = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PDO6 = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PDO7 = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PDO_Watt = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PD_ADO = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PD_Get_Emark_Other = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PD_Get_Emark_PID = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PD_Get_Emark_VID = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PD_Get_Emark_XID = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PD_Get_Source_Cap_Extend_PID = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PD_Get_Source_Cap_Extend_VID = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PD_Get_Source_Cap_Extend_XID = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PD_Get_Status_EventFlag = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PD_Get_Status_Temperature = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_PD_IC_PN = unsafe extern "C" fn(*mut VexaPdIcPartNumber) -> u32;
    pub type Adapter_Read_Power_Big_Data_Config = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_Power_Data_Flag = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_Standard_Watt = unsafe extern "C" fn() -> u32;
    pub type Adapter_Read_Sufficient_Watt = unsafe extern "C" fn() -> u32;
    pub type Adapter_Set_Notify_Control = unsafe extern "C" fn(u8) -> u32;
    pub type BatteryHealthyTable_ACStatus = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_BatteryError = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_BatteryInformation = unsafe extern "C" fn() -> VexaText;
    pub type BatteryHealthyTable_CellVoltage1 = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_CellVoltage2 = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_CellVoltage3 = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_CellVoltage4 = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_ChargingCurrent = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_ChargingVoltage = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_Current = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_CycleCount = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_DesignVoltage = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_DeviceName = unsafe extern "C" fn(*mut u8) -> u32;
    pub type BatteryHealthyTable_ECChipID = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_ECChipName = unsafe extern "C" fn(*mut u8) -> u32;
    pub type BatteryHealthyTable_FullChargeCapacity = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_FullCharged = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_GaugeIC = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_LidStatus = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_ManufactureDate = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_ManufactureName = unsafe extern "C" fn(*mut u8) -> u32;
    pub type BatteryHealthyTable_ManufactureNameBySMBus = unsafe extern "C" fn(*mut u8) -> u32;
    pub type BatteryHealthyTable_PFStatus = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_PackageVoltage = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_ReadVendorType = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_ReadVersion = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_RemainingCapacity = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_Rsoc = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_SafetyStatus = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_SerialNumber = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_Temperature = unsafe extern "C" fn() -> u32;
    pub type BatteryHealthyTable_TimeoutStatus = unsafe extern "C" fn() -> u32;
    pub type EC_ReadEcChipId = unsafe extern "C" fn() -> u32;
    pub type EC_ReadEcChipName = unsafe extern "C" fn() -> u32;
    pub type EC_ReadEcFwRev = unsafe extern "C" fn() -> u32;
    pub type EC_ReadProjectInformation = unsafe extern "C" fn() -> u32;
    pub type GetDriverVersion = unsafe extern "C" fn() -> u32;
    pub type GetInfVersion = unsafe extern "C" fn(*mut u16);
    pub type GetIoDllVersion = unsafe extern "C" fn() -> u32;
    pub type GetRefCount = unsafe extern "C" fn() -> u32;
    pub type GetUWPVersion = unsafe extern "C" fn(*mut u16);
    pub type HealthyTable_FanCounts = unsafe extern "C" fn() -> u32;
    pub type HealthyTable_FanRPM = unsafe extern "C" fn() -> u32;
    pub type HealthyTable_GetFanTestMode = unsafe extern "C" fn() -> u32;
    pub type HealthyTable_Read_BoardTS0L_Temperature = unsafe extern "C" fn() -> u32;
    pub type HealthyTable_Read_Cpu_Temperature = unsafe extern "C" fn() -> u32;
    pub type HealthyTable_Read_Fan = unsafe extern "C" fn(*mut u32) -> u32;
    pub type HealthyTable_SetFanIndex = unsafe extern "C" fn(u32) -> u32;
    pub type HealthyTable_SetFanPwmDuty = unsafe extern "C" fn(u8) -> u32;
    pub type HealthyTable_SetFanTestMode = unsafe extern "C" fn(u32) -> u32;
    pub type InitializeWinIo = unsafe extern "C" fn() -> u32;
    pub type Power_PD_Charging = unsafe extern "C" fn() -> u32;
    pub type Power_Read_ACDCMode = unsafe extern "C" fn() -> u32;
    pub type Power_Set_Monitor_PowerDropped = unsafe extern "C" fn(u32) -> u32;
    pub type Quillo_Read_Cpu_Temperature = unsafe extern "C" fn() -> u32;
    pub type Quillo_Read_Fan = unsafe extern "C" fn(i32) -> u32;
    pub type RF_AP_MAC = unsafe extern "C" fn(*mut u8);
    pub type RF_BTConnectedNum = unsafe extern "C" fn() -> u32;
    pub type RF_BTConnectedType = unsafe extern "C" fn() -> VexaText;
    pub type RF_BTIsUsed = unsafe extern "C" fn() -> u32;
    pub type RF_Net_Connected_Type = unsafe extern "C" fn() -> VexaText;
    pub type RF_PhyMode = unsafe extern "C" fn() -> VexaText;
    pub type RF_USBHDMIIsUsed = unsafe extern "C" fn() -> u32;
    pub type RF_USBISTYPEC = unsafe extern "C" fn(*const u16) -> u32;
    pub type RF_USBIsTranster = unsafe extern "C" fn() -> u32;
    pub type RF_USBNum = unsafe extern "C" fn() -> VexaText;
    pub type RF_USBPort = unsafe extern "C" fn() -> VexaText;
    pub type RF_USB_A_Num = unsafe extern "C" fn() -> u32;
    pub type RF_USB_C_Num = unsafe extern "C" fn() -> u32;
    pub type RF_WiFiCardName = unsafe extern "C" fn(*mut u16) -> u32;
    pub type RF_WiFiChannel = unsafe extern "C" fn() -> u32;
    pub type RF_WiFiIsConnected = unsafe extern "C" fn() -> u32;
    pub type RF_WiFiMaxRate = unsafe extern "C" fn() -> u32;
    pub type RF_WiFiRssi = unsafe extern "C" fn() -> u32;
    pub type RF_WiFi_2_4G_AP_Ch_Num = unsafe extern "C" fn() -> VexaText;
    pub type RF_WiFi_2_4G_AP_Num = unsafe extern "C" fn() -> u32;
    pub type RF_WiFi_2_4G_AP_RSSI_Num = unsafe extern "C" fn() -> VexaText;
    pub type RF_WiFi_5G_AP_Band_Num = unsafe extern "C" fn() -> VexaText;
    pub type RF_WiFi_5G_AP_Num = unsafe extern "C" fn() -> u32;
    pub type RF_WiFi_5G_AP_RSSI_Num = unsafe extern "C" fn() -> VexaText;
    pub type RF_WiFi_6G_AP_NUII_Num = unsafe extern "C" fn() -> VexaText;
    pub type RF_WiFi_6G_AP_Num = unsafe extern "C" fn() -> u32;
    pub type RF_WiFi_6G_AP_RSSI_Num = unsafe extern "C" fn() -> VexaText;
    pub type RF_WiFi_Main_Aux_Rssi = unsafe extern "C" fn() -> VexaText;
    pub type ShutdownWinIo = unsafe extern "C" fn();
    pub type StopWinIoDriver = unsafe extern "C" fn(u32) -> u32;
    pub type System_Check_S_Mode = unsafe extern "C" fn() -> u32;
    pub type System_Read_LocalTime = unsafe extern "C" fn(*mut u8) -> u32;
    pub type System_Read_TabletMode = unsafe extern "C" fn() -> u32;
    pub type System_Read_VolumeLevel = unsafe extern "C" fn(u8) -> i32;
    pub type TraceOutput = unsafe extern "C" fn(i32, *const c_void);
    pub type TraceOutputCritical = unsafe extern "C" fn(i32, *const c_void);
    pub type WMICheckAppExist = unsafe extern "C" fn(u32) -> u32;
    pub type WMICheckBatteryHealthSupport = unsafe extern "C" fn(u32) -> u32;
    pub type WMICheckQuietFanSupport = unsafe extern "C" fn(u32) -> u32;
    pub type WMIGet90Number = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetAppPath = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetBatteryHealth = unsafe extern "C" fn(u32) -> u32;
    pub type WMIGetBiosManufacture = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetBiosReleaseDate = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetBiosVersion = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetBoardUUID = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetCPUArchitecture = unsafe extern "C" fn(u32) -> u32;
    pub type WMIGetCPUInfo = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetCPUUsg = unsafe extern "C" fn(u32) -> u32;
    pub type WMIGetCardReaderCaption = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetComputerFamilyName = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetExternMonitorNum = unsafe extern "C" fn(u32) -> u32;
    pub type WMIGetExternMonitorPropList = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetGPUInfo = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetGPUUsg = unsafe extern "C" fn(u32) -> u32;
    pub type WMIGetHDDCaption = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetHDDInfo = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetHDDList = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetHDDModel = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetHDDSize = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetHDDUsage = unsafe extern "C" fn(*mut u16, *mut u16, u32) -> u32;
    pub type WMIGetLCDModel = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetMacAddress = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetMemFrequency = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetMemInfo = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetMemManufacture = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetMemModel = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetMemSize = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetModelName = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetMonitorBrightness = unsafe extern "C" fn(u32) -> u32;
    pub type WMIGetOSInfo = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetPhysicalDiskInfo = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetProductName = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetQuietFan = unsafe extern "C" fn(u32) -> u32;
    pub type WMIGetSDCardCaption = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetSDCardSize = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetSN = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetSSDList = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetSSDModel = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetSSDUsage = unsafe extern "C" fn(*mut u16, *mut u16, u32) -> u32;
    pub type WMIGetSystemChassisTypes = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetType2SN = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetWiFiBytesPersec = unsafe extern "C" fn(*mut u16, u32) -> u32;
    pub type WMIGetWiFiCardName = unsafe extern "C" fn(*mut *mut u16, u8) -> u32;
    pub type WMISetAppPath = unsafe extern "C" fn(*const u16, u32) -> u32;
    pub type WMISetBatteryHealth = unsafe extern "C" fn(i32, u32) -> u32;
    pub type WMISetBatteryHealthToUser = unsafe extern "C" fn(i32, u32) -> u32;
    pub type WMISetQuietFan = unsafe extern "C" fn(u8, u32) -> u32;
    pub type WOA_EC_read = unsafe extern "C" fn(u8, u8) -> i32;
    pub type WOA_EC_write = unsafe extern "C" fn(u8, u8, u8) -> u32;
    pub type wmiadd = unsafe extern "C" fn(u32) -> u32;
}

#[link(name = "kernel32")]
extern "system" {
    fn LoadLibraryExW(path: *const u16, file: *mut c_void, flags: u32) -> *mut c_void;
    fn GetProcAddress(module: *mut c_void, name: *const i8) -> *mut c_void;
    fn FreeLibrary(module: *mut c_void) -> i32;
}

type Reserved = [(u32, Reason, bool)];
type Texts = [(&'static str, Reason)];

/// What a doubtful answer is checked with, the least version of the healthy table, and whether ARM64 has a source.
enum Doubt {
    None,
    Battery(u32, bool),
    Version(u32),
}

pub struct Library {
    module: *mut c_void,
}

/// The time between InitializeWinIo and ShutdownWinIo.
pub struct Session<'a> {
    library: &'a Library,
}

impl Drop for Session<'_> {
    fn drop(&mut self) {
        if let Ok(shutdown) = unsafe { self.library.get::<raw::ShutdownWinIo>("ShutdownWinIo") } {
            unsafe { shutdown() }
        }
    }
}

impl Drop for Library {
    fn drop(&mut self) {
        unsafe { FreeLibrary(self.module) };
    }
}

fn wide(text: &OsStr) -> Vec<u16> {
    text.encode_wide().chain(Some(0)).collect()
}

fn until_zero<T: Copy + Default + PartialEq>(text: &[T]) -> &[T] {
    &text[..text.iter().position(|c| *c == T::default()).unwrap_or(text.len())]
}

fn judge_text(text: String, texts: &Texts) -> Answer<String> {
    match texts.iter().find(|one| one.0 == text) {
        Some(one) => Err(one.1),
        None => Ok(text),
    }
}

impl Library {
    /// Loads the file at this absolute path. What it needs comes from its own folder and the system's.
    pub fn load(path: &Path) -> std::io::Result<Library> {
        if !path.is_absolute() {
            return Err(std::io::Error::new(std::io::ErrorKind::InvalidInput, "the path must be absolute"));
        }
        let module = unsafe { LoadLibraryExW(wide(path.as_os_str()).as_ptr(), std::ptr::null_mut(), 0x100 | 0x800) };
        if module.is_null() {
            return Err(std::io::Error::last_os_error());
        }
        Ok(Library { module })
    }

    /// Makes the library ready for as long as the session lives.
    pub fn start(&self) -> Answer<Session<'_>> {
        let initialize = unsafe { self.get::<raw::InitializeWinIo>("InitializeWinIo") }?;
        if unsafe { initialize() } == 1 {
            Ok(Session { library: self })
        } else {
            Err(Reason::Refused)
        }
    }

    /// An export by its name.
    ///
    /// # Safety
    /// `F` must be the type of that name in `raw`.
    pub unsafe fn get<F: Copy>(&self, name: &str) -> Answer<F> {
        let name = CString::new(name).map_err(|_| Reason::MissingExport)?;
        let address = GetProcAddress(self.module, name.as_ptr() as *const i8);
        if address.is_null() {
            return Err(Reason::MissingExport);
        }
        assert_eq!(std::mem::size_of::<F>(), std::mem::size_of::<*mut c_void>());
        Ok(std::mem::transmute_copy(&address))
    }

    /// Why a doubtful answer is none; nothing when it is a true reading.
    fn doubtful(&self, doubt: &Doubt) -> Option<Reason> {
        let read = |name| match unsafe { self.get::<unsafe extern "C" fn() -> u32>(name) } {
            Ok(function) => unsafe { function() },
            Err(_) => NO_ANSWER,
        };
        let (least, on_arm64, battery) = match *doubt {
            Doubt::None => return None,
            Doubt::Battery(least, on_arm64) => (least, on_arm64, true),
            Doubt::Version(least) => (least, false, false),
        };
        let voltage = if battery { read("BatteryHealthyTable_PackageVoltage") } else { NO_ANSWER };
        let answered = voltage != 0 && voltage != NO_ANSWER && voltage != NOT_AVAILABLE;
        if answered && on_arm64 {
            return None;
        }
        let version = read("BatteryHealthyTable_ReadVersion");
        if version == NO_ANSWER {
            // With a pack voltage: an ARM64 machine.
            return Some(if answered { Reason::Unsupported } else { Reason::NoAnswer });
        }
        if version < least {
            return Some(Reason::Unsupported);
        }
        if battery && (voltage == NO_ANSWER || voltage == NOT_AVAILABLE) {
            return Some(Reason::NoAnswer);
        }
        None
    }

    fn judge(&self, answer: u32, reserved: &Reserved, doubt: Doubt) -> Answer<u32> {
        match reserved.iter().find(|one| one.0 == answer) {
            None => Ok(answer),
            Some((_, reason, false)) => Err(*reason),
            Some((_, _, true)) => self.doubtful(&doubt).map_or(Ok(answer), Err),
        }
    }

    fn done(&self, answer: u32, reserved: &Reserved) -> Answer<()> {
        match self.judge(answer, reserved, Doubt::None)? {
            1 => Ok(()),
            _ => Err(Reason::Refused),
        }
    }

    fn narrow(&self, room: usize, call: impl Fn(*mut u8) -> u32, reserved: &Reserved, texts: &Texts) -> Answer<String> {
        let mut buffer = vec![0u8; room];
        self.judge(call(buffer.as_mut_ptr()), reserved, Doubt::None)?;
        judge_text(String::from_utf8_lossy(until_zero(&buffer)).into_owned(), texts)
    }

    fn wide(&self, room: usize, call: impl Fn(*mut u16) -> u32, reserved: &Reserved, texts: &Texts) -> Answer<String> {
        let mut buffer = vec![0u16; room];
        self.judge(call(buffer.as_mut_ptr()), reserved, Doubt::None)?;
        judge_text(String::from_utf16_lossy(until_zero(&buffer)), texts)
    }

    /// Without a buffer the export tells the length; there is room for twice as much, should it grow meanwhile.
    fn long(&self, room: usize, call: impl Fn(*mut u16) -> u32, reserved: &Reserved, texts: &Texts) -> Answer<String> {
        let length = call(std::ptr::null_mut()) as usize;
        self.wide(room.max(2 * length + 1), call, reserved, texts)
    }

    fn returned(&self, text: raw::VexaText, texts: &Texts) -> Answer<String> {
        judge_text(String::from_utf8_lossy(until_zero(&text.text)).into_owned(), texts)
    }

    /// Clears the charger interrupt and then the charger information.
    pub fn Adapter_Clear_Charger_Data(&self) -> Answer<()> {
        let function = unsafe { self.get::<raw::Adapter_Clear_Charger_Data>("Adapter_Clear_Charger_Data") }?;
        self.done(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x0, Reason::Refused, false)])
    }

    /// Clears all data flags.
    pub fn Adapter_Clear_Power_Data_Flag(&self) -> Answer<()> {
        let function = unsafe { self.get::<raw::Adapter_Clear_Power_Data_Flag>("Adapter_Clear_Power_Data_Flag") }?;
        self.done(unsafe { function() }, &[(0x0, Reason::Refused, false)])
    }

    /// Wattage of the adapter at the champion port.
    pub fn Adapter_Read_ChampionPort_Watt(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_ChampionPort_Watt>("Adapter_Read_ChampionPort_Watt") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Charger information byte.
    pub fn Adapter_Read_Charger_Information(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_Charger_Information>("Adapter_Read_Charger_Information") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::Unsupported, true)], Doubt::Version(14))
    }

    /// Charger interrupt byte.
    pub fn Adapter_Read_Charger_Interrupt(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_Charger_Interrupt>("Adapter_Read_Charger_Interrupt") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::Unsupported, true)], Doubt::Version(14))
    }

    /// The PDO that the contract rests on; 0: no contract.
    pub fn Adapter_Read_Contract_PDO(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_Contract_PDO>("Adapter_Read_Contract_PDO") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// One PDO of the attached source; 0: the source has none at this place.
    pub fn Adapter_Read_PDO(&self, index: u32) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PDO>("Adapter_Read_PDO") }?;
        self.judge(unsafe { function(index) }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// PDO 1 of the attached source; 0: the source has none at this place.
    pub fn Adapter_Read_PDO1(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PDO1>("Adapter_Read_PDO1") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// PDO 2 of the attached source; 0: the source has none at this place.
    pub fn Adapter_Read_PDO2(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PDO2>("Adapter_Read_PDO2") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// PDO 3 of the attached source; 0: the source has none at this place.
    pub fn Adapter_Read_PDO3(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PDO3>("Adapter_Read_PDO3") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// PDO 4 of the attached source; 0: the source has none at this place.
    pub fn Adapter_Read_PDO4(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PDO4>("Adapter_Read_PDO4") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// PDO 5 of the attached source; 0: the source has none at this place.
    pub fn Adapter_Read_PDO5(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PDO5>("Adapter_Read_PDO5") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// PDO 6 of the attached source; 0: the source has none at this place.
    pub fn Adapter_Read_PDO6(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PDO6>("Adapter_Read_PDO6") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// PDO 7 of the attached source; 0: the source has none at this place.
    pub fn Adapter_Read_PDO7(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PDO7>("Adapter_Read_PDO7") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// The EC's wattage record of the PDOs, as the EC holds it.
    pub fn Adapter_Read_PDO_Watt(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PDO_Watt>("Adapter_Read_PDO_Watt") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Type byte of the last alert data object.
    pub fn Adapter_Read_PD_ADO(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PD_ADO>("Adapter_Read_PD_ADO") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::Unsupported, true)], Doubt::Version(14))
    }

    /// What else the cable's electronic marker tells.
    pub fn Adapter_Read_PD_Get_Emark_Other(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PD_Get_Emark_Other>("Adapter_Read_PD_Get_Emark_Other") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::Unsupported, true)], Doubt::Version(23))
    }

    /// Product id of the cable's electronic marker.
    pub fn Adapter_Read_PD_Get_Emark_PID(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PD_Get_Emark_PID>("Adapter_Read_PD_Get_Emark_PID") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::Unsupported, true)], Doubt::Version(23))
    }

    /// Vendor id of the cable's electronic marker.
    pub fn Adapter_Read_PD_Get_Emark_VID(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PD_Get_Emark_VID>("Adapter_Read_PD_Get_Emark_VID") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::Unsupported, true)], Doubt::Version(23))
    }

    /// Id that the certification gave the cable.
    pub fn Adapter_Read_PD_Get_Emark_XID(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PD_Get_Emark_XID>("Adapter_Read_PD_Get_Emark_XID") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::Unsupported, true)], Doubt::Version(23))
    }

    /// Firmware version of the source.
    pub fn Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion>("Adapter_Read_PD_Get_Source_Cap_Extend_FWVersion") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::Unsupported, true)], Doubt::Version(14))
    }

    /// Hardware version of the source.
    pub fn Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion>("Adapter_Read_PD_Get_Source_Cap_Extend_HWVersion") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::Unsupported, true)], Doubt::Version(14))
    }

    /// Product id of the source.
    pub fn Adapter_Read_PD_Get_Source_Cap_Extend_PID(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PD_Get_Source_Cap_Extend_PID>("Adapter_Read_PD_Get_Source_Cap_Extend_PID") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// USB vendor id of the source.
    pub fn Adapter_Read_PD_Get_Source_Cap_Extend_VID(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PD_Get_Source_Cap_Extend_VID>("Adapter_Read_PD_Get_Source_Cap_Extend_VID") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Id that the certification gave the source; 0: none.
    pub fn Adapter_Read_PD_Get_Source_Cap_Extend_XID(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PD_Get_Source_Cap_Extend_XID>("Adapter_Read_PD_Get_Source_Cap_Extend_XID") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Event flags of the source's status.
    pub fn Adapter_Read_PD_Get_Status_EventFlag(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PD_Get_Status_EventFlag>("Adapter_Read_PD_Get_Status_EventFlag") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::Unsupported, true)], Doubt::Version(14))
    }

    /// Temperature inside the source.
    pub fn Adapter_Read_PD_Get_Status_Temperature(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_PD_Get_Status_Temperature>("Adapter_Read_PD_Get_Status_Temperature") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Configuration byte of the EC's power data.
    pub fn Adapter_Read_Power_Big_Data_Config(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_Power_Big_Data_Config>("Adapter_Read_Power_Big_Data_Config") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::Unsupported, true)], Doubt::Version(14))
    }

    /// Data flags: which of the EC's power data are new. Above table version 23 reading clears them.
    pub fn Adapter_Read_Power_Data_Flag(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_Power_Data_Flag>("Adapter_Read_Power_Data_Flag") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::Unsupported, true)], Doubt::Version(14))
    }

    /// Wattage of the adapter that the machine is sold with.
    pub fn Adapter_Read_Standard_Watt(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_Standard_Watt>("Adapter_Read_Standard_Watt") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Least wattage that is enough for the machine.
    pub fn Adapter_Read_Sufficient_Watt(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Adapter_Read_Sufficient_Watt>("Adapter_Read_Sufficient_Watt") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFFFF, Reason::Unsupported, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Sets the notification control byte.
    pub fn Adapter_Set_Notify_Control(&self, value: u8) -> Answer<()> {
        let function = unsafe { self.get::<raw::Adapter_Set_Notify_Control>("Adapter_Set_Notify_Control") }?;
        self.done(unsafe { function(value) }, &[(0x0, Reason::Refused, false)])
    }

    /// 1: external power is present.
    pub fn BatteryHealthyTable_ACStatus(&self) -> Answer<bool> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_ACStatus>("BatteryHealthyTable_ACStatus") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::NoAnswer, true)], Doubt::Battery(1, true)).map(|a| a != 0)
    }

    /// 1: the EC reports a battery error.
    pub fn BatteryHealthyTable_BatteryError(&self) -> Answer<bool> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_BatteryError>("BatteryHealthyTable_BatteryError") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::NoAnswer, true)], Doubt::Battery(1, true)).map(|a| a != 0)
    }

    /// The 32 bytes of the battery's manufacture information as "0x.." texts, joined by commas.
    pub fn BatteryHealthyTable_BatteryInformation(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_BatteryInformation>("BatteryHealthyTable_BatteryInformation") }?;
        self.returned(unsafe { function() }, &[("", Reason::NoAnswer)])
    }

    /// Voltage of cell 1; a pack with fewer cells reports 0 for the others.
    pub fn BatteryHealthyTable_CellVoltage1(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_CellVoltage1>("BatteryHealthyTable_CellVoltage1") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0x0, Reason::Unsupported, true)], Doubt::Battery(1, true))
    }

    /// Voltage of cell 2; a pack with fewer cells reports 0 for the others.
    pub fn BatteryHealthyTable_CellVoltage2(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_CellVoltage2>("BatteryHealthyTable_CellVoltage2") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0x0, Reason::Unsupported, true)], Doubt::Battery(1, true))
    }

    /// Voltage of cell 3; a pack with fewer cells reports 0 for the others.
    pub fn BatteryHealthyTable_CellVoltage3(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_CellVoltage3>("BatteryHealthyTable_CellVoltage3") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0x0, Reason::Unsupported, true)], Doubt::Battery(1, true))
    }

    /// Voltage of cell 4; a pack with fewer cells reports 0 for the others.
    pub fn BatteryHealthyTable_CellVoltage4(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_CellVoltage4>("BatteryHealthyTable_CellVoltage4") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0x0, Reason::Unsupported, true)], Doubt::Battery(1, true))
    }

    /// Charging current that the gauge asks for.
    pub fn BatteryHealthyTable_ChargingCurrent(&self) -> Answer<i32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_ChargingCurrent>("BatteryHealthyTable_ChargingCurrent") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0xFFFFFFFF, Reason::Unsupported, true), (0x0, Reason::Unsupported, true)], Doubt::Battery(1, false)).map(|a| a as i32)
    }

    /// Charging voltage that the gauge asks for.
    pub fn BatteryHealthyTable_ChargingVoltage(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_ChargingVoltage>("BatteryHealthyTable_ChargingVoltage") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0xFFFFFFFF, Reason::Unsupported, false), (0x0, Reason::NoAnswer, true)], Doubt::Battery(1, true))
    }

    /// Current; negative while discharging.
    pub fn BatteryHealthyTable_Current(&self) -> Answer<i32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_Current>("BatteryHealthyTable_Current") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0xFFFFFFFF, Reason::Unsupported, true), (0x0, Reason::NoAnswer, true)], Doubt::Battery(1, true)).map(|a| a as i32)
    }

    /// Charge cycles so far.
    pub fn BatteryHealthyTable_CycleCount(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_CycleCount>("BatteryHealthyTable_CycleCount") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0xFFFFFFFF, Reason::Unsupported, false), (0x0, Reason::NoAnswer, true)], Doubt::Battery(1, true))
    }

    /// Design voltage.
    pub fn BatteryHealthyTable_DesignVoltage(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_DesignVoltage>("BatteryHealthyTable_DesignVoltage") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0x0, Reason::Unsupported, true)], Doubt::Battery(1, true))
    }

    /// Device name of the battery from the gauge (register 0x21), at most 32 characters.
    pub fn BatteryHealthyTable_DeviceName(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_DeviceName>("BatteryHealthyTable_DeviceName") }?;
        self.narrow(33, |text| unsafe { function(text) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Chip id of the EC.
    pub fn BatteryHealthyTable_ECChipID(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_ECChipID>("BatteryHealthyTable_ECChipID") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Name of the EC chip, at most 14 characters.
    pub fn BatteryHealthyTable_ECChipName(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_ECChipName>("BatteryHealthyTable_ECChipName") }?;
        self.narrow(15, |text| unsafe { function(text) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Full-charge capacity in the gauge's unit: mAh, or 10 mWh as bit 15 of the battery mode says.
    pub fn BatteryHealthyTable_FullChargeCapacity(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_FullChargeCapacity>("BatteryHealthyTable_FullChargeCapacity") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0x0, Reason::Unsupported, true)], Doubt::Battery(1, true))
    }

    /// 1: the battery is fully charged.
    pub fn BatteryHealthyTable_FullCharged(&self) -> Answer<bool> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_FullCharged>("BatteryHealthyTable_FullCharged") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::Unsupported, false), (0x0, Reason::NoAnswer, true)], Doubt::Battery(1, false)).map(|a| a != 0)
    }

    /// Code of the gauge chip.
    pub fn BatteryHealthyTable_GaugeIC(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_GaugeIC>("BatteryHealthyTable_GaugeIC") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0x0, Reason::Unsupported, true)], Doubt::Battery(1, true))
    }

    /// Lid state byte of the EC.
    pub fn BatteryHealthyTable_LidStatus(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_LidStatus>("BatteryHealthyTable_LidStatus") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0x0, Reason::Unsupported, true)], Doubt::Battery(1, false))
    }

    /// Date of manufacture: day in bits 0-4, month in bits 5-8, year since 1980 in bits 9-15.
    pub fn BatteryHealthyTable_ManufactureDate(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_ManufactureDate>("BatteryHealthyTable_ManufactureDate") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0xFFFFFFFF, Reason::Unsupported, false), (0x0, Reason::NoAnswer, true)], Doubt::Battery(1, true))
    }

    /// Manufacturer of the battery from the healthy table, at most 16 characters.
    pub fn BatteryHealthyTable_ManufactureName(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_ManufactureName>("BatteryHealthyTable_ManufactureName") }?;
        self.narrow(33, |text| unsafe { function(text) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Manufacturer of the battery from the gauge itself (register 0x20), at most 32 characters.
    pub fn BatteryHealthyTable_ManufactureNameBySMBus(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_ManufactureNameBySMBus>("BatteryHealthyTable_ManufactureNameBySMBus") }?;
        self.narrow(33, |text| unsafe { function(text) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Permanent-failure status of the gauge (register 0x53).
    pub fn BatteryHealthyTable_PFStatus(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_PFStatus>("BatteryHealthyTable_PFStatus") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Voltage of the pack.
    pub fn BatteryHealthyTable_PackageVoltage(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_PackageVoltage>("BatteryHealthyTable_PackageVoltage") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0xFFFFFFFF, Reason::Unsupported, false), (0x0, Reason::NoAnswer, true)], Doubt::Battery(1, true))
    }

    /// Bit 7 of the EC's project information.
    pub fn BatteryHealthyTable_ReadVendorType(&self) -> Answer<bool> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_ReadVendorType>("BatteryHealthyTable_ReadVendorType") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None).map(|a| a != 0)
    }

    /// Version of the healthy table, 0 to 255; 0: the EC has none.
    pub fn BatteryHealthyTable_ReadVersion(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_ReadVersion>("BatteryHealthyTable_ReadVersion") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Remaining capacity in the gauge's unit: mAh, or 10 mWh as bit 15 of the battery mode says.
    pub fn BatteryHealthyTable_RemainingCapacity(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_RemainingCapacity>("BatteryHealthyTable_RemainingCapacity") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0x0, Reason::Unsupported, true)], Doubt::Battery(1, true))
    }

    /// Relative state of charge, of the full-charge capacity.
    pub fn BatteryHealthyTable_Rsoc(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_Rsoc>("BatteryHealthyTable_Rsoc") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0x0, Reason::Unsupported, true)], Doubt::Battery(1, true))
    }

    /// Safety status of the gauge (register 0x51).
    pub fn BatteryHealthyTable_SafetyStatus(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_SafetyStatus>("BatteryHealthyTable_SafetyStatus") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Serial number.
    pub fn BatteryHealthyTable_SerialNumber(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_SerialNumber>("BatteryHealthyTable_SerialNumber") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0x0, Reason::Unsupported, true)], Doubt::Battery(1, true))
    }

    /// Temperature of the pack.
    pub fn BatteryHealthyTable_Temperature(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_Temperature>("BatteryHealthyTable_Temperature") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0xFFFFFFFF, Reason::Unsupported, false), (0x0, Reason::NoAnswer, true)], Doubt::Battery(1, true))
    }

    /// Charge-error status byte of the EC; 0: no charge time-out.
    pub fn BatteryHealthyTable_TimeoutStatus(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::BatteryHealthyTable_TimeoutStatus>("BatteryHealthyTable_TimeoutStatus") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::NoAnswer, true)], Doubt::Battery(1, false))
    }

    /// Chip id.
    pub fn EC_ReadEcChipId(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::EC_ReadEcChipId>("EC_ReadEcChipId") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// The first four characters of the chip's name, the first in the top byte.
    pub fn EC_ReadEcChipName(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::EC_ReadEcChipName>("EC_ReadEcChipName") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Firmware revision: its two characters, the first in bits 8-15.
    pub fn EC_ReadEcFwRev(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::EC_ReadEcFwRev>("EC_ReadEcFwRev") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0xFFFF, Reason::Unsupported, false), (0x7FFF, Reason::Unsupported, false)], Doubt::None)
    }

    /// Project information byte; bit 7: the EC reports a firmware revision. Never kept.
    pub fn EC_ReadProjectInformation(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::EC_ReadProjectInformation>("EC_ReadProjectInformation") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Version word of the kernel driver.
    pub fn GetDriverVersion(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::GetDriverVersion>("GetDriverVersion") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Driver version of the device "Vexa System Control Interface V2".
    pub fn GetInfVersion(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::GetInfVersion>("GetInfVersion") }?;
        self.wide(64, |text| { unsafe { function(text) }; 1 }, &[], &[("", Reason::NotPresent)])
    }

    /// Version of this interface: always 0x00010001, major version in the high half.
    pub fn GetIoDllVersion(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::GetIoDllVersion>("GetIoDllVersion") }?;
        self.judge(unsafe { function() }, &[], Doubt::None)
    }

    /// The kernel driver's own count of its users, over all processes.
    pub fn GetRefCount(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::GetRefCount>("GetRefCount") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Version of the companion app from the store.
    pub fn GetUWPVersion(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::GetUWPVersion>("GetUWPVersion") }?;
        self.wide(64, |text| { unsafe { function(text) }; 1 }, &[], &[("", Reason::NotPresent)])
    }

    /// Number of fans.
    pub fn HealthyTable_FanCounts(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::HealthyTable_FanCounts>("HealthyTable_FanCounts") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Speed of the selected fan.
    pub fn HealthyTable_FanRPM(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::HealthyTable_FanRPM>("HealthyTable_FanRPM") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0xFFFFFFFF, Reason::Unsupported, false)], Doubt::None)
    }

    /// Test mode of the fans: 0 off; on x64 the EC's byte as it is.
    pub fn HealthyTable_GetFanTestMode(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::HealthyTable_GetFanTestMode>("HealthyTable_GetFanTestMode") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Temperature of board sensor 0; 0 also when there is no board sensor.
    pub fn HealthyTable_Read_BoardTS0L_Temperature(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::HealthyTable_Read_BoardTS0L_Temperature>("HealthyTable_Read_BoardTS0L_Temperature") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Temperature of the CPU.
    pub fn HealthyTable_Read_Cpu_Temperature(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::HealthyTable_Read_Cpu_Temperature>("HealthyTable_Read_Cpu_Temperature") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Selects the fan that HealthyTable_FanRPM and HealthyTable_SetFanPwmDuty speak of.
    pub fn HealthyTable_SetFanIndex(&self, index: u32) -> Answer<()> {
        let function = unsafe { self.get::<raw::HealthyTable_SetFanIndex>("HealthyTable_SetFanIndex") }?;
        self.done(unsafe { function(index) }, &[(0x0, Reason::Refused, false)])
    }

    /// Sets the duty of the selected fan's PWM signal, in the EC's own steps; it lasts while test mode is on.
    pub fn HealthyTable_SetFanPwmDuty(&self, duty: u8) -> Answer<()> {
        let function = unsafe { self.get::<raw::HealthyTable_SetFanPwmDuty>("HealthyTable_SetFanPwmDuty") }?;
        self.done(unsafe { function(duty) }, &[(0x0, Reason::Refused, false)])
    }

    /// Turns the fans' test mode on or off. Turning on takes the fan mutex and keeps it until the same thread turns it off.
    pub fn HealthyTable_SetFanTestMode(&self, mode: u32) -> Answer<()> {
        let function = unsafe { self.get::<raw::HealthyTable_SetFanTestMode>("HealthyTable_SetFanTestMode") }?;
        self.done(unsafe { function(mode) }, &[(0x0, Reason::Refused, false)])
    }

    /// 1: the machine runs on a USB-PD source.
    pub fn Power_PD_Charging(&self) -> Answer<bool> {
        let function = unsafe { self.get::<raw::Power_PD_Charging>("Power_PD_Charging") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::Unsupported, true)], Doubt::Version(8)).map(|a| a != 0)
    }

    /// Power line as the system knows it: 0 on battery, 1 on external power.
    pub fn Power_Read_ACDCMode(&self) -> Answer<bool> {
        let function = unsafe { self.get::<raw::Power_Read_ACDCMode>("Power_Read_ACDCMode") }?;
        self.judge(unsafe { function() }, &[(0xFF, Reason::NoAnswer, false)], Doubt::None).map(|a| a != 0)
    }

    /// Has the EC watch for drops of the power, or no longer.
    pub fn Power_Set_Monitor_PowerDropped(&self, enable: u32) -> Answer<()> {
        let function = unsafe { self.get::<raw::Power_Set_Monitor_PowerDropped>("Power_Set_Monitor_PowerDropped") }?;
        self.done(unsafe { function(enable) }, &[(0x0, Reason::Refused, false)])
    }

    /// Temperature of the CPU, as HealthyTable_Read_Cpu_Temperature.
    pub fn Quillo_Read_Cpu_Temperature(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Quillo_Read_Cpu_Temperature>("Quillo_Read_Cpu_Temperature") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Speed of one fan, under the fan mutex.
    pub fn Quillo_Read_Fan(&self, index: i32) -> Answer<u32> {
        let function = unsafe { self.get::<raw::Quillo_Read_Fan>("Quillo_Read_Fan") }?;
        self.judge(unsafe { function(index) }, &[(0x7FFFFFFF, Reason::NoAnswer, false), (0xFFFFFFFF, Reason::Unsupported, false), (0x0, Reason::NotPresent, true)], Doubt::None)
    }

    /// Vendor prefix of the connected access point's address, "00:11:22".
    pub fn RF_AP_MAC(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::RF_AP_MAC>("RF_AP_MAC") }?;
        self.narrow(13, |text| { unsafe { function(text) }; 1 }, &[], &[("init_string", Reason::NotCollected), ("error_string", Reason::NoAnswer)])
    }

    /// Connected devices on the last radio that has any.
    pub fn RF_BTConnectedNum(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::RF_BTConnectedNum>("RF_BTConnectedNum") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFC18, Reason::NotPresent, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// The kinds of the connected Bluetooth devices, one word for each, each ended by ";".
    pub fn RF_BTConnectedType(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::RF_BTConnectedType>("RF_BTConnectedType") }?;
        self.returned(unsafe { function() }, &[("init_string", Reason::NotPresent), ("error_string", Reason::NoAnswer), ("", Reason::NoAnswer)])
    }

    /// 1: Bluetooth devices are connected.
    pub fn RF_BTIsUsed(&self) -> Answer<bool> {
        let function = unsafe { self.get::<raw::RF_BTIsUsed>("RF_BTIsUsed") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFC18, Reason::NotPresent, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None).map(|a| a != 0)
    }

    /// The kind of the network link: "ETHERNET", "WWANPP2", "WIFI".
    pub fn RF_Net_Connected_Type(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::RF_Net_Connected_Type>("RF_Net_Connected_Type") }?;
        self.returned(unsafe { function() }, &[("Unknow", Reason::NotPresent), ("", Reason::NoAnswer)])
    }

    /// Kind of the connection, such as "802.11ax".
    pub fn RF_PhyMode(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::RF_PhyMode>("RF_PhyMode") }?;
        self.returned(unsafe { function() }, &[("init_string", Reason::NotCollected), ("error_string", Reason::NoAnswer)])
    }

    /// 1: an HDMI monitor was connected while collecting.
    pub fn RF_USBHDMIIsUsed(&self) -> Answer<bool> {
        let function = unsafe { self.get::<raw::RF_USBHDMIIsUsed>("RF_USBHDMIIsUsed") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::NoAnswer, true)], Doubt::None).map(|a| a != 0)
    }

    /// Whether a USB device is plugged into a type-C port: 2 type C, 1 other.
    pub fn RF_USBISTYPEC(&self, device_instance_id: &str) -> Answer<u32> {
        let function = unsafe { self.get::<raw::RF_USBISTYPEC>("RF_USBISTYPEC") }?;
        self.judge(unsafe { function(wide(device_instance_id.as_ref()).as_ptr()) }, &[(0x0, Reason::NotPresent, false)], Doubt::None)
    }

    /// 1: a disk was busy while collecting.
    pub fn RF_USBIsTranster(&self) -> Answer<bool> {
        let function = unsafe { self.get::<raw::RF_USBIsTranster>("RF_USBIsTranster") }?;
        self.judge(unsafe { function() }, &[(0x0, Reason::NoAnswer, true)], Doubt::None).map(|a| a != 0)
    }

    /// USB mass-storage devices by USB version, as JSON with text counts.
    pub fn RF_USBNum(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::RF_USBNum>("RF_USBNum") }?;
        self.returned(unsafe { function() }, &[("init_string", Reason::NoAnswer), ("", Reason::NoAnswer)])
    }

    /// Port number of each of these devices, each followed by ","; empty when there is none.
    pub fn RF_USBPort(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::RF_USBPort>("RF_USBPort") }?;
        self.returned(unsafe { function() }, &[("init_string", Reason::NoAnswer)])
    }

    /// User-accessible ports with a device on them whose connector is not type C.
    pub fn RF_USB_A_Num(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::RF_USB_A_Num>("RF_USB_A_Num") }?;
        self.judge(unsafe { function() }, &[], Doubt::None)
    }

    /// User-accessible type-C ports with a device on them.
    pub fn RF_USB_C_Num(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::RF_USB_C_Num>("RF_USB_C_Num") }?;
        self.judge(unsafe { function() }, &[], Doubt::None)
    }

    /// Description of the Wi-Fi adapter.
    pub fn RF_WiFiCardName(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::RF_WiFiCardName>("RF_WiFiCardName") }?;
        self.wide(256, |text| unsafe { function(text) }, &[(0x16, Reason::Refused, false), (0x7FFFFFFF, Reason::NoAnswer, false)], &[("init_string", Reason::NotCollected), ("error_string", Reason::NoAnswer)])
    }

    /// Channel number of the connected interface.
    pub fn RF_WiFiChannel(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::RF_WiFiChannel>("RF_WiFiChannel") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFC18, Reason::NotCollected, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// 1: a Wi-Fi interface is connected, 0: none is.
    pub fn RF_WiFiIsConnected(&self) -> Answer<bool> {
        let function = unsafe { self.get::<raw::RF_WiFiIsConnected>("RF_WiFiIsConnected") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFC18, Reason::NotCollected, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None).map(|a| a != 0)
    }

    /// Greatest rate that the connected access point can receive; 0: its beacon does not tell.
    pub fn RF_WiFiMaxRate(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::RF_WiFiMaxRate>("RF_WiFiMaxRate") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFC18, Reason::NotCollected, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Signal strength of the connected access point.
    pub fn RF_WiFiRssi(&self) -> Answer<i32> {
        let function = unsafe { self.get::<raw::RF_WiFiRssi>("RF_WiFiRssi") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFC18, Reason::NotCollected, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None).map(|a| a as i32)
    }

    /// Access points on 2.4 GHz by channel, as JSON with text counts.
    pub fn RF_WiFi_2_4G_AP_Ch_Num(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::RF_WiFi_2_4G_AP_Ch_Num>("RF_WiFi_2_4G_AP_Ch_Num") }?;
        self.returned(unsafe { function() }, &[("init_string", Reason::NotCollected), ("error_string", Reason::NoAnswer)])
    }

    /// Access points on 2.4 GHz.
    pub fn RF_WiFi_2_4G_AP_Num(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::RF_WiFi_2_4G_AP_Num>("RF_WiFi_2_4G_AP_Num") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFC18, Reason::NotCollected, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Access points on 2.4 GHz by signal strength, as JSON with text counts.
    pub fn RF_WiFi_2_4G_AP_RSSI_Num(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::RF_WiFi_2_4G_AP_RSSI_Num>("RF_WiFi_2_4G_AP_RSSI_Num") }?;
        self.returned(unsafe { function() }, &[("init_string", Reason::NotCollected), ("error_string", Reason::NoAnswer)])
    }

    /// Access points on 5 GHz by band, as JSON with text counts.
    pub fn RF_WiFi_5G_AP_Band_Num(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::RF_WiFi_5G_AP_Band_Num>("RF_WiFi_5G_AP_Band_Num") }?;
        self.returned(unsafe { function() }, &[("init_string", Reason::NotCollected), ("error_string", Reason::NoAnswer)])
    }

    /// Access points on 5 GHz.
    pub fn RF_WiFi_5G_AP_Num(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::RF_WiFi_5G_AP_Num>("RF_WiFi_5G_AP_Num") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFC18, Reason::NotCollected, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Access points on 5 GHz by signal strength, as JSON with text counts.
    pub fn RF_WiFi_5G_AP_RSSI_Num(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::RF_WiFi_5G_AP_RSSI_Num>("RF_WiFi_5G_AP_RSSI_Num") }?;
        self.returned(unsafe { function() }, &[("init_string", Reason::NotCollected), ("error_string", Reason::NoAnswer)])
    }

    /// Access points on 6 GHz by band, as JSON with text counts.
    pub fn RF_WiFi_6G_AP_NUII_Num(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::RF_WiFi_6G_AP_NUII_Num>("RF_WiFi_6G_AP_NUII_Num") }?;
        self.returned(unsafe { function() }, &[("init_string", Reason::NotCollected), ("error_string", Reason::NoAnswer)])
    }

    /// Access points on 6 GHz.
    pub fn RF_WiFi_6G_AP_Num(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::RF_WiFi_6G_AP_Num>("RF_WiFi_6G_AP_Num") }?;
        self.judge(unsafe { function() }, &[(0xFFFFFC18, Reason::NotCollected, false), (0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Access points on 6 GHz by signal strength, as JSON with text counts.
    pub fn RF_WiFi_6G_AP_RSSI_Num(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::RF_WiFi_6G_AP_RSSI_Num>("RF_WiFi_6G_AP_RSSI_Num") }?;
        self.returned(unsafe { function() }, &[("init_string", Reason::NotCollected), ("error_string", Reason::NoAnswer)])
    }

    /// Signal strength at the main and at the auxiliary antenna in dBm, "-52:-58".
    pub fn RF_WiFi_Main_Aux_Rssi(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::RF_WiFi_Main_Aux_Rssi>("RF_WiFi_Main_Aux_Rssi") }?;
        self.returned(unsafe { function() }, &[("0:0", Reason::NotCollected)])
    }

    /// Stops the driver service.
    pub fn StopWinIoDriver(&self, holds_mutex: u32) -> Answer<()> {
        let function = unsafe { self.get::<raw::StopWinIoDriver>("StopWinIoDriver") }?;
        self.done(unsafe { function(holds_mutex) }, &[(0x0, Reason::Refused, false)])
    }

    /// 1: Windows runs in S mode; 0 also when the system can't tell.
    pub fn System_Check_S_Mode(&self) -> Answer<bool> {
        let function = unsafe { self.get::<raw::System_Check_S_Mode>("System_Check_S_Mode") }?;
        self.judge(unsafe { function() }, &[], Doubt::None).map(|a| a != 0)
    }

    /// The local time as "2026-02-03 09:05:00".
    pub fn System_Read_LocalTime(&self) -> Answer<String> {
        let function = unsafe { self.get::<raw::System_Read_LocalTime>("System_Read_LocalTime") }?;
        self.narrow(20, |text| unsafe { function(text) }, &[(0x0, Reason::Refused, false)], &[])
    }

    /// The EC's tablet-mode byte; 0: a notebook, also on machines whose EC reports no firmware revision.
    pub fn System_Read_TabletMode(&self) -> Answer<u32> {
        let function = unsafe { self.get::<raw::System_Read_TabletMode>("System_Read_TabletMode") }?;
        self.judge(unsafe { function() }, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Master volume of the default speaker, cut to a whole number; muting does not show.
    pub fn System_Read_VolumeLevel(&self, initialize_com: u8) -> Answer<i32> {
        let function = unsafe { self.get::<raw::System_Read_VolumeLevel>("System_Read_VolumeLevel") }?;
        self.judge(unsafe { function(initialize_com) } as u32, &[(0xFFFFFFFF, Reason::NotPresent, false)], Doubt::None).map(|a| a as i32)
    }

    /// 1 when the stored application folder exists.
    pub fn WMICheckAppExist(&self, com_flag: u32) -> Answer<bool> {
        let function = unsafe { self.get::<raw::WMICheckAppExist>("WMICheckAppExist") }?;
        self.judge(unsafe { function(com_flag) }, &[], Doubt::None).map(|a| a != 0)
    }

    /// 1 when the firmware can limit the charge, 0 when not or when it does not answer.
    pub fn WMICheckBatteryHealthSupport(&self, com_flag: u32) -> Answer<bool> {
        let function = unsafe { self.get::<raw::WMICheckBatteryHealthSupport>("WMICheckBatteryHealthSupport") }?;
        self.judge(unsafe { function(com_flag) }, &[], Doubt::None).map(|a| a != 0)
    }

    /// The firmware's quiet fan: 1 on, 0 off.
    pub fn WMICheckQuietFanSupport(&self, com_flag: u32) -> Answer<bool> {
        let function = unsafe { self.get::<raw::WMICheckQuietFanSupport>("WMICheckQuietFanSupport") }?;
        self.judge(unsafe { function(com_flag) }, &[(0xFFFFFFFF, Reason::Unsupported, false)], Doubt::None).map(|a| a != 0)
    }

    /// The fifth of the firmware's OEM strings, the order number.
    pub fn WMIGet90Number(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGet90Number>("WMIGet90Number") }?;
        self.long(256, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// The application folder of the signed-in user.
    pub fn WMIGetAppPath(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetAppPath>("WMIGetAppPath") }?;
        self.wide(260, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NotPresent, false)], &[])
    }

    /// The remembered charge limit; 100 for everything unknown.
    pub fn WMIGetBatteryHealth(&self, com_flag: u32) -> Answer<u32> {
        let function = unsafe { self.get::<raw::WMIGetBatteryHealth>("WMIGetBatteryHealth") }?;
        self.judge(unsafe { function(com_flag) }, &[], Doubt::None)
    }

    /// Manufacturer of the baseboard.
    pub fn WMIGetBiosManufacture(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetBiosManufacture>("WMIGetBiosManufacture") }?;
        self.long(256, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Date of the BIOS in CIM form.
    pub fn WMIGetBiosReleaseDate(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetBiosReleaseDate>("WMIGetBiosReleaseDate") }?;
        self.long(64, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Name of the BIOS, which carries its version.
    pub fn WMIGetBiosVersion(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetBiosVersion>("WMIGetBiosVersion") }?;
        self.long(256, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// UUID of the machine.
    pub fn WMIGetBoardUUID(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetBoardUUID>("WMIGetBoardUUID") }?;
        self.long(64, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Architecture by Win32_Processor: 0 x86, 5 ARM, 9 x64, 12 ARM64.
    pub fn WMIGetCPUArchitecture(&self, com_flag: u32) -> Answer<u32> {
        let function = unsafe { self.get::<raw::WMIGetCPUArchitecture>("WMIGetCPUArchitecture") }?;
        self.judge(unsafe { function(com_flag) }, &[(0xFFFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Name of each processor.
    pub fn WMIGetCPUInfo(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetCPUInfo>("WMIGetCPUInfo") }?;
        self.long(512, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Load of the last listed processor; WMI measures it while it answers, for about a second.
    pub fn WMIGetCPUUsg(&self, com_flag: u32) -> Answer<u32> {
        let function = unsafe { self.get::<raw::WMIGetCPUUsg>("WMIGetCPUUsg") }?;
        self.judge(unsafe { function(com_flag) }, &[(0xFFFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Caption of the built-in card reader, when it is of the known kind.
    pub fn WMIGetCardReaderCaption(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetCardReaderCaption>("WMIGetCardReaderCaption") }?;
        self.long(1024, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Product family.
    pub fn WMIGetComputerFamilyName(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetComputerFamilyName>("WMIGetComputerFamilyName") }?;
        self.long(256, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Number of external monitors; 0 also when the query failed.
    pub fn WMIGetExternMonitorNum(&self, com_flag: u32) -> Answer<u32> {
        let function = unsafe { self.get::<raw::WMIGetExternMonitorNum>("WMIGetExternMonitorNum") }?;
        self.judge(unsafe { function(com_flag) }, &[(0x0, Reason::NoAnswer, true)], Doubt::None)
    }

    /// "instance name,vot=technology" of each external monitor.
    pub fn WMIGetExternMonitorPropList(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetExternMonitorPropList>("WMIGetExternMonitorPropList") }?;
        self.long(4096, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Caption of each video controller.
    pub fn WMIGetGPUInfo(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetGPUInfo>("WMIGetGPUInfo") }?;
        self.long(1024, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Load of the graphics engines of all processes, added up, 0 to 100; 0 also when there is no engine.
    pub fn WMIGetGPUUsg(&self, com_flag: u32) -> Answer<u32> {
        let function = unsafe { self.get::<raw::WMIGetGPUUsg>("WMIGetGPUUsg") }?;
        self.judge(unsafe { function(com_flag) }, &[(0xFFFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Caption of each fixed disk of any kind.
    pub fn WMIGetHDDCaption(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetHDDCaption>("WMIGetHDDCaption") }?;
        self.long(2048, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// "model,size in bytes,media type" of each hard disk.
    pub fn WMIGetHDDInfo(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetHDDInfo>("WMIGetHDDInfo") }?;
        self.long(4096, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Device id of each hard disk.
    pub fn WMIGetHDDList(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetHDDList>("WMIGetHDDList") }?;
        self.long(1024, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Model of each hard disk.
    pub fn WMIGetHDDModel(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetHDDModel>("WMIGetHDDModel") }?;
        self.long(2048, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Size in bytes of each fixed disk of any kind.
    pub fn WMIGetHDDSize(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetHDDSize>("WMIGetHDDSize") }?;
        self.long(1024, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Name of each monitor that tells one.
    pub fn WMIGetLCDModel(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetLCDModel>("WMIGetLCDModel") }?;
        self.long(512, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Address of each physical adapter.
    pub fn WMIGetMacAddress(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetMacAddress>("WMIGetMacAddress") }?;
        self.long(1024, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Configured speed of the last listed memory module in MT/s as decimal text; "-1" when it can't be told.
    pub fn WMIGetMemFrequency(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetMemFrequency>("WMIGetMemFrequency") }?;
        self.long(16, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[("-1", Reason::NoAnswer)])
    }

    /// "manufacturer,part number,capacity in bytes,speed in MT/s,slot" of each memory module.
    pub fn WMIGetMemInfo(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetMemInfo>("WMIGetMemInfo") }?;
        self.long(4096, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Manufacturer of each memory module.
    pub fn WMIGetMemManufacture(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetMemManufacture>("WMIGetMemManufacture") }?;
        self.long(1024, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Part number of each memory module.
    pub fn WMIGetMemModel(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetMemModel>("WMIGetMemModel") }?;
        self.long(1024, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Capacity of each memory module in bytes.
    pub fn WMIGetMemSize(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetMemSize>("WMIGetMemSize") }?;
        self.long(1024, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Product name of the baseboard.
    pub fn WMIGetModelName(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetModelName>("WMIGetModelName") }?;
        self.long(256, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Brightness of the built-in display.
    pub fn WMIGetMonitorBrightness(&self, com_flag: u32) -> Answer<u32> {
        let function = unsafe { self.get::<raw::WMIGetMonitorBrightness>("WMIGetMonitorBrightness") }?;
        self.judge(unsafe { function(com_flag) }, &[(0xFFFFFFFF, Reason::NoAnswer, false)], Doubt::None)
    }

    /// Caption and architecture of the operating system.
    pub fn WMIGetOSInfo(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetOSInfo>("WMIGetOSInfo") }?;
        self.long(256, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// "model,size in bytes,media type,device id" of each disk; media type 3: hard disk, 4: solid-state disk.
    pub fn WMIGetPhysicalDiskInfo(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetPhysicalDiskInfo>("WMIGetPhysicalDiskInfo") }?;
        self.long(4096, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Product name of the system.
    pub fn WMIGetProductName(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetProductName>("WMIGetProductName") }?;
        self.long(256, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// The remembered quiet-fan mode: 1 to 3; 0 for everything unknown.
    pub fn WMIGetQuietFan(&self, com_flag: u32) -> Answer<u32> {
        let function = unsafe { self.get::<raw::WMIGetQuietFan>("WMIGetQuietFan") }?;
        self.judge(unsafe { function(com_flag) }, &[], Doubt::None)
    }

    /// Caption of each removable disk.
    pub fn WMIGetSDCardCaption(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetSDCardCaption>("WMIGetSDCardCaption") }?;
        self.long(1024, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// "size in bytes,caption" of each removable disk.
    pub fn WMIGetSDCardSize(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetSDCardSize>("WMIGetSDCardSize") }?;
        self.long(2048, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Serial number of the system.
    pub fn WMIGetSN(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetSN>("WMIGetSN") }?;
        self.long(256, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Device id of each solid-state disk.
    pub fn WMIGetSSDList(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetSSDList>("WMIGetSSDList") }?;
        self.long(1024, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Model of each solid-state disk.
    pub fn WMIGetSSDModel(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetSSDModel>("WMIGetSSDModel") }?;
        self.long(2048, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Form of the machine by its first chassis type: "Notebook", "Desktop" or "unknown".
    pub fn WMIGetSystemChassisTypes(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetSystemChassisTypes>("WMIGetSystemChassisTypes") }?;
        self.long(16, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Serial number of the baseboard.
    pub fn WMIGetType2SN(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetType2SN>("WMIGetType2SN") }?;
        self.long(256, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// "received,sent" of the Wi-Fi adapter in bytes per second.
    pub fn WMIGetWiFiBytesPersec(&self, com_flag: u32) -> Answer<String> {
        let function = unsafe { self.get::<raw::WMIGetWiFiBytesPersec>("WMIGetWiFiBytesPersec") }?;
        self.long(256, |text| unsafe { function(text, com_flag) }, &[(0x0, Reason::NoAnswer, false)], &[])
    }

    /// Remembers the application folder of the signed-in user.
    pub fn WMISetAppPath(&self, path: &str, com_flag: u32) -> Answer<()> {
        let function = unsafe { self.get::<raw::WMISetAppPath>("WMISetAppPath") }?;
        self.done(unsafe { function(wide(path.as_ref()).as_ptr(), com_flag) }, &[(0x0, Reason::Refused, false)])
    }

    /// Tells the firmware to charge to this level.
    pub fn WMISetBatteryHealth(&self, level: i32, com_flag: u32) -> Answer<()> {
        let function = unsafe { self.get::<raw::WMISetBatteryHealth>("WMISetBatteryHealth") }?;
        self.done(unsafe { function(level, com_flag) }, &[(0x0, Reason::Refused, false)])
    }

    /// Writes the level into the battery-health file of the application folder.
    pub fn WMISetBatteryHealthToUser(&self, level: i32, com_flag: u32) -> Answer<()> {
        let function = unsafe { self.get::<raw::WMISetBatteryHealthToUser>("WMISetBatteryHealthToUser") }?;
        self.done(unsafe { function(level, com_flag) }, &[(0x0, Reason::Refused, false)])
    }

    /// Switches the firmware's quiet fan.
    pub fn WMISetQuietFan(&self, on: u8, com_flag: u32) -> Answer<()> {
        let function = unsafe { self.get::<raw::WMISetQuietFan>("WMISetQuietFan") }?;
        self.done(unsafe { function(on, com_flag) }, &[(0x0, Reason::Refused, false)])
    }

    /// Reads one byte of an EC table.
    pub fn WOA_EC_read(&self, offset: u8, table: u8) -> Answer<i32> {
        let function = unsafe { self.get::<raw::WOA_EC_read>("WOA_EC_read") }?;
        self.judge(unsafe { function(offset, table) } as u32, &[(0x7FFFFFFF, Reason::NoAnswer, false)], Doubt::None).map(|a| a as i32)
    }

    /// Writes one byte of an EC table.
    pub fn WOA_EC_write(&self, offset: u8, table: u8, value: u8) -> Answer<()> {
        let function = unsafe { self.get::<raw::WOA_EC_write>("WOA_EC_write") }?;
        self.done(unsafe { function(offset, table, value) }, &[(0x0, Reason::Refused, false)])
    }

    /// x + 1, wrapping at 32 bits: tells that the library is loaded and called rightly.
    pub fn wmiadd(&self, x: u32) -> Answer<u32> {
        let function = unsafe { self.get::<raw::wmiadd>("wmiadd") }?;
        self.judge(unsafe { function(x) }, &[], Doubt::None)
    }
}
