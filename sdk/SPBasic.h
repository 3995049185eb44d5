/// The suite through which a host hands out all its other suites.
#pragma once

#include <stddef.h>
#include <stdint.h>

typedef int32_t SPErr;  ///< 0 is success
typedef int32_t SPBoolean;

typedef struct SPBasicSuite {
  SPErr (*AcquireSuite)(const char* name, int32_t version, const void** suite);
  SPErr (*ReleaseSuite)(const char* name, int32_t version);
  SPBoolean (*IsEqual)(const char* token1, const char* token2);
  SPErr (*AllocateBlock)(size_t size, void** block);
  SPErr (*FreeBlock)(void* block);
  SPErr (*ReallocateBlock)(void* block, size_t newSize, void** newblock);
  SPErr (*Undefined)(void);
} SPBasicSuite;
