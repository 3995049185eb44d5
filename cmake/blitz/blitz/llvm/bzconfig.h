// Clang is told to look here for a configuration of its own, which Debian's package lacks; GCC's holds for it, too.
#pragma once
#include <blitz/gnu/bzconfig.h>
