/// Basic types of the published effect interface. Every width is fixed, on every platform.
#pragma once

#include <stdint.h>

typedef char A_char;
typedef uint8_t A_u_char;
typedef int16_t A_short;
typedef uint16_t A_u_short;
typedef int32_t A_long;
typedef uint32_t A_u_long;
typedef double A_FpLong;
typedef A_u_char A_Boolean;
typedef A_long A_Err;
typedef uint64_t A_HandleSize;
