// Records generated samples into a store until it is killed. The identifier of each sample goes to standard
// output, 16 bytes, as soon as the store has acknowledged it. usage: CrashingRecorder STORE SEED

#include <cstdlib>
#include <exception>
#include <unistd.h>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "Support/GeneratedDay.h"

int main(int argc, char** argv) try {
  using namespace quellin;
  if (argc != 3) return 64;
  testing_support::GeneratedDay day(std::strtoull(argv[2], nullptr, 10));
  PowerSessionStore store("crash", argv[1]);
  const auto session = store.start("crash", PowerSessionSource::cli, 1, instantAt(1741046400));
  while (true) {
    const auto moment = day.next();
    const auto sample = store.appendSample(session, moment.state, moment.activities, moment.telemetry);
    const UUID::Bytes& id = sample->id().bytes();
    if (::write(STDOUT_FILENO, id.data(), id.size()) != static_cast<ssize_t>(id.size())) return 1;
  }
} catch (const std::exception&) {
  return 70;
}
