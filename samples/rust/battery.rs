//! The battery in a few lines of Rust.
//!
//! usage: battery VexaWinIO64.dll
use std::fmt::Display;
use vexawinio::{Answer, Library};

fn show<T: Display>(name: &str, answer: &Answer<T>, unit: &str) {
    match answer {
        Ok(value) => println!("{name}: {value}{unit}"),
        Err(reason) => println!("{name}: none ({reason:?})"),
    }
}

fn main() -> Result<(), Box<dyn std::error::Error>> {
    let path = std::env::args_os().nth(1).ok_or("usage: battery VexaWinIO64.dll")?;
    let library = Library::load(std::path::Path::new(&path))?;
    let _session = library.start().map_err(|reason| format!("the library is not ready: {reason:?}"))?;
    show("manufacturer", &library.BatteryHealthyTable_ManufactureName(), "");
    let charge = library.BatteryHealthyTable_Rsoc();
    show("charge", &charge, " %");
    show("current", &library.BatteryHealthyTable_Current(), " mA");
    show("fully charged", &library.BatteryHealthyTable_FullCharged(), "");
    show("manufacture information", &library.BatteryHealthyTable_BatteryInformation(), "");
    if charge.is_err() {
        std::process::exit(2);
    }
    Ok(())
}
