#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "QuellinCore/Sessions/Analysis/ComparedSession.h"

namespace quellin {

/// One description of each kind of which the sessions have readings, in the order of first appearance.
[[nodiscard]] std::vector<SourceEnergy> kindsOf(std::span<const ComparedSession> sessions);

/// The kinds of the sessions in words: "readings of Battery draw on battery".
[[nodiscard]] std::string kindsText(std::span<const ComparedSession> sessions);

/// What those sessions have that have readings of one kind. Refers to the sessions, and is
/// for any thread as long as none changes these.
class KindHolders {
 public:
  /// Those of `sessions` that have readings of `kind`.
  KindHolders(std::span<const ComparedSession> sessions, std::string_view kind);

  [[nodiscard]] std::size_t count() const { return sources_.size(); }  ///< how many they are

  /// On what the machine was when they were read: " on battery", " with a charger", " on battery and with a
  /// charger", " on an unknown supply"; where sessions differ, how many were on which.
  [[nodiscard]] std::string supplyText() const;

  /// Whether all readings of these and of the others were taken on one and the same supply, or nothing is
  /// known of any.
  [[nodiscard]] bool sharesSupplyWith(const KindHolders& other) const;

  /// Whether nothing is known of the supply of any of them.
  [[nodiscard]] bool isOnUnknownSupply() const;

  /// The readings of the first of them.
  [[nodiscard]] const std::vector<double>& firstReadings() const { return sources_.front()->watts; }

  /// The energy of each of them; no value unless every session is completed and has an energy of this
  /// kind in every stretch: else it would be that of a part of its time.
  [[nodiscard]] std::optional<std::vector<double>> joules() const;

  /// The average of each of them.
  [[nodiscard]] std::vector<double> averageWatts() const;

 private:
  std::vector<const ComparedSource*> sources_;
  bool areWhole_;
};

}  // namespace quellin
