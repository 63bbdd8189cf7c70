#include "QuellinCore/Sessions/Storage/StoreFile.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>

#include "QuellinCore/Sessions/Storage/Query.h"
#include "QuellinCore/Sessions/Storage/StoreSchema.h"
#include "QuellinCore/Sessions/Storage/Transaction.h"
#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinCore/Support/SystemError.h"

namespace quellin {
namespace {

constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;

// SQLite gives its log files the mode of the store file, so that the mode is settled by making the file
// first.
void makeMissingFile(const std::filesystem::path& path) {
  const FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnly));
  if (file) return;
  if (const SystemError error = SystemError::last(); error.code != EEXIST) {
    throw StoreError(StoreError::Kind::cannotOpen, path, "the file cannot be made: " + error.description());
  }
  std::error_code ignored;
  const auto status = std::filesystem::status(path, ignored);
  if (std::filesystem::is_regular_file(status)) return;
  throw StoreError(StoreError::Kind::notAStore, path,
                   std::filesystem::is_directory(status) ? "this is a folder" : "this is no ordinary file");
}

std::filesystem::path besideFile(const std::filesystem::path& path, const char* suffix) {
  return std::filesystem::path(path).concat(suffix);
}

// A rollback journal means that a store is being made right now, or was when the power went: SQLite waits for
// the maker, or takes the half-made pages back, when it opens the file.
bool isBeingMade(const std::filesystem::path& path) {
  std::error_code ignored;
  return std::filesystem::exists(besideFile(path, "-journal"), ignored);
}

void requireKnownFile(const std::filesystem::path& path, const StoreFileOptions& options) {
  const auto peek = [&] {
    Database file(path, Database::Access::peek, options);
    requireKnown(file, storeIdentity(file));
  };
  try {
    peek();
  } catch (const StoreError& error) {
    // While the log moves into the file, and when the process that moves it is killed, the size in the header
    // is ahead of the file. The log has the rest, and opening the file tells whether it does.
    if (error.kind() == StoreError::Kind::damaged) return;
    // The maker may have finished between the look at the file and the look for its journal.
    if (!isBeingMade(path)) peek();
  }
}

void closeToOthers(const std::filesystem::path& path) {
  using std::filesystem::perms;
  for (const char* suffix : {"", "-wal", "-shm"}) {
    std::error_code
        ignored;  // a store that others may read still works; one of somebody else's cannot be changed
    std::filesystem::permissions(besideFile(path, suffix), perms::group_all | perms::others_all,
                                 std::filesystem::perm_options::remove, ignored);
  }
}

std::string switchedJournal(Database& database) {
  Query query(database, "PRAGMA journal_mode = WAL");
  query.step();
  return std::string(query.bytes(0));
}

// While others open the same file, the switch answers "locked" without waiting; a transaction waits its turn.
void useWriteAheadLog(Database& database) {
  constexpr int attempts = 50;
  for (int attempt = 1;; ++attempt) {
    try {
      if (switchedJournal(database) == "wal") return;
      throw database.error(StoreError::Kind::cannotOpen, "the file system cannot hold a log");
    } catch (const StoreError& error) {
      if (error.kind() != StoreError::Kind::locked || attempt == attempts) throw;
      Transaction(database).rollback();
    }
  }
}

}  // namespace

std::unique_ptr<Database> openStoreFile(const std::filesystem::path& path, const StoreFileOptions& options) {
  makeMissingFile(path);
  requireKnownFile(path, options);
  auto database = std::make_unique<Database>(path, Database::Access::readWrite, options);
  database->setCheckpointOnClose(false);
  migrate(*database);
  useWriteAheadLog(*database);
  // Syncing at checkpoints only: a killed process loses nothing, a power cut the samples since the last
  // write-back.
  database->execute(
      "PRAGMA synchronous = NORMAL; PRAGMA fullfsync = ON; PRAGMA checkpoint_fullfsync = ON;"
      "PRAGMA wal_autocheckpoint = 256; PRAGMA journal_size_limit = 4194304;"
      "PRAGMA cell_size_check = ON; PRAGMA temp_store = MEMORY");
  database->setCheckpointOnClose(true);
  closeToOthers(path);
  return database;
}

std::unique_ptr<Database> openStoreInMemory() {
  auto database = std::make_unique<Database>();
  database->execute("PRAGMA temp_store = MEMORY");
  migrate(*database);
  return database;
}

}  // namespace quellin
