/// An input whose frames come reduced.
#pragma once

#include <memory>

#include "host/effect.h"
#include "media/input.h"

namespace quentara::cli {

/// `input` at the fraction of its size, rounded up, for renders that are to be quick; otherwise alike.
std::unique_ptr<media::Input> ReduceInput(std::unique_ptr<media::Input> input, const Downsampling& downsampling);

}  // namespace quentara::cli
