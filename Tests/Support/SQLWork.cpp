#include "Support/SQLWork.h"

#include <sqlite3.h>

namespace quellin::testing_support {
namespace {

// SQLite calls the hook for new connections without saying for whom.
std::int64_t* countOfNewConnections = nullptr;

int countInstruction(void* count) {
  ++*static_cast<std::int64_t*>(count);
  return 0;
}

int watch(sqlite3* connection, char** /*error*/, const sqlite3_api_routines* /*routines*/) {
  sqlite3_progress_handler(connection, 1, countInstruction, countOfNewConnections);
  return SQLITE_OK;
}

using Hook = void (*)();

}  // namespace

SQLWork::SQLWork() {
  countOfNewConnections = &count_;
  sqlite3_auto_extension(reinterpret_cast<Hook>(watch));
}

SQLWork::~SQLWork() { sqlite3_cancel_auto_extension(reinterpret_cast<Hook>(watch)); }

}  // namespace quellin::testing_support
