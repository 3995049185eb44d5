/// The host's memory handles, as the utility callbacks hand them out.
#pragma once

#include "AE_Effect.h"

namespace quentara::cli {

/// A block of `size` bytes, aligned to 16; null when there is no memory.
PF_Handle NewHandle(A_HandleSize size);
/// The block's address, which holds until it is resized or disposed of; null for a null handle.
void* LockHandle(PF_Handle handle);
void UnlockHandle(PF_Handle handle);
/// Gives the block back; nothing for a null handle.
void DisposeHandle(PF_Handle handle);
A_HandleSize HandleSize(PF_Handle handle);
/// Keeps the content up to the smaller size. A locked block is not resized.
PF_Err ResizeHandle(A_HandleSize size, PF_Handle* handle);

}  // namespace quentara::cli
