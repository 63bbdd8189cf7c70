#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "QuellinCore/Sessions/ModelOwner.h"
#include "QuellinCore/Support/Clock.h"
#include "QuellinCore/Support/Observation.h"
#include "QuellinCore/Support/RawValue.h"
#include "QuellinCore/Support/UUID.h"

namespace quellin {

/// Where a session stands.
enum class PowerSessionStatus { active, completed, interrupted };

template <>
inline constexpr std::array rawValues<PowerSessionStatus>{
    std::string_view{"active"}, std::string_view{"completed"}, std::string_view{"interrupted"}};

/// What started a session: a desktop application, or the command line.
enum class PowerSessionSource { app, cli };

template <>
inline constexpr std::array rawValues<PowerSessionSource>{std::string_view{"app"}, std::string_view{"cli"}};

/// The stored values of a session.
struct PowerSessionColumns {
  UUID id;                               ///< not unique by force
  std::string title;                     ///< see `PowerSessionStore::normalizedTitle`
  Instant startedAt;                     ///< wall clock
  std::optional<Instant> endedAt;        ///< absent while recording
  std::optional<std::string> statusRaw;  ///< raw value of a `PowerSessionStatus`
  std::optional<std::string> sourceRaw;  ///< raw value of a `PowerSessionSource`
  std::string appVersion;                ///< version of the software that recorded it
  std::int64_t schemaVersion = 0;        ///< version of the encoding of its samples
  double sampleInterval = 0;             ///< the polling interval asked for, seconds
  Instant createdAt;                     ///< when the record was made

  bool operator==(const PowerSessionColumns&) const = default;
};

/// What a new session is made of.
struct PowerSessionInit {
  UUID id;                                                 ///< all zeros unless given
  std::string title;                                       ///< see `PowerSessionStore::normalizedTitle`
  Instant startedAt;                                       ///< wall clock
  std::optional<Instant> endedAt;                          ///< absent while recording
  PowerSessionStatus status = PowerSessionStatus::active;  ///< stored by its raw value
  PowerSessionSource source = PowerSessionSource::app;     ///< stored by its raw value
  std::string appVersion;                                  ///< version of the software that records it
  std::int64_t schemaVersion = 0;                          ///< version of the encoding of its samples
  double sampleInterval = 0;                               ///< seconds
};

/// A recorded session: an object that its store knows once, so that all holders of it see the same values.
/// Setters tell the observers; the store writes the changes at its next save. Used on the store's main
/// executor only.
class PowerSession : public std::enable_shared_from_this<PowerSession> {
 public:
  /// A session that no store knows yet, made at the present time of `clock`.
  [[nodiscard]] static std::shared_ptr<PowerSession> make(PowerSessionInit values,
                                                          const WallClock& clock = systemWallClock());
  /// A session with given values; for the store that reads it.
  explicit PowerSession(PowerSessionColumns columns);
  /// @{ The stored values, or one of them; see `PowerSessionColumns` for units and what absence means.
  [[nodiscard]] const PowerSessionColumns& columns() const { return columns_; }
  [[nodiscard]] const UUID& id() const { return columns_.id; }
  [[nodiscard]] const std::string& title() const { return columns_.title; }
  [[nodiscard]] Instant startedAt() const { return columns_.startedAt; }
  [[nodiscard]] const std::optional<Instant>& endedAt() const { return columns_.endedAt; }
  [[nodiscard]] const std::optional<std::string>& statusRaw() const { return columns_.statusRaw; }
  [[nodiscard]] const std::optional<std::string>& sourceRaw() const { return columns_.sourceRaw; }
  [[nodiscard]] const std::string& appVersion() const { return columns_.appVersion; }
  [[nodiscard]] std::int64_t schemaVersion() const { return columns_.schemaVersion; }
  [[nodiscard]] double sampleInterval() const { return columns_.sampleInterval; }
  [[nodiscard]] Instant createdAt() const { return columns_.createdAt; }
  /// @}

  /// The status; active for a raw value that is absent or unknown.
  [[nodiscard]] PowerSessionStatus status() const;
  /// The source; app for a raw value that is absent or unknown.
  [[nodiscard]] PowerSessionSource source() const;
  /// @{ Changes the value, marks the session for the next save, and then tells the observers.
  void setTitle(std::string title);
  void setStartedAt(Instant instant);
  void setEndedAt(std::optional<Instant> instant);
  void setStatusRaw(std::optional<std::string> raw);
  void setSourceRaw(std::optional<std::string> raw);
  void setSampleInterval(double seconds);
  /// @}

  /// The samples in the order stored, those not saved yet last; read from the store at every call. No value
  /// once the session is deleted. Throws `StoreError` when the store cannot be read; unreadable rows are left
  /// out.
  [[nodiscard]] std::optional<std::vector<std::shared_ptr<PowerSessionSample>>> samples() const;

  /// True once the session has been deleted from its store.
  [[nodiscard]] bool isDeleted() const { return isDeleted_; }

  /// Calls `observer` after every change of a value, and after a sample was appended or the session deleted.
  [[nodiscard]] Subscription onChange(std::function<void()> observer);

 private:
  friend class ModelContext;

  template <class T>
  void set(T PowerSessionColumns::* member, T value);

  PowerSessionColumns columns_;
  Signal<> changed_;
  std::weak_ptr<ModelOwner> owner_;
  std::int64_t key_ = 0;  // 0 until saved
  bool isDeleted_ = false;
  bool isChanged_ = false;  // among the changes that the owner will save
};

}  // namespace quellin
