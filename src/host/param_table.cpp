#include "host/param_table.h"

namespace Nivra {
namespace {

constexpr char kQualities[] = "Fast|High";
constexpr int kHigh = 2;
constexpr ParamRange kPercents = {0, 100};

struct BlurIds {
  A_long start, type, radius, thresh, quality, blurring, testRadius, blurRadius, end;
};

class TableBuilder {
 public:
  constexpr void GroupStart(A_long id, const char* name) { Add({ParamKind::GroupStart, id, name, 0, {}, {}, ""}); }
  constexpr void GroupEnd(A_long id) { Add({ParamKind::GroupEnd, id, "", 0, {}, {}, ""}); }
  constexpr void Popup(A_long id, const char* name, int choice, const char* choices) {
    Add({ParamKind::Popup, id, name, double(choice), {}, {}, choices});
  }
  constexpr void Quality(A_long id, const char* name) { Popup(id, name, kHigh, kQualities); }
  constexpr void Slider(A_long id, const char* name, int value, ParamRange range) {
    Slider(id, name, value, range, range);
  }
  constexpr void Slider(A_long id, const char* name, int value, ParamRange shown, ParamRange valid) {
    Add({ParamKind::Slider, id, name, double(value), shown, valid, ""});
  }
  constexpr void Fixed(A_long id, const char* name, double value, ParamRange range) {
    Add({ParamKind::Fixed, id, name, value, range, range, ""});
  }
  constexpr void Percent(A_long id, const char* name, int value) {
    Add({ParamKind::Percent, id, name, double(value), kPercents, kPercents, ""});
  }
  constexpr void CheckBox(A_long id, const char* name, bool on) {
    Add({ParamKind::CheckBox, id, name, on ? 1.0 : 0.0, {}, {}, ""});
  }
  constexpr void Color(A_long id, const char* name, double grey) {
    Add({ParamKind::Color, id, name, grey, {}, {}, ""});
  }

  constexpr void BlurGroup(const char* name, const BlurIds& ids) {
    GroupStart(ids.start, name);
    Popup(ids.type, "Type", 2, "Gaussian|Box|Supersmart|None");
    Slider(ids.radius, "Radius", 3, {0, 30});
    Slider(ids.thresh, "Thresh", 15, {1, 35});
    Quality(ids.quality, "Quality");
    Percent(ids.blurring, "Blurring", 25);
    Slider(ids.testRadius, "Test Radius", 5, {0, 30}, {0, 100});
    Slider(ids.blurRadius, "Blur Radius", 10, {0, 30}, {0, 100});
    GroupEnd(ids.end);
  }

  constexpr const ParamTable& Finish() const { return rows_; }
  constexpr std::size_t Count() const { return count_; }

 private:
  constexpr void Add(const ParamRow& row) { rows_[count_++] = row; }

