// A program of somebody else: reads this machine once, records it in a store in memory, and exports that.
#include <QuellinCore/Platform/PlatformSources.h>
#include <QuellinCore/Services/PrivilegedSMCHelperService.h>
#include <QuellinCore/Services/SystemReader.h>
#include <QuellinCore/Sessions/PowerSessionStore.h>
#include <QuellinCore/Support/AsioExecutor.h>
#include <iostream>

int main() {
  const auto sources = quellin::PlatformSources::native();
  const auto reader = quellin::SystemReader::over(sources, quellin::PrivilegedSMCHelperService{""});
  boost::asio::io_context loop;
  quellin::PowerSessionStore store{
      "1.0", std::nullopt, true, {.executor = std::make_shared<quellin::AsioExecutor>(loop)}};
  const auto state = reader.readAll();
  const auto session = store.start("Consumer", quellin::PowerSessionSource::app, 1, state.timestamp);
  store.appendSample(session, state, {}, std::nullopt);
  store.stop(session, state.timestamp);
  std::cout << store.exportJSONL(session, state.timestamp);
}
