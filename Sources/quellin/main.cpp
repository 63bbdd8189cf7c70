#include <csignal>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <variant>
#include <vector>

#include "QuellinCore/Sessions/StoreError.h"
#include "quellin/CommandLine/CommandLine.h"
#include "quellin/CommandLine/Failure.h"

namespace quellin::cli {
namespace {

ExitStatus run(const Command& command, const Options& options, const std::string& program, Output& out,
               const Talk& talk) {
  const Environment environment = processEnvironment();
  const ExitStatus status = command.run({.options = options,
                                         .out = out,
                                         .talk = talk,
                                         .outTerminal = Terminal::at(STDOUT_FILENO, environment),
                                         .talkTerminal = Terminal::at(STDERR_FILENO, environment),
                                         .program = program});
  out.flush();
  return status;
}

ExitStatus runMain(const std::vector<std::string>& arguments, const std::string& program, const Talk& talk) {
  Output out{STDOUT_FILENO};
  try {
    Options options;
    const auto parsed = parse(arguments, options);
    if (const auto* remark = std::get_if<Remark>(&parsed)) {
      if (remark->status == ExitStatus::ok) {
        out.write(remark->text);
        out.flush();
      } else {
        talk.raw(remark->text);
      }
      return remark->status;
    }
    return run(*std::get<const Command*>(parsed), options, program, out, talk);
  } catch (const ReaderGone&) {
    return ExitStatus::ok;
  } catch (const Failure& failure) {
    talk.say(failure.what());
    return failure.status();
  } catch (const StoreError& error) {
    talk.say(error.what());
  } catch (const std::exception& error) {
    talk.say(error.what());
  }
  return ExitStatus::failed;
}

// A file opened later would else take the number of a standard stream that came closed, and get its text.
// Opened the wrong way round, the stream answers as a closed one does.
void occupyClosedStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) < 0)
      static_cast<void>(open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
  }
}

}  // namespace
}  // namespace quellin::cli

int main(int argc, char** argv) {
  // A reader that goes away is noticed where the output is written.
  std::signal(SIGPIPE, SIG_IGN);
  quellin::cli::occupyClosedStreams();
  const std::string program = argc > 0 ? argv[0] : "";
  const quellin::cli::Talk talk{STDERR_FILENO};
  try {
    return static_cast<int>(quellin::cli::runMain({argv + (argc > 0 ? 1 : 0), argv + argc}, program, talk));
  } catch (...) {
    return static_cast<int>(quellin::cli::ExitStatus::failed);
  }
}
