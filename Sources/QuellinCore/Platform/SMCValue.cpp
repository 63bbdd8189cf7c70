#include "QuellinCore/Platform/SMCValue.h"

#include <cstddef>

namespace quellin {
namespace {

// The block's own result byte is left alone on purpose: a size out of range and an unknown type say enough.
std::optional<SMCKeyData> callSMC(SMCConnection& connection, const SMCKeyData& input) {
  SMCKeyData output;
  std::size_t outputSize = sizeof(output);
  if (connection.callStruct(smcStructSelector, input, output, outputSize) != 0) return std::nullopt;
  return output;
}

}  // namespace

std::optional<SMCValue> readSMCValue(SMCConnection& connection, std::uint32_t key) {
  SMCKeyData question;
  question.key = key;
  question.command = SMCCommand::readKeyInfo;
  const auto info = callSMC(connection, question);
  if (!info || info->dataSize < 1 || info->dataSize > SMCKeyData::capacity) return std::nullopt;

  question.dataSize = info->dataSize;
  question.command = SMCCommand::readBytes;
  const auto answer = callSMC(connection, question);
  if (!answer) return std::nullopt;
  return SMCValue{.dataType = info->dataType,
                  .bytes = {answer->bytes.begin(), answer->bytes.begin() + info->dataSize}};
}

}  // namespace quellin
