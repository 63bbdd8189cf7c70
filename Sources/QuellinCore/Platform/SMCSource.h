#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "QuellinCore/Models/SourceDiagnosis.h"
#include "QuellinCore/Platform/SMCKeyData.h"

namespace quellin {

/// The user client's only method: it takes one `SMCKeyData` and answers with another.
inline constexpr std::uint32_t smcStructSelector = 2;

/// An open connection to the System Management Controller, closed by its destructor. One thread at a time.
class SMCConnection {
 public:
  virtual ~SMCConnection() = default;

  /// Calls the user client's method `selector`. `outputSize` holds the size of `output` and receives the size
  /// of the answer. Returns the kernel's code: 0 on success, anything else is a failure and leaves `output`
  /// undefined.
  [[nodiscard]] virtual std::int32_t callStruct(std::uint32_t selector, const SMCKeyData& input,
                                                SMCKeyData& output, std::size_t& outputSize) = 0;
};

/// Supplies connections to the System Management Controller.
///
/// Threading: every operation may be called from any thread, also from several at once. Nothing throws.
class SMCSource {
 public:
  virtual ~SMCSource() = default;

  /// A connection of its own for each call; null when the machine has no SMC or refuses.
  [[nodiscard]] virtual std::unique_ptr<SMCConnection> open() = 0;

  /// Why `open` gives what it gives on this machine.
  [[nodiscard]] virtual SourceDiagnosis diagnose() = 0;
};

/// The SMC source of the host that this library was built for. Never null.
[[nodiscard]] std::shared_ptr<SMCSource> nativeSMCSource();

}  // namespace quellin
