/// What stages and filters are put to: frames down to one pixel, any number of workers, every instruction set.
#pragma once

#include <gtest/gtest.h>

#include <array>

#include "imageops/window_kernels_dispatch.h"
#include "render/standalone_host.h"
#include "support/planes.h"

namespace quentara {

/// Calls check(picture, radius) for frames down to a single pixel and windows larger than the frame.
template <class Check>
void ForPictures(const Check& check) {
  std::mt19937 rng(1);
  for (const auto& [height, width, radius] :
       {std::array{1, 1, 1}, {1, 23, 2}, {23, 1, 3}, {2, 2, 1}, {60, 14, 1}, {60, 14, 3}, {30, 14, 9}}) {
    SCOPED_TRACE(testing::Message() << height << "x" << width << " radius " << radius);
    check(RandomPicture(height, width, rng), radius);
  }
}

/// Calls check(workers) in hosts of one worker and of several.
template <class Check>
void ForWorkers(const Check& check) {
  for (const int workers : {1, 2, 3, 7}) {
    SCOPED_TRACE(testing::Message() << "workers " << workers);
    StandaloneHost host(workers);
    const Plugin::HostScope scope(host);
    check(workers);
  }
}

/// Calls check() for every instruction set that this processor runs.
template <class Check>
void ForInstructionSets(const Check& check) {
  for (const WindowKernels* kernels : RunnableKernels()) {
    SCOPED_TRACE(kernels->name);
    const KernelScope scope(*kernels);
    check();
  }
}

/// Expects render(), a plane or a picture, to be `expected` whatever the worker count.
template <class Result, class Render>
void ExpectWithAnyWorkers(const Result& expected, const Render& render) {
  ForWorkers([&](int) { EXPECT_EQ("", FirstDifference(expected, render())); });
}

}  // namespace quentara
