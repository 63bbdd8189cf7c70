#pragma once

namespace quellin::cli {

/// What the program makes of the signals that ask it to end, one after the other. A value; used by one thread
/// at a time.
class RequestsToEnd {
 public:
  /// What a signal calls for.
  enum class Answer {
    nothing,    ///< the program goes on with what it does
    tell,       ///< it is to end: the first request
    endAtOnce,  ///< whoever asked does not want to wait for that
  };

  /// What `signal`, one of the ending signals, calls for after those before it. A hang-up urges nobody.
  [[nodiscard]] Answer answerTo(int signal);

  /// From now on no signal calls for anything. Tells whether one did before.
  bool refuse() {
    isRefused_ = true;
    return isAsked_;
  }

  /// Whether any signal came, be it refused.
  [[nodiscard]] bool wereHeard() const { return areHeard_; }

 private:
  bool areHeard_ = false;
  bool isRefused_ = false;
  bool isAsked_ = false;
  bool isUrged_ = false;
};

}  // namespace quellin::cli
