#include "Support/FaultyFileSystem.h"

#include <cstdint>

#include <sqlite3.h>

namespace quellin::testing_support {

using Fault = FaultyFileSystem::Fault;

struct FaultyFileSystem::State {
  std::string name;
  sqlite3_vfs* real = sqlite3_vfs_find(nullptr);
  sqlite3_vfs vfs{};
  Fault fault = Fault::none;
  long left = 0;
  bool hasFailed = false;

  // Counts an operation that `kind` is about; true when it must fail.
  bool fails(Fault kind) {
    if (fault != kind) return false;
    if (left > 0) {
      --left;
      return false;
    }
    hasFailed = true;
    return true;
  }
};

namespace {

using State = FaultyFileSystem::State;

// Our own part of an open file; the ordinary file follows it in memory.
struct File {
  sqlite3_file base;
  State* state;
};

State& stateOf(sqlite3_file* file) { return *reinterpret_cast<File*>(file)->state; }
sqlite3_file* realOf(sqlite3_file* file) {
  return reinterpret_cast<sqlite3_file*>(reinterpret_cast<File*>(file) + 1);
}
const sqlite3_io_methods& methodsOf(sqlite3_file* file) { return *realOf(file)->pMethods; }
State& stateOf(sqlite3_vfs* vfs) { return *static_cast<State*>(vfs->pAppData); }

int close(sqlite3_file* file) { return methodsOf(file).xClose(realOf(file)); }

int read(sqlite3_file* file, void* data, int count, sqlite3_int64 offset) {
  if (stateOf(file).fails(Fault::readError)) return SQLITE_IOERR_READ;
  return methodsOf(file).xRead(realOf(file), data, count, offset);
}

int write(sqlite3_file* file, const void* data, int count, sqlite3_int64 offset) {
  if (stateOf(file).fails(Fault::diskFull)) return SQLITE_FULL;
  if (stateOf(file).fails(Fault::writeError)) return SQLITE_IOERR_WRITE;
  return methodsOf(file).xWrite(realOf(file), data, count, offset);
}

int truncate(sqlite3_file* file, sqlite3_int64 size) { return methodsOf(file).xTruncate(realOf(file), size); }

int sync(sqlite3_file* file, int flags) {
  if (stateOf(file).fails(Fault::syncError)) return SQLITE_IOERR_FSYNC;
  return methodsOf(file).xSync(realOf(file), flags);
}

int fileSize(sqlite3_file* file, sqlite3_int64* size) {
  return methodsOf(file).xFileSize(realOf(file), size);
}
int lock(sqlite3_file* file, int level) { return methodsOf(file).xLock(realOf(file), level); }
int unlock(sqlite3_file* file, int level) { return methodsOf(file).xUnlock(realOf(file), level); }
int checkReservedLock(sqlite3_file* file, int* result) {
  return methodsOf(file).xCheckReservedLock(realOf(file), result);
}
int fileControl(sqlite3_file* file, int operation, void* argument) {
  return methodsOf(file).xFileControl(realOf(file), operation, argument);
}
int sectorSize(sqlite3_file* file) { return methodsOf(file).xSectorSize(realOf(file)); }
int deviceCharacteristics(sqlite3_file* file) { return methodsOf(file).xDeviceCharacteristics(realOf(file)); }
int shmMap(sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
  return methodsOf(file).xShmMap(realOf(file), page, size, extend, memory);
}
int shmLock(sqlite3_file* file, int offset, int count, int flags) {
  return methodsOf(file).xShmLock(realOf(file), offset, count, flags);
}
void shmBarrier(sqlite3_file* file) { methodsOf(file).xShmBarrier(realOf(file)); }
int shmUnmap(sqlite3_file* file, int remove) { return methodsOf(file).xShmUnmap(realOf(file), remove); }

// Version 2: without memory-mapped pages, which would pass us by.
constexpr sqlite3_io_methods methods{.iVersion = 2,
                                     .xClose = close,
                                     .xRead = read,
                                     .xWrite = write,
                                     .xTruncate = truncate,
                                     .xSync = sync,
                                     .xFileSize = fileSize,
                                     .xLock = lock,
                                     .xUnlock = unlock,
                                     .xCheckReservedLock = checkReservedLock,
                                     .xFileControl = fileControl,
                                     .xSectorSize = sectorSize,
                                     .xDeviceCharacteristics = deviceCharacteristics,
                                     .xShmMap = shmMap,
                                     .xShmLock = shmLock,
                                     .xShmBarrier = shmBarrier,
                                     .xShmUnmap = shmUnmap,
                                     .xFetch = nullptr,
                                     .xUnfetch = nullptr};

int open(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  State& state = stateOf(vfs);
  if ((flags & SQLITE_OPEN_READWRITE) != 0 && state.fails(Fault::readOnly)) {
    flags = (flags & ~(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE)) | SQLITE_OPEN_READONLY;
  }
  reinterpret_cast<File*>(file)->state = &state;
  sqlite3_file* real = realOf(file);
  const int code = state.real->xOpen(state.real, name, real, flags, outFlags);
  file->pMethods = real->pMethods == nullptr ? nullptr : &methods;
  return code;
}

}  // namespace

FaultyFileSystem::FaultyFileSystem() : state_(std::make_unique<State>()) {
  State& state = *state_;
  state.name = "faulty-" + std::to_string(reinterpret_cast<std::uintptr_t>(state_.get()));
  // Everything that does not touch an open file is the ordinary one's own.
  state.vfs = *state.real;
  state.vfs.pNext = nullptr;
  state.vfs.zName = state.name.c_str();
  state.vfs.pAppData = state_.get();
  state.vfs.szOsFile = static_cast<int>(sizeof(File)) + state.real->szOsFile;
  state.vfs.xOpen = open;
  sqlite3_vfs_register(&state.vfs, 0);
}

FaultyFileSystem::~FaultyFileSystem() { sqlite3_vfs_unregister(&state_->vfs); }

const std::string& FaultyFileSystem::name() const { return state_->name; }

void FaultyFileSystem::fail(Fault fault, long after) {
  state_->fault = fault;
  state_->left = after;
  state_->hasFailed = false;
}

bool FaultyFileSystem::hasFailed() const { return state_->hasFailed; }

}  // namespace quellin::testing_support
