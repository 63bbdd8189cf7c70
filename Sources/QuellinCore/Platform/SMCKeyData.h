#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace quellin {

/// What a call asks of the SMC, in the block's `command` field.
enum class SMCCommand : std::uint8_t {
  readBytes = 5,    ///< the value of `key`, `dataSize` bytes long
  readKeyInfo = 9,  ///< the size and type of `key`
};

/// The parameter block exchanged with the SMC user client, for input and for output. Integers are in the
/// machine's byte order; fields that are not named here by a meaning stay zero.
struct SMCKeyData {
  /// Version of the firmware; there for its place alone.
  struct Version {
    std::uint8_t majorNumber = 0;  ///< not used: 0
    std::uint8_t minorNumber = 0;  ///< not used: 0
    std::uint8_t build = 0;        ///< not used: 0
    std::uint8_t reserved = 0;     ///< not used: 0
    std::uint16_t release = 0;     ///< not used: 0
  };

  /// Limits of power; there for their place alone.
  struct PowerLimits {
    std::uint16_t version = 0;  ///< not used: 0
    std::uint16_t length = 0;   ///< not used: 0
    std::uint32_t cpu = 0;      ///< not used: 0
    std::uint32_t gpu = 0;      ///< not used: 0
    std::uint32_t memory = 0;   ///< not used: 0
  };

  static constexpr std::size_t capacity = 32;  ///< the longest value, in bytes, that fits a block

  std::uint32_t key = 0;                              ///< four-character code
  Version version;                                    ///< not used: 0
  std::array<std::uint8_t, 2> paddingAfterVersion{};  ///< no meaning
  PowerLimits powerLimits;                            ///< not used: 0
  std::uint32_t dataSize =
      0;  ///< bytes of the key's value; answered for `readKeyInfo`, asked with `readBytes`
  std::uint32_t dataType = 0;       ///< four-character code of the value's type; answered for `readKeyInfo`
  std::uint8_t dataAttributes = 0;  ///< answered for `readKeyInfo`; not looked at
  std::array<std::uint8_t, 3> paddingAfterAttributes{};  ///< no meaning
  std::uint8_t result = 0;                               ///< the SMC's own verdict; not looked at
  std::uint8_t status = 0;                               ///< not used: 0
  SMCCommand command{};                                  ///< what is asked for
  std::uint8_t paddingAfterCommand = 0;                  ///< no meaning
  std::uint32_t data32 = 0;                              ///< not used: 0
  std::array<std::uint8_t, capacity> bytes{};            ///< the value, answered for `readBytes`
};

// The kernel reads these offsets. No byte is left to the compiler as padding, so a fresh block is zero
// throughout.
static_assert(std::is_standard_layout_v<SMCKeyData> && std::is_trivially_copyable_v<SMCKeyData>);
static_assert(sizeof(SMCKeyData) == 80);
static_assert(offsetof(SMCKeyData, key) == 0);
static_assert(offsetof(SMCKeyData, version) == 4 && sizeof(SMCKeyData::Version) == 6);
static_assert(offsetof(SMCKeyData::Version, majorNumber) == 0);
static_assert(offsetof(SMCKeyData::Version, minorNumber) == 1);
static_assert(offsetof(SMCKeyData::Version, build) == 2);
static_assert(offsetof(SMCKeyData::Version, reserved) == 3);
static_assert(offsetof(SMCKeyData::Version, release) == 4);
static_assert(offsetof(SMCKeyData, paddingAfterVersion) == 10);
static_assert(offsetof(SMCKeyData, powerLimits) == 12 && sizeof(SMCKeyData::PowerLimits) == 16);
static_assert(offsetof(SMCKeyData::PowerLimits, version) == 0);
static_assert(offsetof(SMCKeyData::PowerLimits, length) == 2);
static_assert(offsetof(SMCKeyData::PowerLimits, cpu) == 4);
static_assert(offsetof(SMCKeyData::PowerLimits, gpu) == 8);
static_assert(offsetof(SMCKeyData::PowerLimits, memory) == 12);
static_assert(offsetof(SMCKeyData, dataSize) == 28);
static_assert(offsetof(SMCKeyData, dataType) == 32);
static_assert(offsetof(SMCKeyData, dataAttributes) == 36);
static_assert(offsetof(SMCKeyData, paddingAfterAttributes) == 37);
static_assert(offsetof(SMCKeyData, result) == 40);
static_assert(offsetof(SMCKeyData, status) == 41);
static_assert(offsetof(SMCKeyData, command) == 42);
static_assert(offsetof(SMCKeyData, paddingAfterCommand) == 43);
static_assert(offsetof(SMCKeyData, data32) == 44);
static_assert(offsetof(SMCKeyData, bytes) == 48);

}  // namespace quellin
