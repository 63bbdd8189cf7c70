#pragma once

#include <memory>
#include <vector>

#include "QuellinCore/Sessions/SampleColumns.h"

namespace quellin {

class PowerSession;
class PowerSessionSample;

/// What a stored model asks of the context that it belongs to. Called where the models are used: on the main
/// executor, hence by one thread at a time.
class ModelOwner {
 public:
  ModelOwner() = default;
  ModelOwner(const ModelOwner&) = delete;
  ModelOwner& operator=(const ModelOwner&) = delete;
  ModelOwner(ModelOwner&&) = delete;
  ModelOwner& operator=(ModelOwner&&) = delete;
  virtual ~ModelOwner() = default;

  /// The model has a value that is not saved.
  virtual void modelChanged(const std::shared_ptr<PowerSession>& session) = 0;
  virtual void modelChanged(const std::shared_ptr<PowerSessionSample>& sample) = 0;  ///< the same of a sample

  /// The samples of a session in the order stored.
  [[nodiscard]] virtual std::vector<std::shared_ptr<PowerSessionSample>> samplesOf(
      const PowerSession& session) = 0;

  /// The blobs of a stored sample; an unreadable one is empty.
  [[nodiscard]] virtual SampleBlobs blobsOf(const PowerSessionSample& sample) = 0;
};

}  // namespace quellin
