#include "outlines/line_thickening.h"

#include "outlines/line_ring.h"

namespace quentara {
namespace {

using Sample = unsigned char;

void GrowRow(const LineTemplate& t, const Sample* row, Sample* __restrict grown, int count) {
  const Sample *const a = row + t.set[0], *const b = row + t.set[1], *const c = row + t.set[2];
  const Sample *const d = row + t.clear[0], *const e = row + t.clear[1], *const f = row + t.clear[2];
  for (int x = 0; x < count; ++x) {
    const int fits = a[x] & b[x] & c[x] & ~(d[x] | e[x] | f[x]);
    grown[x] = static_cast<Sample>(row[x] | fits);
  }
}

void FillRow(const Ring& ring, const Sample* row, Sample* __restrict filled, int count) {
  for (int x = 0; x < count; ++x) {
    int n[8];
    for (int i = 0; i < 8; ++i) n[i] = row[x + ring[static_cast<std::size_t>(i)]];
    // Pairs and fours of the ring; a four and a pair next to it are the six that remain beside a pair.
    const int n01 = n[0] & n[1], n12 = n[1] & n[2], n23 = n[2] & n[3], n34 = n[3] & n[4], n45 = n[4] & n[5],
              n56 = n[5] & n[6], n67 = n[6] & n[7], n70 = n[7] & n[0];
    const int n0123 = n01 & n23, n1234 = n12 & n34, n4567 = n45 & n67, n5670 = n56 & n70;
    const int fits = (n0123 & (n45 | n67)) | (n4567 & (n01 | n23)) | (n1234 & (n56 | n70)) | (n5670 & (n12 | n34));
    filled[x] = static_cast<Sample>(row[x] | fits);
  }
}

}  // namespace

BytePlane ThickenLines(int rounds, const BytePlane& lines) {
  const int height = lines.rows(), width = lines.cols();
  BytePlane result(lines.copy());
  if (height < 3 || width < 3) return result;
  BytePlane next(lines.copy());
  const auto pass = [&](const auto& filterRow) {
    for (int y = 1; y < height - 1; ++y) filterRow(Row(result, y) + 1, Row(next, y) + 1, width - 2);
    blitz::cycleArrays(result, next);
  };
  for (int round = 0; round < rounds; ++round) {
    for (const LineTemplate& t : LineTemplates(width))
      pass([&](const Sample* row, Sample* grown, int count) { GrowRow(t, row, grown, count); });
    pass([&](const Sample* row, Sample* filled, int count) { FillRow(RingOffsets(width), row, filled, count); });
  }
  return result;
}

}  // namespace quentara
