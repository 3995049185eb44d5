/// Working memory of an operation, from the current host.
#pragma once

#include <algorithm>
#include <cstddef>
#include <type_traits>

#include "render/plugin_host.h"

namespace quentara {

/// `count` zeros of a plain type, aligned to 64 bytes, given back at the end of the scope. @throws std::bad_alloc
template <class T>
class Scratch {
 public:
  explicit Scratch(std::size_t count) : data_(static_cast<T*>(Plugin::AllocateSamples(count * sizeof(T)))) {
    static_assert(std::is_arithmetic_v<T>);
    std::fill_n(data_, count, T{});
  }
  ~Scratch() { Plugin::FreeSamples(data_); }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  T* data() { return data_; }
  T& operator[](std::ptrdiff_t i) { return data_[i]; }

 private:
  T* const data_;
};

}  // namespace quentara
