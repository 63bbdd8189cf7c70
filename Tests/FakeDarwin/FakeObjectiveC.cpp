#include "FakeDarwin/FakeObjectiveC.h"

namespace quellin::fake {

void* FakeObjectiveC::selector(const std::string& text) {
  return const_cast<std::string*>(&*selectors_.insert(text).first);
}

void* FakeObjectiveC::classNamed(const std::string& name) {
  return name == "NSProcessInfo" ? &class_ : nullptr;
}

bool FakeObjectiveC::respondsTo(const void* type, const void* selector) const {
  return type == &class_ && answers.contains(textOf(selector));
}

long FakeObjectiveC::answer(const void* receiver, const void* selector) {
  const std::string message = textOf(selector);
  if (pools_.empty()) ledger_.violation("message without a pool: " + message);
  if (receiver == &class_ && message == "processInfo") return reinterpret_cast<long>(&instance_);
  const auto found = answers.find(message);
  if (receiver == &instance_ && found != answers.end()) return found->second;
  ledger_.violation("message not understood: " + message);
  return 0;
}

void* FakeObjectiveC::pushPool() {
  pools_.push_back(++lastPool_);
  return reinterpret_cast<void*>(lastPool_);
}

void FakeObjectiveC::popPool(const void* pool) {
  if (pools_.empty() || reinterpret_cast<std::uintptr_t>(pool) != pools_.back()) {
    ledger_.violation("pool popped out of turn");
    return;
  }
  pools_.pop_back();
}

std::vector<std::string> FakeObjectiveC::leaks() const {
  std::vector<std::string> leaked;
  for (std::size_t count = 0; count < pools_.size(); ++count)
    leaked.emplace_back("pool that was never popped");
  return leaked;
}

std::string FakeObjectiveC::textOf(const void* selector) {
  return *static_cast<const std::string*>(selector);
}

}  // namespace quellin::fake
