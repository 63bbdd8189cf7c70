#include "quellin/Terminal/InputWatch.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace quellin::cli {
namespace {

Pipe openPipe() {
  auto pipe = Pipe::open();
  if (!pipe) throw std::runtime_error("the keys cannot be read: " + pipe.error().description());
  return std::move(*pipe);
}

}  // namespace

InputWatch::InputWatch(int descriptor, std::shared_ptr<MainExecutor> executor,
                       std::function<void(InputState)> changed)
    : descriptor_(descriptor),
      executor_(std::move(executor)),
      changed_(std::move(changed)),
      stop_(openPipe()) {
  wait();
}

InputWatch::~InputWatch() {
  // The wait ends when its pipe does.
  stop_.writeEnd.reset();
}

void InputWatch::wait() {
  background_->run([this] {
    std::array<pollfd, 2> polled{{{.fd = descriptor_, .events = POLLIN, .revents = 0},
                                  {.fd = stop_.readEnd.get(), .events = POLLIN, .revents = 0}}};
    while (poll(polled.data(), polled.size(), -1) < 0 && errno == EINTR) {
    }
    if (polled[1].revents != 0) return;
    const bool isGone = (polled[0].revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
    executor_->post([this, isGone] {
      changed_(isGone ? InputState::gone : InputState::readable);
      if (!isGone) wait();
    });
  });
}

}  // namespace quellin::cli
