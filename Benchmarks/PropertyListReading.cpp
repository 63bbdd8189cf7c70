// usage: PropertyListReading write FILE SAMPLES ROWS   writes a stream to read
//        PropertyListReading read FILE ROUNDS          reads it; prints samples, best milliseconds, peak
//        kilobytes
//
// What compare_property_lists.py times beside other readers.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include "PowermetricsStream.h"
#include "QuellinHelper/PropertyLists/PropertyListStream.h"

namespace {

using namespace quellin;

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  std::string content(static_cast<std::size_t>(std::max<std::streamoff>(file.tellg(), 0)), '\0');
  file.seekg(0);
  file.read(content.data(), static_cast<std::streamsize>(content.size()));
  if (!file) throw std::runtime_error("cannot read " + path);
  return content;
}

/// The largest resident size of this process image so far, in kilobytes; 0 where the system does not tell.
long peakKilobytes() {
  std::ifstream status("/proc/self/status");
  const std::string name = "VmHWM:";
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name)) return std::stol(line.substr(name.size()));
  }
  return 0;
}

int read(const std::string& path, int rounds) {
  const std::string stream = contentOf(path);
  std::size_t samples = 0;
  double best = std::numeric_limits<double>::infinity();
  for (int round = 0; round < rounds; ++round) {
    const auto start = std::chrono::steady_clock::now();
    samples = parsePropertyListStream(stream).size();
    const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
    best = std::min(best, taken.count());
  }
  std::printf("%zu %.3f %ld\n", samples, best, peakKilobytes());
  return samples > 0 ? 0 : 1;
}

int write(const std::string& path, int samples, int rows) {
  std::ofstream file(path, std::ios::binary);
  file << benchmarks::PowermetricsStream::make(samples, rows);
  return file.flush() ? 0 : 1;
}

}  // namespace

int main(int argc, char* argv[]) try {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() == 4 && arguments[0] == "write") {
    return write(arguments[1], std::stoi(arguments[2]), std::stoi(arguments[3]));
  }
  if (arguments.size() == 3 && arguments[0] == "read") return read(arguments[1], std::stoi(arguments[2]));
  std::fputs("usage: PropertyListReading write FILE SAMPLES ROWS | read FILE ROUNDS\n", stderr);
  return 2;
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
