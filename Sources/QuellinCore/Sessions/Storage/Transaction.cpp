#include "QuellinCore/Sessions/Storage/Transaction.h"

#include "QuellinCore/Sessions/Storage/Query.h"

namespace quellin {

Transaction::Transaction(Database& database) : database_(database) {
  Query(database_, "BEGIN IMMEDIATE").run();
}

Transaction::~Transaction() {
  try {
    rollback();
  } catch (const StoreError&) {
    // The error that led here is on its way to the caller; SQLite undoes the changes at the next opening if
    // not now.
    return;
  }
}

void Transaction::commit() {
  Query(database_, "COMMIT").run();
  hasEnded_ = true;
}

void Transaction::rollback() {
  if (hasEnded_) return;
  hasEnded_ = true;
  // A full disk or a failed write has made SQLite roll back by itself.
  if (database_.isInTransaction()) Query(database_, "ROLLBACK").run();
}

}  // namespace quellin
