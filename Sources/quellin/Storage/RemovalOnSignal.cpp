#include "quellin/Storage/RemovalOnSignal.h"

#include <csignal>
#include <thread>
#include <unistd.h>
#include <utility>

#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>

#include "QuellinCore/Support/Signals.h"

namespace quellin::cli {
namespace {

[[noreturn]] void endOf(int signal) {
  std::signal(signal, SIG_DFL);
  std::raise(signal);
  _exit(128 + signal);  // where the signal is blocked
}

}  // namespace

// The signals are heard on a thread of their own: that of the writer may be held up by a disk.
struct RemovalOnSignal::State {
  boost::asio::io_context context{1};
  boost::asio::signal_set signals{context};
  std::thread listener;
};

RemovalOnSignal::RemovalOnSignal() : state_(std::make_unique<State>()) {
  for (const int signal : endingSignals) {
    if (!isIgnored(signal)) state_->signals.add(signal);
  }
}

RemovalOnSignal::~RemovalOnSignal() {
  state_->context.stop();
  if (state_->listener.joinable()) state_->listener.join();
}

void RemovalOnSignal::watch(std::string path) {
  state_->signals.async_wait([path = std::move(path)](const boost::system::error_code& error, int signal) {
    if (error) return;
    static_cast<void>(::unlink(path.c_str()));
    endOf(signal);
  });
  state_->listener = std::thread{[this] { state_->context.run(); }};
}

}  // namespace quellin::cli
