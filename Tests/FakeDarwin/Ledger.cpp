#include "FakeDarwin/Ledger.h"

namespace quellin::fake {

void Ledger::violation(std::string what) { violations_.push_back(std::move(what)); }

}  // namespace quellin::fake