  ParamTable rows_{};
  std::size_t count_ = 0;
};

constexpr void AddBlurAndColor(TableBuilder& table) {
  table.Popup(6, "Roto", 1, "Flat Shaded|Flat Detailed|No Roto|Airbrush|Bristle|Crackle|Droplet|Gouache|Poster Paint");
  table.BlurGroup("Main Blur", {52, 1, 2, 3, 4, 54, 55, 56, 57});
  table.CheckBox(16, "Use Main Blur", true);
  table.BlurGroup("Outline Blur", {58, 18, 19, 20, 21, 60, 61, 62, 63});

  table.GroupStart(64, "Color Effects");
  table.Color(17, "Outline Color", 0);
  table.Popup(65, "Lighter Type", 2, "Lighter1|Lighter2");
  table.Percent(5, "Lighter", 0);
  table.GroupEnd(66);
}

constexpr void AddStyles(TableBuilder& table) {
  table.GroupStart(67, "Flat Shaded");
  table.Slider(7, "Flatness", 10, {0, 50}, {0, 100});
  table.Slider(8, "Simplicity", 20, {0, 25});
  table.Fixed(43, "Strength", 1, {0, 5});
  table.Quality(9, "Quality");
  table.GroupEnd(68);

  table.GroupStart(69, "Flat Detailed");
  table.Percent(10, "Strength", 100);
  table.Percent(11, "Level", 50);
  table.CheckBox(12, "Temporal Fix", true);
  table.GroupEnd(70);

  table.GroupStart(71, "Airbrush");
  table.Slider(72, "Spread", 8, {1, 50}, {1, 100});
  table.Percent(73, "Light Mix", 40);
  table.Fixed(74, "Strength", 1.5, {0, 5});
  table.GroupEnd(75);

  table.GroupStart(76, "Bristle");
  table.Fixed(77, "Presharpen", 5, {0, 10});
  table.Slider(78, "Spread", 3, {1, 25});
  table.Fixed(79, "Postsharpen", 0.5, {0, 4});
  table.Quality(80, "Quality");
  table.GroupEnd(81);

  table.GroupStart(82, "Crackle");
  table.Slider(83, "Flatness", 10, {0, 30}, {0, 100});
  table.Slider(84, "Simplicity", 10, {0, 25});
  table.Slider(85, "Separation", 5, {1, 30});
  table.Fixed(86, "Strength", 1, {0, 5});
  table.GroupEnd(87);

  table.GroupStart(88, "Droplet");
  table.Slider(89, "Radius", 3, {1, 30}, {1, 100});
  table.Fixed(90, "Strength", 0.85, {0, 5});
  table.GroupEnd(91);

  table.GroupStart(92, "Gouache");
  table.Slider(93, "Preblur", 8, {1, 50});
  table.Fixed(94, "Presharpen", 0.75, {0, 10});
  table.Slider(95, "Spread", 3, {1, 25});
  table.Fixed(96, "Postsharpen", 0.25, {0, 4});
  table.Quality(97, "Quality");
  table.GroupEnd(98);

  table.GroupStart(99, "Poster Paint");
  table.Slider(100, "Poster Paint1", 6, {2, 25});
  table.Slider(101, "Poster Paint2", 6, {2, 25});
  table.Percent(102, "Blend", 50);
  table.Percent(103, "Foreground", 85);
  table.Slider(104, "Radius", 10, {1, 50}, {1, 100});
  table.Percent(105, "Contrast", 50);
  table.GroupEnd(106);
}

constexpr void AddOutlines(TableBuilder& table) {
  table.GroupStart(107, "Soft Outlines");
  table.CheckBox(22, "Soft Outlines", false);
  table.Percent(23, "Strength", 0);
  table.Slider(24, "Thickness", 2, {1, 30});
  table.Percent(47, "Transparency", 0);
  table.Quality(25, "Outline Quality");
  table.GroupEnd(108);

  table.GroupStart(109, "Comic Outlines");
  table.CheckBox(26, "Comic Outlines", true);
  table.Percent(27, "Sensitivity", 60);
  table.Percent(28, "Strength", 60);
  table.Slider(29, "Thickness", 2, {1, 30});
  table.Percent(30, "Antialias", 100);
  table.Percent(48, "Transparency", 0);
  table.Quality(31, "Outline Quality");
  table.GroupEnd(110);

  table.GroupStart(111, "Marker Outlines");
  table.CheckBox(112, "Marker Outlines", false);
  table.CheckBox(113, "Reuse Crackle", true);
  table.Slider(114, "Flatness", 5, {0, 30}, {0, 100});
  table.Slider(115, "Simplicity", 5, {0, 25});
  table.Slider(116, "Separation", 8, {1, 30});
  table.Slider(117, "Thickness", 3, {1, 20});
  table.Slider(118, "Minimum Difference", 10, {1, 20});
  table.Percent(119, "Antialias", 100);
  table.Percent(120, "Transparency", 0);
  table.GroupEnd(121);

  table.GroupStart(122, "Shadow Outlines");
  table.CheckBox(32, "Shadow Outlines", false);
  table.Percent(33, "Threshold", 50);
  table.Percent(34, "Antialias", 100);
  table.CheckBox(35, "Tint Foreground", false);
  table.Percent(49, "Transparency", 0);
  table.GroupEnd(123);

  table.GroupStart(124, "Woodcut Outlines");
  table.CheckBox(125, "Woodcut Outlines", false);
  table.Percent(126, "Threshold", 50);
  table.Percent(127, "Sensitivity", 50);
  table.Percent(128, "Strength", 50);
  table.Slider(129, "Thickness", 3, {1, 30});
  table.Percent(130, "Antialias", 100);
  table.CheckBox(131, "Tint Foreground", false);
  table.Percent(132, "Transparency", 0);
  table.Quality(133, "Outline Quality");
  table.GroupEnd(134);

  table.GroupStart(135, "Scratchboard Outlines");
  table.CheckBox(136, "Scratchboard Outlines", false);
  table.Percent(137, "Threshold", 50);
  table.Popup(138, "Style", 1, "Rough|Smooth");
  table.Fixed(139, "Detail", 4.75, {0, 5});
  table.Slider(140, "Focus", 3, {1, 30});
  table.Percent(141, "Antialias", 50);
  table.CheckBox(142, "Tint Foreground", false);
  table.Percent(143, "Transparency", 0);
  table.GroupEnd(144);

  table.GroupStart(145, "Conte Outlines");
  table.CheckBox(146, "Conte Outlines", false);
  table.Color(147, "Light Color", 1);
  table.Percent(148, "Light Strength", 50);
  table.Slider(149, "Light Thickness", 2, {1, 30});
  table.Percent(150, "Dark Strength", 50);
  table.Slider(151, "Dark Thickness", 3, {1, 30});
  table.Percent(152, "Transparency", 0);
  table.Quality(153, "Outline Quality");
  table.GroupEnd(154);
}

constexpr void AddPrintFinish(TableBuilder& table) {
  table.GroupStart(155, "Halftone Pattern");
  table.CheckBox(13, "Halftone Pattern", false);
  table.Slider(14, "Dot Size", 3, {1, 30});
  table.Fixed(44, "Red Angle", 15, {0, 90});
  table.Fixed(45, "Green Angle", 75, {0, 90});
  table.Fixed(46, "Blue Angle", 0, {0, 90});
  table.Percent(156, "Transparency", 0);
  table.Quality(15, "Dot Quality");
  table.GroupEnd(157);

  table.GroupStart(158, "Stipple Pattern");
  table.CheckBox(36, "Stipple Pattern", false);
  table.Percent(37, "Density", 50);
  table.Percent(38, "Thresh", 50);
  table.Slider(50, "Dot Size", 1, {1, 30});
  table.Percent(51, "Transparency", 0);
  table.GroupEnd(159);

  table.GroupStart(160, "Duotone Shading");
  table.CheckBox(161, "Duotone Shading", false);
  table.Color(162, "Lightest Color", 1);
  table.Color(163, "Darkest Color", 0);
  table.GroupEnd(164);

  table.Percent(39, "Blend With Original", 0);
}

constexpr TableBuilder Build() {
  TableBuilder table;
  AddBlurAndColor(table);
  AddStyles(table);
  AddOutlines(table);
  AddPrintFinish(table);
  return table;
}

static_assert(Build().Count() == ParamTable().size(), "the table is not full");

}  // namespace

constexpr ParamTable kParamTable = Build().Finish();

}  // namespace Nivra
