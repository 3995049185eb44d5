/// The processor's arithmetic as it is by default, whatever the host has set.
#pragma once

#include <xmmintrin.h>

namespace quentara::platform {

/// For its life, the calling thread rounds to nearest, keeps denormal numbers, raises no floating-point exception and
/// computes x87 operations, on which some C libraries build theirs, in 64 bits. Afterwards all is as it was.
class DefaultArithmetic {
 public:
  DefaultArithmetic() : vectors_(_mm_getcsr()) {
    const unsigned short standard = 0x037F;
    asm volatile("fnstcw %0" : "=m"(x87_));
    asm volatile("fldcw %0" : : "m"(standard) : "memory");
    _mm_setcsr(0x1F80);
  }
  ~DefaultArithmetic() {
    asm volatile("fnclex\n\tfldcw %0" : : "m"(x87_) : "memory");
    _mm_setcsr(vectors_);
  }
  DefaultArithmetic(const DefaultArithmetic&) = delete;
  DefaultArithmetic& operator=(const DefaultArithmetic&) = delete;

 private:
  unsigned vectors_;
  unsigned short x87_;
};

}  // namespace quentara::platform
