// The package's configuration, but for the functions of IEEE mathematics: mingw-w64 has no Bessel functions in strict
// C++, and nothing here uses any of them.
#pragma once
#include_next <blitz/gnu/bzconfig.h>
#undef BZ_HAVE_IEEE_MATH
