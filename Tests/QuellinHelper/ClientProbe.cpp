// An application in miniature: asks the tool at a path through the library's client and prints what it got.
//
// usage: ClientProbe PATH status|temperatures|telemetry|impatient-telemetry

#include <cstdio>
#include <string>
#include <string_view>

#include "QuellinCore/Services/PrivilegedSMCHelperService.h"
#include "QuellinCore/Services/ProTelemetryService.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

namespace quellin {
namespace {

/// A clock for which forty seconds pass in one, so that a time limit comes soon.
class HurriedClock final : public MonotonicClock {
 public:
  [[nodiscard]] Seconds now() const override { return systemMonotonicClock().now() * haste; }
  void sleep(Seconds duration) override { systemMonotonicClock().sleep(duration / haste); }

 private:
  static constexpr double haste = 40;
};

template <class Value>
int print(const Value& value) {
  const auto text = encodeJSON(value, KeyOrder::sorted);
  if (!text) return 70;
  return std::puts(text->c_str()) < 0 ? 1 : 0;
}

int ask(const std::string& path, std::string_view question) {
  HurriedClock hurried;
  const bool isImpatient = question == "impatient-telemetry";
  const ProTelemetryService service{
      path, AdministratorPrompt::native(),
      isImpatient ? static_cast<MonotonicClock&>(hurried) : systemMonotonicClock()};
  if (question == "status") return print(service.helperStatus());
  if (question == "temperatures") return print(PrivilegedSMCHelperService{path}.readTemperatures());
  return print(service.readSnapshot());
}

}  // namespace
}  // namespace quellin

int main(int count, char** arguments) {
  if (count != 3) return 64;
  return quellin::ask(arguments[1], arguments[2]);
}
