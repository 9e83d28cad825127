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
@REASONS@
    /// This version of the library has no such export.
    MissingExport,
}

pub type Answer<T> = Result<T, Reason>;

const NO_ANSWER: u32 = 0x7FFF_FFFF;
const NOT_AVAILABLE: u32 = 0xFFFF_FFFF;

/// The exports as they are.
pub mod raw {
    use std::ffi::c_void;

@RECORDS@
@TYPES@
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

@METHODS@
}
