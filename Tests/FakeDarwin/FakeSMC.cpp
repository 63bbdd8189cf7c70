#include "FakeDarwin/FakeSMC.h"

#include <cstring>
#include <utility>

namespace quellin::fake {

StructMethod smcStructMethod(VirtualSMC keys) {
  return [connection = std::shared_ptr<SMCConnection>{keys.open()}](
             std::uint32_t selector, const void* input, std::size_t inputSize, void* output,
             std::size_t* outputSize) -> kern_return_t {
    if (inputSize != sizeof(SMCKeyData)) return 1;
    SMCKeyData question;
    SMCKeyData answer;
    std::memcpy(&question, input, sizeof(question));
    const kern_return_t code = connection->callStruct(selector, question, answer, *outputSize);
    if (code == KERN_SUCCESS) std::memcpy(output, &answer, sizeof(answer));
    return code;
  };
}

}  // namespace quellin::fake
