/// Planes to measure on, the same on every machine and in every run.
#pragma once

#include "render/channel_set.h"
#include "render/plane.h"

namespace quentara {

/// Like a photograph: smooth shapes with sharp outlines, fine texture and the noise of a sensor (sigma about 2.5).
BytePlane NaturalPlane(int height, int width);
/// The same with heavy noise (sigma about 25).
BytePlane NoisyPlane(int height, int width);
/// One value everywhere.
BytePlane FlatPlane(int height, int width);

/// Three natural channels that go together, as in a photograph, without being equal.
ChannelSet NaturalPicture(int height, int width);

}  // namespace quentara
