#include "QuellinCore/Platform/VirtualSMC.h"

#include <algorithm>
#include <utility>

#include "QuellinCore/Models/SMCDecoding.h"

namespace quellin {

class VirtualSMC::Connection final : public SMCConnection {
 public:
  explicit Connection(std::shared_ptr<const Table> table) : table_(std::move(table)) {}

  [[nodiscard]] std::int32_t callStruct(std::uint32_t selector, const SMCKeyData& input, SMCKeyData& output,
                                        std::size_t& outputSize) override {
    if (selector != smcStructSelector) return unsupportedCall;
    if (outputSize < sizeof(SMCKeyData)) return wrongSize;
    const auto found = table_->find(input.key);
    if (found == table_->end()) return unknownKey;
    outputSize = sizeof(SMCKeyData);
    return answer(found->second, input, output);
  }

 private:
  static std::int32_t answer(const Value& value, const SMCKeyData& input, SMCKeyData& output) {
    const auto size = static_cast<std::uint32_t>(value.bytes.size());
    switch (input.command) {
      case SMCCommand::readKeyInfo:
        output = {};
        output.dataSize = size;
        output.dataType = value.dataType;
        return 0;
      case SMCCommand::readBytes:
        if (input.dataSize != size) return wrongSize;
        output = {};
        std::copy_n(value.bytes.begin(), std::min(value.bytes.size(), SMCKeyData::capacity),
                    output.bytes.begin());
        return 0;
    }
    return unsupportedCall;
  }

  std::shared_ptr<const Table> table_;
};

VirtualSMC::VirtualSMC() : table_(std::make_shared<Table>()) {}

void VirtualSMC::set(std::string_view key, std::string_view dataType, std::vector<std::uint8_t> bytes) {
  if (table_.use_count() > 1) table_ = std::make_shared<Table>(*table_);
  table_->insert_or_assign(SMCDecoding::fourCharCode(key),
                           Value{.dataType = SMCDecoding::fourCharCode(dataType), .bytes = std::move(bytes)});
}

std::unique_ptr<SMCConnection> VirtualSMC::open() { return std::make_unique<Connection>(table_); }

SourceDiagnosis VirtualSMC::diagnose() {
  SourceDiagnosis diagnosis{.source = SourceNames::smc,
                            .availability = SourceAvailability::available,
                            .reason = "A table of keys stands in for the SMC.",
                            .path = std::nullopt,
                            .remedy = std::nullopt};
  if (table_->empty()) {
    diagnosis.availability = SourceAvailability::absent;
    diagnosis.reason = "The table of keys that stands in for the SMC is empty.";
  }
  return diagnosis;
}

}  // namespace quellin
