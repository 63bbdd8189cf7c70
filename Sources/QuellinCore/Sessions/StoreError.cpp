#include "QuellinCore/Sessions/StoreError.h"

#include <string_view>
#include <utility>

namespace quellin {
namespace {

std::string_view adviceFor(StoreError::Kind kind) {
  using enum StoreError::Kind;
  switch (kind) {
    case notAStore:
      return "Choose another file; this one was left as it was.";
    case tooNew:
      return "Update this software to open it; the file was left as it was.";
    case cannotOpen:
      return "Check that the folder exists and that you may write to it.";
    case readOnly:
      return "Make the file and its folder writable, or copy the file to a folder of your own.";
    case diskFull:
      return "Free some space on the disk; what is not saved yet is kept and saved then.";
    case locked:
      return "Close the other program that uses the store, then try again.";
    case damaged:
      return "Put the file aside, keep a copy, and let a new one be made, or restore it from a backup.";
    case io:
      return "Check the disk, then try again.";
    case notStorable:
      return "Leave the value out.";
    case sessionGone:
      return "Start a new session.";
    case notEncodable:
      return "Leave the value out.";
    case failed:
      return "Try again.";
  }
  return "";
}

std::string message(StoreError::Kind kind, const std::filesystem::path& path, const std::string& cause) {
  const std::string place =
      path.empty() ? "The session store in memory" : "The session store " + path.string();
  return place + ": " + cause + ". " + std::string(adviceFor(kind));
}

}  // namespace

StoreError::StoreError(Kind kind, std::filesystem::path path, std::string cause)
    : std::runtime_error(message(kind, path, cause)),
      kind_(kind),
      path_(std::move(path)),
      cause_(std::move(cause)) {}

}  // namespace quellin
