// Live state in an application with a Boost.Asio loop: construct, start, observe, print, stop.

#include <cstdio>
#include <memory>

#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>

#include "QuellinCore/Services/MetricsEngine.h"
#include "QuellinCore/Support/AsioExecutor.h"

namespace {

void print(const quellin::SystemPowerState& state) {
  if (const auto reading = state.primaryPowerReading()) {
    std::printf("%.2f W  %s (%s)\n", reading->watts, reading->label.c_str(), reading->summary.c_str());
  } else {
    std::printf("no power figure; %zu temperatures, %zu fans\n", state.sensors.size(), state.fans.size());
  }
}

}  // namespace

int main() {
  boost::asio::io_context loop;
  quellin::MetricsEngine engine{std::make_shared<quellin::AsioExecutor>(loop), quellin::Seconds{1}, 60};
  int seen = 0;
  const auto onState = engine.observeCurrentState([&](const quellin::SystemPowerState& state) {
    print(state);
    if (++seen == 3) engine.stop();
  });
  const auto onRunning = engine.observeIsRunning([&](bool isRunning) {
    if (!isRunning) loop.stop();
  });
  boost::asio::signal_set interrupt{loop, SIGINT};  // waiting for it also keeps the loop going
  interrupt.async_wait([&](auto, auto) { engine.stop(); });
  engine.start();
  loop.run();
}
