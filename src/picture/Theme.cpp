#include "picture/Theme.h"

#include "document/Drawing.h"
#include "package/Package.h"

#include <pugixml.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <string_view>

namespace vardo::picture {
namespace {

constexpr double kEmu = 914'400;          // of an inch
constexpr double kThousandths = 100'000;  // of a whole, in per cent
constexpr double kMinutes = 60'000;       // of a degree

std::string_view LocalName(pugi::xml_node node) {
  const std::string_view name = node.name();
  const size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

// The child of that name, whatever its prefix.
pugi::xml_node Child(pugi::xml_node parent, std::string_view name) {
  for (const pugi::xml_node child : parent.children())
    if (LocalName(child) == name) return child;
  return {};
}

// The first element of that name below, however deep.
pugi::xml_node Below(pugi::xml_node parent, std::string_view name) {
  return parent.find_node([&](pugi::xml_node node) { return LocalName(node) == name; });
}

template <class Visit>
void EachElement(pugi::xml_node parent, const Visit& visit) {
  for (const pugi::xml_node child : parent.children())
    if (child.type() == pugi::node_element) visit(child);
}

Rgba FromHex(std::string_view text) {
  std::uint32_t rgb = 0;
  std::from_chars(text.data(), text.data() + text.size(), rgb, 16);
  return {static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8), static_cast<std::uint8_t>(rgb)};
}

// The colour that stands within the element.
ThemeColour ReadColour(pugi::xml_node parent) {
  ThemeColour colour;
  EachElement(parent, [&](pugi::xml_node node) {
    const std::string_view kind = LocalName(node);
    if (kind == "srgbClr") colour.own = FromHex(node.attribute("val").value());
    if (kind == "sysClr") colour.own = FromHex(node.attribute("lastClr").value());
    if (kind == "schemeClr") colour.scheme = node.attribute("val").value();
    EachElement(node, [&](pugi::xml_node change) {
      colour.changes.emplace_back(LocalName(change), change.attribute("val").as_double() / kThousandths);
    });
  });
  return colour;
}

ThemeFill ReadGradient(pugi::xml_node node) {
  ThemeFill fill;
  const pugi::xml_node line = Child(node, "lin");
  fill.kind = Child(node, "path") ? ThemeFill::Kind::Radial : ThemeFill::Kind::Linear;
  fill.angle = -line.attribute("ang").as_double() / kMinutes * std::numbers::pi / 180;
  EachElement(Child(node, "gsLst"), [&](pugi::xml_node stop) {
    fill.stops.push_back({stop.attribute("pos").as_double() / kThousandths, ReadColour(stop)});
  });
  std::stable_sort(fill.stops.begin(), fill.stops.end(), [](const auto& a, const auto& b) { return a.at < b.at; });
  if (!fill.stops.empty()) fill.colour = fill.stops.front().colour;
  return fill;
}

ThemeFill ReadFill(pugi::xml_node node) {
  const std::string_view kind = LocalName(node);
  ThemeFill fill;
  if (kind == "gradFill") return ReadGradient(node);
  if (kind == "solidFill") {
    fill.kind = ThemeFill::Kind::Solid;
    fill.colour = ReadColour(node);
  } else if (kind == "pattFill") {
    fill.kind = ThemeFill::Kind::Solid;
    fill.colour = ReadColour(Child(node, "fgClr"));
  }
  return fill;
}

int PatternOf(std::string_view dash) {
  constexpr std::pair<std::string_view, int> kDashes[] = {
      {"dash", 2},         {"dot", 3},     {"dashDot", 4}, {"lgDash", 16},     {"lgDashDot", 4},
      {"lgDashDotDot", 5}, {"sysDash", 9}, {"sysDot", 10}, {"sysDashDot", 11}, {"sysDashDotDot", 12}};
  for (const auto& [name, pattern] : kDashes)
    if (name == dash) return pattern;
  return 1;
}

ThemeLine ReadLine(pugi::xml_node node) {
  ThemeLine line;
  line.weight = node.attribute("w").as_double(9525) / kEmu;
  const std::string_view cap = node.attribute("cap").value();
  line.cap = cap == "flat" ? Stroke::Cap::Flat : cap == "sq" ? Stroke::Cap::Square : Stroke::Cap::Round;
  EachElement(node, [&](pugi::xml_node child) {
    if (LocalName(child).ends_with("Fill")) line.fill = ReadFill(child);
  });
  line.pattern = line.fill.kind == ThemeFill::Kind::None ? 0 : PatternOf(Child(node, "prstDash").attribute("val").value());
  return line;
}

std::optional<ThemeShadow> ReadShadow(pugi::xml_node effect) {
  const pugi::xml_node node = Below(effect, "outerShdw");
  if (!node) return std::nullopt;
  return ThemeShadow{ReadColour(node), node.attribute("dist").as_double() / kEmu,
                     node.attribute("dir").as_double() / kMinutes * std::numbers::pi / 180};
}

ThemeFormats ReadFormats(pugi::xml_node scheme, pugi::xml_node lineStyles, pugi::xml_node fillStyles, pugi::xml_node fontStyles) {
  ThemeFormats formats;
  EachElement(Child(scheme, "fillStyleLst"), [&](pugi::xml_node node) { formats.fills.push_back(ReadFill(node)); });
  EachElement(Child(scheme, "lnStyleLst"), [&](pugi::xml_node node) { formats.lines.push_back(ReadLine(node)); });
  EachElement(Child(scheme, "effectStyleLst"), [&](pugi::xml_node node) { formats.shadows.push_back(ReadShadow(node)); });
  size_t at = 0;
  EachElement(fillStyles, [&](pugi::xml_node node) {
    if (at < formats.fills.size()) formats.fills[at++].pattern = node.attribute("pattern").as_int(1);
  });
  at = 0;
  EachElement(lineStyles, [&](pugi::xml_node node) {
    const pugi::xml_node more = Child(node, "lineEx");
    if (at >= formats.lines.size() || !more) return;
    ThemeLine& line = formats.lines[at++];
    if (line.pattern != 0) line.pattern = more.attribute("pattern").as_int(line.pattern);
    line.rounding = more.attribute("rndg").as_double() / kEmu;
    line.beginArrow = more.attribute("start").as_int();
    line.endArrow = more.attribute("end").as_int();
    line.beginSize = more.attribute("startSize").as_int(2);
    line.endSize = more.attribute("endSize").as_int(2);
  });
  EachElement(fontStyles, [&](pugi::xml_node node) { formats.fontColours.push_back(ReadColour(Child(node, "color"))); });
  return formats;
}

Theme ReadTheme(pugi::xml_node root) {
  Theme theme;
  const pugi::xml_node elements = Child(root, "themeElements"), colours = Child(elements, "clrScheme");
  theme.number = Below(colours, "schemeID").attribute("schemeEnum").as_int();
  EachElement(colours, [&](pugi::xml_node node) {
    if (LocalName(node) != "extLst") theme.colours.emplace_back(LocalName(node), ReadColour(node).own);
  });
  const pugi::xml_node background = Below(colours, "bkgnd");
  theme.colours.emplace_back("bkgnd", background ? theme.Resolve(ReadColour(background), {}) : theme.Colour("lt1"));
  EachElement(Below(colours, "variationClrSchemeLst"), [&](pugi::xml_node scheme) {
    auto& [isOfOneTone, variant] = theme.variantColours.emplace_back();
    isOfOneTone = scheme.attribute("monotone").as_bool();
    size_t at = 0;
    EachElement(scheme, [&](pugi::xml_node node) {
      if (at < variant.size()) variant[at++] = theme.Resolve(ReadColour(node), {});
    });
  });
  EachElement(Below(elements, "variationStyleSchemeLst"), [&](pugi::xml_node scheme) {
    auto& variant = theme.variants.emplace_back();
    size_t at = 0;
    EachElement(scheme, [&](pugi::xml_node node) {
      const auto entry = [&](const char* name) { return node.attribute(name).as_int(1); };
      if (at < variant.size()) variant[at++] = {entry("fillIdx"), entry("lineIdx"), entry("effectIdx"), entry("fontIdx")};
    });
  });
  theme.shapes = ReadFormats(Child(elements, "fmtScheme"), Below(elements, "fmtSchemeLineStyles"), Below(elements, "fillStyles"),
                             Below(elements, "fontStyles"));
  theme.connectors = ReadFormats(Below(elements, "fmtConnectorScheme"), Below(elements, "fmtConnectorSchemeLineStyles"), {},
                                 Below(elements, "connectorFontStyles"));
  const pugi::xml_node fonts = Child(elements, "fontScheme");
  theme.majorFont = Child(Child(fonts, "majorFont"), "latin").attribute("typeface").value();
  theme.minorFont = Child(Child(fonts, "minorFont"), "latin").attribute("typeface").value();
  return theme;
}

// --------------------------------------------------------------------------------------------------- changes of colours

double ToLinear(double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); }
double FromLinear(double c) { return c <= 0.0031308 ? c * 12.92 : 1.055 * std::pow(c, 1 / 2.4) - 0.055; }

struct Hsl {
  double h, s, l;
};

struct Mixed {
  double r, g, b, a;  // 0 to 1
};

Hsl ToHsl(const Mixed& c) {
  const double high = std::max({c.r, c.g, c.b}), low = std::min({c.r, c.g, c.b}), span = high - low;
  Hsl hsl{0, 0, (high + low) / 2};
  if (span == 0) return hsl;
  hsl.s = span / (1 - std::abs(2 * hsl.l - 1));
  if (high == c.r)
    hsl.h = (c.g - c.b) / span + (c.g < c.b ? 6 : 0);
  else
    hsl.h = high == c.g ? (c.b - c.r) / span + 2 : (c.r - c.g) / span + 4;
  return hsl;
}

void SetHsl(Mixed& c, Hsl hsl) {
  hsl.s = std::clamp(hsl.s, 0.0, 1.0);
  hsl.l = std::clamp(hsl.l, 0.0, 1.0);
  const double reach = hsl.s * std::min(hsl.l, 1 - hsl.l);
  const auto channel = [&](double shift) {
    const double k = std::fmod(shift + hsl.h * 2, 12.0);
    return hsl.l - reach * std::max(-1.0, std::min({k - 3, 9 - k, 1.0}));
  };
  c.r = channel(0);
  c.g = channel(8);
  c.b = channel(4);
}

void Change(Mixed& c, std::string_view change, double by) {
  const auto inLinearLight = [&](double add) {
    for (double* channel : {&c.r, &c.g, &c.b}) *channel = FromLinear(std::clamp(ToLinear(*channel) * by + add, 0.0, 1.0));
  };
  Hsl hsl = ToHsl(c);
  if (change == "shade") return inLinearLight(0);
  if (change == "tint") return inLinearLight(1 - by);
  if (change == "alpha") c.a = by;
  if (change == "satMod") hsl.s *= by;
  if (change == "satOff") hsl.s += by;
  if (change == "lumMod") hsl.l *= by;
  if (change == "lumOff") hsl.l += by;
  if (change.starts_with("sat") || change.starts_with("lum")) SetHsl(c, hsl);
}

std::uint8_t ToByte(double part) { return static_cast<std::uint8_t>(std::lround(std::clamp(part, 0.0, 1.0) * 255)); }

}  // namespace

