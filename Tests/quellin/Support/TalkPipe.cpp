#include "quellin/Support/TalkPipe.h"

#include <poll.h>

namespace quellin::testing_support {

cli::Invocation TalkPipe::onTerminal(std::size_t columns) {
  return on({.isTerminal = true, .isDumb = false, .hasColours = false, .width = columns});
}

cli::Invocation TalkPipe::on(const cli::Terminal& terminal) {
  return {.options = options_,
          .out = out_,
          .talk = talk_,
          .outTerminal = terminal,
          .talkTerminal = terminal,
          .tool = tool_};
}

std::string TalkPipe::waitForText() {
  constexpr int patience = 60'000;  // milliseconds; only a test that fails waits as long
  std::string text;
  pollfd ready{.fd = pipe_.readEnd.get(), .events = POLLIN, .revents = 0};
  if (poll(&ready, 1, patience) == 1) static_cast<void>(readOnce(pipe_.readEnd.get(), text));
  return text;
}

std::string TalkPipe::said() {
  pipe_.writeEnd.reset();
  return readToEnd(pipe_.readEnd.get());
}

}  // namespace quellin::testing_support
