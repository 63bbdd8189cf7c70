#pragma once

#include <functional>
#include <string_view>

namespace quellin {

/// Takes the next piece of a text that is written bit by bit; pieces end anywhere and are valid during the
/// call.
using TextSink = std::function<void(std::string_view)>;

}  // namespace quellin
