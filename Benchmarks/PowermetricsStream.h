#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quellin::benchmarks {

/// Writes what the measuring tool writes: samples of many process rows. The same bytes in every run.
class PowermetricsStream {
 public:
  /// `samples` property lists with `rows` process rows each, separated by NUL bytes; a row takes about 2600
  /// bytes.
  [[nodiscard]] static std::string make(int samples, int rows) {
    PowermetricsStream stream;
    for (int sample = 0; sample < samples; ++sample) {
      if (sample > 0) stream.text_.push_back('\0');
      stream.addSample(rows);
    }
    return std::move(stream.text_);
  }

 private:
  void addSample(int rows) {
    text_ +=
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
        "<plist version=\"1.0\">\n<dict>\n<key>is_delta</key><true/>\n";
    add("elapsed_ns", "integer", "1004166208");
    add("timestamp", "date", "2025-03-01T09:30:12Z");
    text_ += "<key>tasks</key>\n<array>\n";
    for (int row = 0; row < rows; ++row) addRow(row);
    text_ += "</array>\n<key>processor</key>\n<dict>\n";
    for (const char* name : {"cpu_power", "gpu_power", "ane_power"}) add(name, "real", fraction());
    text_ += "</dict>\n</dict>\n</plist>\n";
  }

  void addRow(int pid) {
    text_ += "<dict>\n";
    add("pid", "integer", std::to_string(pid));
    add("name", "string", "process number " + std::to_string(pid));
    for (const char* name : {"started_abstime_ns", "interval_ns", "cputime_ns", "gputime_ns"}) {
      add(name, "integer", whole(40));
    }
    for (const char* name :
         {"cputime_ms_per_s", "cputime_sample_ms_per_s", "cputime_userland_ratio", "gputime_ms_per_s"}) {
      add(name, "real", fraction());
    }
    for (const std::string name :
         {"intr_wakeups", "idle_wakeups", "diskio_bytesread", "diskio_byteswritten", "pageins",
          "packets_received", "packets_sent", "bytes_received", "bytes_sent"}) {
      add(name, "integer", whole(14));
      add(name + "_per_s", "real", fraction());
    }
    for (const std::string name : {"default", "maintenance", "background", "utility", "legacy",
                                   "user_initiated", "user_interactive"}) {
      add("qos_" + name + "_ns", "integer", whole(30));
      add("qos_" + name + "_ms_per_s", "real", fraction());
    }
    text_ += "<key>timer_wakeups</key>\n<array>\n";
    for (const char* interval : {"2000000", "5000000"}) {
      text_ += "<dict>\n";
      add("interval_ns", "integer", interval);
      add("wakeups", "real", fraction());
      add("wakeups_per_s", "real", fraction());
      text_ += "</dict>\n";
    }
    text_ += "</array>\n";
    add("energy_impact", "real", fraction());
    add("energy_impact_per_s", "real", fraction());
    text_ += "</dict>\n";
  }

  void add(std::string_view key, std::string_view element, std::string_view text) {
    text_.append("<key>").append(key).append("</key><").append(element).append(">").append(text);
    text_.append("</").append(element).append(">\n");
  }

  std::string whole(int bits) { return std::to_string(next() >> (64 - bits)); }
  std::string fraction() { return std::to_string(next() >> 57) + "." + std::to_string(next() >> 48); }

  // The generator of Knuth's MMIX: good enough for figures, and the same on every machine.
  std::uint64_t next() { return state_ = state_ * 6364136223846793005U + 1442695040888963407U; }

  std::string text_;
  std::uint64_t state_ = 1;
};

}  // namespace quellin::benchmarks
