#include "Support/SQLWork.h"

#include <sqlite3.h>

namespace quellin::testing_support {
namespace {

// Of the whole program: a connection goes on counting for as long as it is open.
std::int64_t instructions = 0;

int countInstruction(void* /*unused*/) {
  ++instructions;
  return 0;
}

int watch(sqlite3* connection, char** /*error*/, const sqlite3_api_routines* /*routines*/) {
  sqlite3_progress_handler(connection, 1, countInstruction, nullptr);
  return SQLITE_OK;
}

using Hook = void (*)();

}  // namespace

SQLWork::SQLWork() : count_(&instructions) { sqlite3_auto_extension(reinterpret_cast<Hook>(watch)); }

SQLWork::~SQLWork() { sqlite3_cancel_auto_extension(reinterpret_cast<Hook>(watch)); }

}  // namespace quellin::testing_support
