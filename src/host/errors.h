/// Exceptions of the host layer. Only the command dispatcher turns them into the host's error codes.
#pragma once

#include <exception>
#include <string>

namespace Nivra {

/// The host stopped the command; its code is the pending error of the `Host::AE::Host`. It has no base, so that no
/// handler of ordinary errors takes it for one.
class Interrupted {};

/// Anything else gone wrong.
class Exception : public std::exception {
 public:
  Exception(const std::string& place, const std::string& text) : text_(place + ": " + text) {}
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::string text_;
};

}  // namespace Nivra
