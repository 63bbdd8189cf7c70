#pragma once

#include <functional>
#include <thread>

#include <boost/asio/io_context.hpp>

#include "QuellinCore/Support/MainExecutor.h"

namespace quellin {

/// The main executor of an application that runs a Boost.Asio loop on one thread. The context must outlive
/// it.
class AsioExecutor final : public MainExecutor {
 public:
  /// Made on the thread that will run the context.
  explicit AsioExecutor(boost::asio::io_context& context) : executor_(context.get_executor()) {}

  /// True inside the handlers of the context, and on the thread that made this object, which stands for the
  /// loop before it runs and after it has ended.
  [[nodiscard]] bool isCurrent() const override;
  void post(std::function<void()> task) override;

 private:
  boost::asio::io_context::executor_type executor_;
  std::thread::id home_ = std::this_thread::get_id();
};

}  // namespace quellin
