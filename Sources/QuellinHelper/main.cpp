#include <cstddef>
#include <span>
#include <unistd.h>

#include "QuellinHelper/ExitStatus.h"
#include "QuellinHelper/ProcessHardening.h"
#include "QuellinHelper/QuellinHelperMain.h"

int main(int argc, char* argv[]) {
  if (!quellin::hardenProcess()) _exit(static_cast<int>(quellin::ExitStatus::systemFailure));
  quellin::QuellinHelperMain::main({argv, static_cast<std::size_t>(argc)});
}
