#pragma once

#include "QuellinCore/Sessions/Storage/Database.h"

namespace quellin {

/// A write transaction: it holds the write lock from its first moment, so that what is read inside is still
/// true when it is written. Ends with `commit` or `rollback`; one that ends with neither is rolled back.
class Transaction {
 public:
  /// Waits for the lock as long as the database's busy timeout says.
  explicit Transaction(Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  Transaction(Transaction&&) = delete;
  Transaction& operator=(Transaction&&) = delete;

  /// Makes the changes visible to all. When it throws, nothing was changed.
  void commit();
  /// Undoes the changes; no effect once the transaction has ended.
  void rollback();

 private:
  Database& database_;
  bool hasEnded_ = false;
};

}  // namespace quellin