Rgba Theme::Colour(const std::string& name) const {
  const auto found = std::find_if(colours.begin(), colours.end(), [&](const auto& colour) { return colour.first == name; });
  return found == colours.end() ? Rgba{} : found->second;
}

Rgba Theme::Resolve(const ThemeColour& colour, Rgba asked) const {
  constexpr std::pair<std::string_view, const char*> kOtherNames[] = {
      {"bg1", "lt1"}, {"bg2", "lt2"}, {"tx1", "dk1"}, {"tx2", "dk2"}};
  std::string scheme = colour.scheme;
  for (const auto& [name, meant] : kOtherNames)
    if (scheme == name) scheme = meant;
  const Rgba base = scheme.empty() ? colour.own : scheme == "phClr" ? asked : Colour(scheme);
  Mixed mixed{base.r / 255.0, base.g / 255.0, base.b / 255.0, base.a / 255.0};
  for (const auto& [change, by] : colour.changes) Change(mixed, change, by);
  return {ToByte(mixed.r), ToByte(mixed.g), ToByte(mixed.b), ToByte(mixed.a)};
}

std::vector<Theme> ReadThemes(Drawing& drawing) {
  std::vector<Theme> themes;
  Package& package = drawing.package();
  for (const Relationship& relationship : package.RelationshipsOf(package.MainPart()))
    if (!relationship.external && relationship.type.ends_with("/theme") && package.Has(relationship.target))
      themes.push_back(ReadTheme(package.Xml(relationship.target).root()));
  return themes;
}

double Luminance(Rgba colour) { return ToHsl({colour.r / 255.0, colour.g / 255.0, colour.b / 255.0, 1}).l; }

}  // namespace vardo::picture
