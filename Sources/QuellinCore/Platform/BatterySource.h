#pragma once

#include <memory>

#include "QuellinCore/Models/BatteryTables.h"
#include "QuellinCore/Models/SourceDiagnosis.h"

namespace quellin {

/// Supplies the two property tables of the internal battery.
///
/// What a host provides:
/// - `registry`: the whole table of the battery's registry entry (on macOS the entry "AppleSmartBattery").
///   Absent when there is no such entry, or its properties cannot be had, or they are no dictionary.
/// - `powerSource`: the description of the first element of the power-source list, no other. Absent when the
///   list is missing or empty, or when the description is no dictionary.
///
/// Kinds: a value keeps the kind it was published with, and no kind is turned into another: whole numbers
/// that fit become integers, floating-point numbers stay floating point, other numbers become `NumberObject`,
/// booleans stay booleans, strings are valid UTF-8, dictionaries nest. Values of any other kind (arrays,
/// data, dates) are left out. A key that the host does not know is left out, never filled with 0.
///
/// Units: those of the keys' names on macOS. Charges are mAh, "Voltage" mV, "Amperage" and "InstantAmperage"
/// mA (negative while discharging), "Temperature" hundredths of a degree Celsius, times minutes, "Watts"
/// watts. A host that counts otherwise converts before it fills the table.
///
/// Ownership: the tables are the caller's. Nothing of the host stays open or retained for them after the
/// call. Threading: every operation may be called from any thread, also from several at once. Nothing throws.
class BatterySource {
 public:
  virtual ~BatterySource() = default;

  /// Both tables as they are now.
  [[nodiscard]] virtual BatteryTables read() = 0;

  /// Why `read` gives what it gives on this machine.
  [[nodiscard]] virtual SourceDiagnosis diagnose() = 0;
};

/// The battery source of the host that this library was built for. Never null.
[[nodiscard]] std::shared_ptr<BatterySource> nativeBatterySource();

}  // namespace quellin
