#include "host/frame_handover.h"

#include <algorithm>
#include <cstddef>

namespace Nivra {
namespace {

A_u_char ToByte(A_u_char sample) {
  return sample;
}
A_u_char ToByte(A_u_short sample) {
  return static_cast<A_u_char>(sample * 255 >> 15);
}

void FromByte(A_u_char byte, A_u_char& sample) {
  sample = byte;
}
void FromByte(A_u_char byte, A_u_short& sample) {
  sample = static_cast<A_u_short>(byte * 32768 / 255);
}

template <class Sample>
void Blend(Sample original, float share, float rest, Sample& sample) {
  sample = static_cast<Sample>(original * share + sample * rest);
}

template <class Pixel>
Pixel* PixelRow(const PF_EffectWorld& world, int y) {
  char* const first = reinterpret_cast<char*>(world.data);
  return reinterpret_cast<Pixel*>(first + static_cast<std::ptrdiff_t>(y) * world.rowbytes);
}

// Calls body with a pixel of the type that `world` holds.
template <class Body>
void WithPixelType(const PF_EffectWorld& world, const Body& body) {
  if ((world.world_flags & PF_WorldFlag_DEEP) != 0)
    body(PF_Pixel16());
  else
    body(PF_Pixel());
}

// Calls body(pixel, i) for every pixel, i being its place in packed planes.
template <class Pixel, class Body>
void ForPixels(const PF_EffectWorld& world, const Body& body) {
  std::size_t i = 0;
  for (int y = 0; y < world.height; ++y) {
    Pixel* const row = PixelRow<Pixel>(world, y);
    for (int x = 0; x < world.width; ++x) body(row[x], i++);
  }
}

// Calls body(input pixel, output pixel) for the pixels that both worlds have.
template <class Body>
void ForCommonPixels(const PF_EffectWorld& input, PF_EffectWorld& output, const Body& body) {
  const int height = std::min(input.height, output.height), width = std::min(input.width, output.width);
  WithPixelType(output, [&](auto type) {
    using Pixel = decltype(type);
    for (int y = 0; y < height; ++y) {
      const Pixel* const from = PixelRow<Pixel>(input, y);
      Pixel* const to = PixelRow<Pixel>(output, y);
      for (int x = 0; x < width; ++x) body(from[x], to[x]);
    }
  });
}

}  // namespace

void ReadColors(const PF_EffectWorld& world, const quentara::FrameBuffers& frame) {
  WithPixelType(world, [&](auto type) {
    using Pixel = decltype(type);
    ForPixels<Pixel>(world, [&](const Pixel& pixel, std::size_t i) {
      frame.red[i] = ToByte(pixel.red);
      frame.green[i] = ToByte(pixel.green);
      frame.blue[i] = ToByte(pixel.blue);
    });
  });
}

void WriteColors(const quentara::FrameBuffers& frame, PF_EffectWorld& world) {
  if (static_cast<A_long>(frame.width) != world.width || static_cast<A_long>(frame.height) != world.height) return;
  WithPixelType(world, [&](auto type) {
    using Pixel = decltype(type);
    ForPixels<Pixel>(world, [&](Pixel& pixel, std::size_t i) {
      FromByte(frame.red[i], pixel.red);
      FromByte(frame.green[i], pixel.green);
      FromByte(frame.blue[i], pixel.blue);
    });
  });
}

void CopyAlpha(const PF_EffectWorld& input, PF_EffectWorld& output) {
  ForCommonPixels(input, output, [](const auto& from, auto& to) { to.alpha = from.alpha; });
}

void BlendWithOriginal(const PF_EffectWorld& input, float share, PF_EffectWorld& output) {
  const float rest = 1.0f - share;
  ForCommonPixels(input, output, [=](const auto& from, auto& to) {
    Blend(from.alpha, share, rest, to.alpha);
    Blend(from.red, share, rest, to.red);
    Blend(from.green, share, rest, to.green);
    Blend(from.blue, share, rest, to.blue);
  });
}

}  // namespace Nivra
