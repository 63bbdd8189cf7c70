#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

#include "QuellinCore/Platform/SMCSource.h"

namespace quellin {

/// An SMC that answers from a table of keys. Connections share the table they were opened on and may outlive
/// the `VirtualSMC`. `set` must not run while other threads use it.
class VirtualSMC final : public SMCSource {
 public:
  /// Codes of a refused call; callers may rely only on their not being 0.
  static constexpr std::int32_t unknownKey = 1;
  static constexpr std::int32_t unsupportedCall = 2;  ///< another selector or command
  static constexpr std::int32_t wrongSize = 3;        ///< a block too small, or a size other than the value's

  VirtualSMC();

  /// Sets the value of `key`, both named by their first four characters. Its size is reported as it is, even
  /// where no block could carry it; of a longer value the first 32 bytes are answered. Open connections keep
  /// the table they have.
  void set(std::string_view key, std::string_view dataType, std::vector<std::uint8_t> bytes);

  [[nodiscard]] std::unique_ptr<SMCConnection> open() override;

  /// Available once a key is set.
  [[nodiscard]] SourceDiagnosis diagnose() override;

 private:
  class Connection;

  struct Value {
    std::uint32_t dataType = 0;
    std::vector<std::uint8_t> bytes;
  };
  using Table = std::map<std::uint32_t, Value>;

  std::shared_ptr<Table> table_;  // shared with open connections, changed only while it is not
};

}  // namespace quellin
