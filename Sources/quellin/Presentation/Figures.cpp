#include <string_view>
#include <utility>

#include "QuellinCore/Sessions/PowerSource.h"
#include "quellin/Presentation/Figure.h"

namespace quellin::cli {
namespace {

std::optional<double> number(const std::optional<std::int64_t>& value) {
  return value ? std::optional<double>{static_cast<double>(*value)} : std::nullopt;
}

// What a host does not publish comes as 0. Only where 0 may just as well be the figure is it shown as one: a
// current, and a fan that stands still.
std::optional<double> unlessZero(double value) {
  return value > 0 ? std::optional<double>{value} : std::nullopt;
}

std::optional<double> unlessZero(std::int64_t value) { return unlessZero(static_cast<double>(value)); }

std::string yesOrNo(bool value) { return value ? "yes" : "no"; }

// Gathers the figures of one group that come from one source.
class Group {
 public:
  Group(std::vector<Figure>& list, std::string name, const SourceDiagnosis& diagnosis)
      : list_(list), name_(std::move(name)), diagnosis_(diagnosis) {}

  void add(const std::string& name, std::optional<double> value, const std::string& unit,
           const std::string& kind = "measured") {
    list_.push_back({.group = name_,
                     .name = name,
                     .value = value,
                     .text = std::nullopt,
                     .unit = unit,
                     .source = diagnosis_.source,
                     .kind = kind,
                     .confidence = std::nullopt,
                     .note = std::nullopt});
  }

  void addText(const std::string& name, std::string text) {
    list_.push_back({.group = name_,
                     .name = name,
                     .value = std::nullopt,
                     .text = std::move(text),
                     .unit = "",
                     .source = diagnosis_.source,
                     .kind = "state",
                     .confidence = std::nullopt,
                     .note = std::nullopt});
  }

  void addUnknown(const std::string& unit, const std::string& kind = "measured") {
    add("All figures", std::nullopt, unit, kind);
    list_.back().note = diagnosis_.reason;
  }

 private:
  std::vector<Figure>& list_;
  std::string name_;
  const SourceDiagnosis& diagnosis_;
};

void addPower(std::vector<Figure>& list, const SystemPowerState& state, const std::string& battery,
              const std::string& energy) {
  if (const auto reading = state.primaryPowerReading()) {
    list.push_back({.group = "Power",
                    .name = reading->label,
                    .value = reading->watts,
                    .text = std::nullopt,
                    .unit = "W",
                    .source = reading->confidence == PowerReadingConfidence::ioReport ? energy : battery,
                    .kind = std::string{rawValue(reading->kind)},
                    .confidence = std::string{rawValue(reading->confidence)},
                    .note = reading->summary});
  } else {
    list.push_back({.group = "Power",
                    .name = "Primary reading",
                    .value = std::nullopt,
                    .text = std::nullopt,
                    .unit = "W",
                    .source = "none",
                    .kind = std::string{unavailableReading},
                    .confidence = std::nullopt,
                    .note = noPowerReading});
  }
  if (const auto rest = state.displayAndOtherPower()) {
    list.push_back({.group = "Power",
                    .name = "Display and other",
                    .value = rest,
                    .text = std::nullopt,
                    .unit = "W",
                    .source = battery + ", " + energy,
                    .kind = "derived",
                    .confidence = std::nullopt,
                    .note = "Battery draw that the silicon model does not explain"});
  }
}

void addBattery(Group group, const std::optional<BatteryInfo>& battery) {
  if (!battery) return group.addUnknown("");
  group.add("Charge", static_cast<double>(battery->chargePercent), "%");
  group.add("Present charge", unlessZero(battery->currentCapacity), "mAh");
  group.add("Full charge", unlessZero(battery->maxCapacity), "mAh");
  group.add("Design charge", unlessZero(battery->designCapacity), "mAh", "rated");
  group.add("Health", unlessZero(battery->healthPercent), "%", "derived");
  const auto voltage = unlessZero(battery->voltage);
  group.add("Cycles", unlessZero(battery->cycleCount), "");
  group.add("Voltage", voltage, "V");
  group.add("Current", battery->amperage, "A");
  group.add("Terminal power", voltage ? std::optional{battery->wattage} : std::nullopt, "W", "derived");
  group.add("Temperature", unlessZero(battery->temperature), "°C");
  group.add("Adapter", number(battery->adapterWatts), "W", "rated");
  group.add("Time to empty", number(battery->timeToEmpty()), "min", "estimated");
  group.add("Time to full", number(battery->timeToFullCharge()), "min", "estimated");
  group.addText("Charging", yesOrNo(battery->isCharging));
  group.addText("Fully charged", yesOrNo(battery->isFullyCharged));
  group.addText("External power", yesOrNo(battery->acConnected));
  group.addText("Condition", battery->health);
  if (battery->serialNumber) group.addText("Serial number", "redacted");
}

void addSilicon(Group group, const std::optional<PowerMetrics>& power) {
  if (!power) return group.addUnknown("W", "model");
  group.add("CPU", power->cpuPower, "W", "model");
  group.add("GPU", power->gpuPower, "W", "model");
  group.add("Neural engine", power->anePower, "W", "model");
  group.add("Memory", power->ramPower, "W", "model");
  group.add("Sum of the four", power->systemPower, "W", "model");
}

void addThermal(Group group, const ThermalInfo& thermal, bool isKnown) {
  if (!isKnown) return group.addUnknown("", "state");
  group.addText("State", std::string{rawValue(thermal.state)});
  group.add("Pressure", static_cast<double>(thermal.pressure), "of 4", "state");
  group.addText("Low-power mode", yesOrNo(thermal.isLowPowerMode));
}

void addFans(Group group, const std::vector<FanInfo>& fans) {
  if (fans.empty()) return group.addUnknown("rpm");
  for (const FanInfo& fan : fans) {
    group.add(fan.name, static_cast<double>(fan.currentRPM), "rpm");
    group.add(fan.name + " lowest", unlessZero(fan.minRPM), "rpm", "rated");
    group.add(fan.name + " highest", unlessZero(fan.maxRPM), "rpm", "rated");
  }
}

void addTemperatures(Group group, const std::vector<TemperatureSensor>& sensors) {
  if (sensors.empty()) return group.addUnknown("°C");
  for (const TemperatureSensor& sensor : sensors) group.add(sensor.name, sensor.temperature, "°C");
}

}  // namespace

std::vector<Figure> figures(const SystemPowerState& state, const PlatformSources& sources) {
  std::vector<Figure> list;
  const SourceDiagnosis battery = sources.battery->diagnose();
  const SourceDiagnosis energy = sources.energy->diagnose();
  const SourceDiagnosis thermal = sources.thermal->diagnose();
  const SourceDiagnosis smc = sources.smc->diagnose();
  const SourceDiagnosis hid = sources.hid->diagnose();
  addPower(list, state, battery.source, energy.source);
  addBattery(Group{list, "Battery", battery}, state.battery);
  addSilicon(Group{list, "Silicon", energy}, state.power);
  addThermal(Group{list, "Heat", thermal}, state.thermal,
             thermal.availability == SourceAvailability::available);
  addFans(Group{list, "Fans", smc}, state.fans);
  addTemperatures(Group{list, "Temperatures", hid}, state.sensors);
  return list;
}

}  // namespace quellin::cli
