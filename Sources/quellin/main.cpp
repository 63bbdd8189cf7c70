#include <csignal>
#include <exception>
#include <string>
#include <unistd.h>
#include <variant>
#include <vector>

#include "QuellinCore/Support/FileDescriptor.h"
#include "quellin/CommandLine/CommandLine.h"
#include "quellin/Commands/BundledHelper.h"
#include "quellin/Outcome/Failure.h"

namespace quellin::cli {
namespace {

ExitStatus run(const Command& command, const Options& options, Output& out, const Talk& talk) {
  const ProTelemetryService tool{std::string{ProTelemetryService::defaultHelperPath},
                                 installationPrompt(geteuid())};
  const Environment environment = processEnvironment();
  const ExitStatus status = command.run({.options = options,
                                         .out = out,
                                         .talk = talk,
                                         .outTerminal = Terminal::at(STDOUT_FILENO, environment),
                                         .talkTerminal = Terminal::at(STDERR_FILENO, environment),
                                         .tool = tool});
  out.flush();
  return status;
}

ExitStatus runMain(const std::vector<std::string>& arguments, const Talk& talk) {
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
    return run(*std::get<const Command*>(parsed), options, out, talk);
  } catch (const ReaderGone&) {
    return ExitStatus::ok;
  } catch (const Failure& failure) {
    talk.say(failure.what());
    return failure.status();
  } catch (const std::exception& error) {
    talk.say(error.what());
  }
  return ExitStatus::failed;
}

}  // namespace
}  // namespace quellin::cli

int main(int argc, char** argv) {
  // A reader that goes away is noticed where the output is written.
  std::signal(SIGPIPE, SIG_IGN);
  const auto occupied = quellin::occupyClosedStreams();
  const quellin::cli::Talk talk{STDERR_FILENO};
  try {
    if (!occupied) {
      talk.say("a closed standard stream cannot be occupied: " + occupied.error().description() +
               ". Start the program with its standard streams open.");
      return static_cast<int>(quellin::cli::ExitStatus::failed);
    }
    return static_cast<int>(quellin::cli::runMain({argv + (argc > 0 ? 1 : 0), argv + argc}, talk));
  } catch (...) {
    return static_cast<int>(quellin::cli::ExitStatus::failed);
  }
}
