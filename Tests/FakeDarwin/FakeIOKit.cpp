#include "FakeDarwin/FakeIOKit.h"

#include <algorithm>
#include <utility>

namespace quellin::fake {
namespace {

constexpr mach_port_t firstPort = 0x1003;  // any number but 0: names are opaque

}  // namespace

void FakeIOKit::addService(std::string className, StructMethod method) {
  services_.push_back({.identity = {.by = Matching::By::className, .text = std::move(className)},
                       .method = std::move(method),
                       .properties = {}});
}

void FakeIOKit::addEntry(std::string name, ObjectMaker properties) {
  services_.push_back({.identity = {.by = Matching::By::name, .text = std::move(name)},
                       .method = {},
                       .properties = std::move(properties)});
}

io_service_t FakeIOKit::lookUp(const Matching& matching) {
  const auto found = std::ranges::find_if(services_, [&](const Service& service) {
    return service.identity.by == matching.by && service.identity.text == matching.text;
  });
  if (found == services_.end()) return 0;
  return newPort(PortKind::service, static_cast<std::size_t>(found - services_.begin()));
}

CFTypeRef FakeIOKit::properties(io_service_t service) {
  const Port* port = live(service, PortKind::service);
  if (port == nullptr) return nullptr;
  const ObjectMaker& make = services_[port->service].properties;
  return make ? make() : nullptr;
}

io_connect_t FakeIOKit::connect(io_service_t service, std::uint32_t type) {
  const Port* port = live(service, PortKind::service);
  if (port == nullptr) return 0;
  connectionTypes_.push_back(type);
  return newPort(PortKind::connection, port->service);
}

bool FakeIOKit::checkService(io_service_t service) { return live(service, PortKind::service) != nullptr; }

void FakeIOKit::releaseService(io_object_t service) {
  if (Port* port = live(service, PortKind::service)) port->isLive = false;
}

void FakeIOKit::close(io_connect_t connection) {
  if (Port* port = live(connection, PortKind::connection)) port->isLive = false;
}

kern_return_t FakeIOKit::call(io_connect_t connection, std::uint32_t selector, const void* input,
                              std::size_t inputSize, void* output, std::size_t* outputSize) {
  const Port* port = live(connection, PortKind::connection);
  if (port == nullptr) return 1;
  const StructMethod& method = services_[port->service].method;
  return method ? method(selector, input, inputSize, output, outputSize) : 1;
}

std::vector<std::string> FakeIOKit::leaks() const {
  std::vector<std::string> leaked;
  for (const auto& [name, port] : ports_) {
    if (!port.isLive) continue;
    const char* what = port.kind == PortKind::service ? "service not released: " : "connection not closed: ";
    leaked.push_back(what + services_[port.service].identity.text);
  }
  return leaked;
}

mach_port_t FakeIOKit::newPort(PortKind kind, std::size_t service) {
  const mach_port_t name = firstPort + static_cast<mach_port_t>(ports_.size());
  ports_.emplace(name, Port{.kind = kind, .service = service, .isLive = true});
  return name;
}

FakeIOKit::Port* FakeIOKit::live(mach_port_t name, PortKind kind) {
  const auto found = ports_.find(name);
  if (found == ports_.end() || found->second.kind != kind) {
    ledger_.violation(kind == PortKind::service ? "not a service" : "not a connection");
    return nullptr;
  }
  if (!found->second.isLive) {
    ledger_.violation(kind == PortKind::service ? "service used after its release"
                                                : "connection used after its close");
    return nullptr;
  }
  return &found->second;
}

}  // namespace quellin::fake
