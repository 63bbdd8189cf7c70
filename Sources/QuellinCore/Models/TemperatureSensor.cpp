#include "QuellinCore/Models/TemperatureSensor.h"

namespace quellin {

const std::map<std::string, std::string, std::less<>>& TemperatureSensor::knownSensors() {
  static const std::map<std::string, std::string, std::less<>> sensors = {
      {"TC0P", "CPU Proximity"},
      {"TC0D", "CPU Die"},
      {"TC0E", "CPU Die (2)"},
      {"TC0F", "CPU Die (3)"},
      {"TC1C", "CPU Core 1"},
      {"TC2C", "CPU Core 2"},
      {"TC3C", "CPU Core 3"},
      {"TC4C", "CPU Core 4"},
      {"TC5C", "CPU Core 5"},
      {"TC6C", "CPU Core 6"},
      {"TC7C", "CPU Core 7"},
      {"TC8C", "CPU Core 8"},
      {"Tp09", "CPU Efficiency Core 1"},
      {"Tp0T", "CPU Efficiency Core 2"},
      {"TG0P", "GPU Proximity"},
      {"TG0D", "GPU Die"},
      {"TG1D", "GPU Die (2)"},
      {"Tm0P", "Memory Proximity"},
      {"TM0P", "Memory Controller"},
      {"TH0A", "SSD A"},
      {"TH0B", "SSD B"},
      {"TH0x", "SSD"},
      {"TA0P", "Ambient"},
      {"TB0T", "Battery TS_MAX"},
      {"TB1T", "Battery 1"},
      {"TB2T", "Battery 2"},
      {"TW0P", "Wireless Module"},
      {"Ts0P", "Palm Rest 1"},
      {"Ts1P", "Palm Rest 2"},
      {"Tp01", "CPU Performance Core 1"},
      {"Tp05", "CPU Performance Core 2"},
      {"Tp0D", "CPU Performance Core 3"},
      {"Tp0H", "CPU Performance Core 4"},
      {"Tp0L", "CPU Performance Core 5"},
      {"Tp0P", "CPU Performance Core 6"},
      {"Tp0X", "CPU Performance Core 7"},
      {"Tp0b", "CPU Performance Core 8"},
  };
  return sensors;
}

}  // namespace quellin
