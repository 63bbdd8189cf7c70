#pragma once

#include <IOKit/IOKitLib.h>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "FakeDarwin/FakeCoreFoundation.h"
#include "FakeDarwin/Ledger.h"

namespace quellin::fake {

/// The kernel's answer to a struct call: selector, input and its size, output and the place of its size.
using StructMethod =
    std::function<kern_return_t(std::uint32_t, const void*, std::size_t, void*, std::size_t*)>;

/// How a service is looked for.
struct Matching {
  enum class By { className, name };
  By by = By::className;
  std::string text;
};

/// The registry's services, and the port names that the code under test holds on them.
class FakeIOKit {
 public:
  explicit FakeIOKit(Ledger& ledger) : ledger_(ledger) {}

  /// Puts a service of `className` into the registry; its user client answers with `method`.
  void addService(std::string className, StructMethod method = {});

  /// Puts an entry called `name` into the registry, whose properties `properties` makes anew for each caller.
  void addEntry(std::string name, ObjectMaker properties);

  /// A new name for the first service that matches, 0 when there is none.
  io_service_t lookUp(const Matching& matching);

  /// The properties of the service behind a name, with one reference, which is the caller's.
  CFTypeRef properties(io_service_t service);

  /// A new connection to the service behind a name, of the connection type asked for.
  io_connect_t connect(io_service_t service, std::uint32_t type);

  /// Gives back a service's name.
  void releaseService(io_object_t service);

  /// Closes a connection.
  void close(io_connect_t connection);

  /// Calls the user client behind an open connection.
  kern_return_t call(io_connect_t connection, std::uint32_t selector, const void* input,
                     std::size_t inputSize, void* output, std::size_t* outputSize);

  /// Notes a misuse unless `service` is a live name of a service, and says whether it is one.
  bool checkService(io_service_t service);

  void violation(std::string what) { ledger_.violation(std::move(what)); }

  /// The type asked for by each connection that was opened, in order.
  [[nodiscard]] const std::vector<std::uint32_t>& connectionTypes() const { return connectionTypes_; }

  /// The names that were not given back and the connections that were not closed.
  [[nodiscard]] std::vector<std::string> leaks() const;

 private:
  enum class PortKind { service, connection };

  struct Service {
    Matching identity;
    StructMethod method;
    ObjectMaker properties;
  };

  struct Port {
    PortKind kind = PortKind::service;
    std::size_t service = 0;
    bool isLive = true;
  };

  mach_port_t newPort(PortKind kind, std::size_t service);
  Port* live(mach_port_t name, PortKind kind);

  Ledger& ledger_;
  std::vector<Service> services_;
  std::map<mach_port_t, Port> ports_;
  std::vector<std::uint32_t> connectionTypes_;
};

}  // namespace quellin::fake
