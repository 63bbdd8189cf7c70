// Writes the export of a made-up session to standard output. usage: ExportedDay SECONDS INTERVAL

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iostream>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "Support/GeneratedDay.h"

int main(int argc, char** argv) try {
  using namespace quellin;
  if (argc != 3) return 64;
  const std::int64_t seconds = std::strtoll(argv[1], nullptr, 10);
  const std::int64_t interval = std::strtoll(argv[2], nullptr, 10);
  testing_support::GeneratedDay day;
  PowerSessionStore store("0.9.4", std::nullopt, true);
  std::shared_ptr<PowerSession> session;
  for (std::int64_t second = 0; second < seconds; ++second) {
    const auto [state, activities, telemetry] = day.next();
    if (second % interval != 0) continue;
    if (!session) {
      session =
          store.start("Made-up day", PowerSessionSource::cli, static_cast<double>(interval), state.timestamp);
    }
    store.appendSample(session, state, activities, telemetry);
  }
  if (!session) return 64;
  store.stop(session, store.samples(session).back()->timestamp());
  store.exportJSONL(session, instantAt(1741132800), [](std::string_view piece) { std::cout << piece; });
  std::cout.flush();
  return std::cout ? 0 : 74;
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return 70;
}
