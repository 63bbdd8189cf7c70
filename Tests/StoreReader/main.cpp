// Reads a store again and again while another process records a known session, until that has ended. Every
// reading adds a byte to the file ROUNDS. Fails when a reading fails, or goes back behind the one before.
// usage: StoreReader STORE ROUNDS

#include <cstdint>
#include <cstdio>
#include <fstream>

#include "Support/KnownStore.h"

int main(int argc, char** argv) {
  using namespace quellin::testing_support;
  if (argc != 3) return 64;
  const KnownSession known;
  std::ofstream rounds(argv[2], std::ios::binary);
  std::int64_t samples = 0;
  while (true) {
    const KnownReading reading = readKnownStore(argv[1], known);
    if (!reading.fault.empty()) {
      std::fprintf(stderr, "%s\n", reading.fault.c_str());
      return 1;
    }
    if (reading.samples < samples) {
      std::fprintf(stderr, "%lld samples after %lld\n", static_cast<long long>(reading.samples),
                   static_cast<long long>(samples));
      return 1;
    }
    samples = reading.samples;
    rounds.put('.').flush();
    if (reading.isOver) return rounds ? 0 : 74;
  }
}
