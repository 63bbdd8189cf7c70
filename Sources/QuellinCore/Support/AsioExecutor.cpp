#include "QuellinCore/Support/AsioExecutor.h"

#include <utility>

#include <boost/asio/post.hpp>

namespace quellin {

bool AsioExecutor::isCurrent() const {
  return std::this_thread::get_id() == home_ || executor_.running_in_this_thread();
}

void AsioExecutor::post(std::function<void()> task) { boost::asio::post(executor_, std::move(task)); }

}  // namespace quellin
