#include "host/handles.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

namespace quentara::cli {
namespace {

/// What a handle points to: its first word is the address that an effect may read through the handle.
struct Block {
  void* data;
  A_HandleSize size;
  std::atomic<int> locks;
};

Block* BlockOf(PF_Handle handle) {
  return reinterpret_cast<Block*>(handle);
}

constexpr A_HandleSize kAlignment = 16;

void* NewData(A_HandleSize size) {
  if (size > SIZE_MAX - 2 * kAlignment) return nullptr;
  const A_HandleSize whole = std::max<A_HandleSize>(size, 1) + kAlignment - 1;
  return std::aligned_alloc(kAlignment, whole / kAlignment * kAlignment);
}

}  // namespace

PF_Handle NewHandle(A_HandleSize size) {
  void* data = NewData(size);
  Block* block = data ? new (std::nothrow) Block{data, size, {0}} : nullptr;
  if (!block) std::free(data);
  return reinterpret_cast<PF_Handle>(block);
}

void* LockHandle(PF_Handle handle) {
  if (!handle) return nullptr;
  ++BlockOf(handle)->locks;
  return BlockOf(handle)->data;
}

void UnlockHandle(PF_Handle handle) {
  if (handle) --BlockOf(handle)->locks;
}

void DisposeHandle(PF_Handle handle) {
  if (!handle) return;
  std::free(BlockOf(handle)->data);
  delete BlockOf(handle);
}

A_HandleSize HandleSize(PF_Handle handle) {
  return handle ? BlockOf(handle)->size : 0;
}

PF_Err ResizeHandle(A_HandleSize size, PF_Handle* handle) {
  if (!handle || !*handle || BlockOf(*handle)->locks > 0) return PF_Err_BAD_CALLBACK_PARAM;
  Block* block = BlockOf(*handle);
  void* data = NewData(size);
  if (!data) return PF_Err_OUT_OF_MEMORY;
  std::memcpy(data, block->data, std::min(size, block->size));
  std::free(block->data);
  block->data = data;
  block->size = size;
  return PF_Err_NONE;
}

}  // namespace quentara::cli
