#include "stencil/StyleSheets.h"

namespace vardo {
namespace {

// The values that the host takes where nothing else is said, in the order in which it writes them. Every sheet inherits from
// these in the end, so the list is whole: other readers know no defaults of their own.
// clang-format off
constexpr FileCell kDefaults[] = {
    {"EnableLineProps", "1"}, {"EnableFillProps", "1"}, {"EnableTextProps", "1"}, {"HideForApply", "0"},
    {"LineWeight", "0.01041666666666667"}, {"LineColor", "0"}, {"LinePattern", "1"}, {"Rounding", "0"}, {"EndArrowSize", "2"},
    {"BeginArrow", "0"}, {"EndArrow", "0"}, {"LineCap", "0"}, {"BeginArrowSize", "2"}, {"LineColorTrans", "0"},
    {"CompoundType", "0"}, {"FillForegnd", "1"}, {"FillBkgnd", "0"}, {"FillPattern", "1"}, {"ShdwForegnd", "0"},
    {"ShdwPattern", "0"}, {"FillForegndTrans", "0"}, {"FillBkgndTrans", "0"}, {"ShdwForegndTrans", "0"}, {"ShapeShdwType", "0"},
    {"ShapeShdwOffsetX", "0"}, {"ShapeShdwOffsetY", "0"}, {"ShapeShdwObliqueAngle", "0"}, {"ShapeShdwScaleFactor", "1"},
    {"ShapeShdwBlur", "0"}, {"ShapeShdwShow", "0"}, {"LeftMargin", "0"}, {"RightMargin", "0"}, {"TopMargin", "0"},
    {"BottomMargin", "0"}, {"VerticalAlign", "1"}, {"TextBkgnd", "0"}, {"DefaultTabStop", "0.5"}, {"TextDirection", "0"},
    {"TextBkgndTrans", "0"}, {"LockWidth", "0"}, {"LockHeight", "0"}, {"LockMoveX", "0"}, {"LockMoveY", "0"}, {"LockAspect", "0"},
    {"LockDelete", "0"}, {"LockBegin", "0"}, {"LockEnd", "0"}, {"LockRotate", "0"}, {"LockCrop", "0"}, {"LockVtxEdit", "0"},
    {"LockTextEdit", "0"}, {"LockFormat", "0"}, {"LockGroup", "0"}, {"LockCalcWH", "0"}, {"LockSelect", "0"},
    {"LockCustProp", "0"}, {"LockFromGroupFormat", "0"}, {"LockThemeColors", "0"}, {"LockThemeEffects", "0"},
    {"LockThemeConnectors", "0"}, {"LockThemeFonts", "0"}, {"LockThemeIndex", "0"}, {"LockReplace", "0"}, {"LockVariation", "0"},
    {"NoObjHandles", "0"}, {"NonPrinting", "0"}, {"NoCtlHandles", "0"}, {"NoAlignBox", "0"}, {"UpdateAlignBox", "0"},
    {"HideText", "0"}, {"DynFeedback", "0"}, {"GlueType", "0"}, {"WalkPreference", "0"}, {"BegTrigger", "0", "", kNoFormula},
    {"EndTrigger", "0", "", kNoFormula}, {"ObjType", "0"}, {"Comment", ""}, {"IsDropSource", "0"}, {"NoLiveDynamics", "0"},
    {"LocalizeMerge", "0"}, {"NoProofing", "0"}, {"Calendar", "0"}, {"LangID", "en-US"}, {"ShapeKeywords", ""},
    {"DropOnPageScale", "1"}, {"TheData", "0", "", kNoFormula}, {"TheText", "0", "", kNoFormula},
    {"EventDblClick", "0", "", kNoFormula}, {"EventXFMod", "0", "", kNoFormula}, {"EventDrop", "0", "", kNoFormula},
    {"EventMultiDrop", "0", "", kNoFormula}, {"HelpTopic", ""}, {"Copyright", ""}, {"LayerMember", ""}, {"XRulerDensity", "32"},
    {"YRulerDensity", "32"}, {"XRulerOrigin", "0"}, {"YRulerOrigin", "0"}, {"XGridDensity", "8"}, {"YGridDensity", "8"},
    {"XGridSpacing", "0"}, {"YGridSpacing", "0"}, {"XGridOrigin", "0"}, {"YGridOrigin", "0"}, {"Gamma", "1"}, {"Contrast", "0.5"},
    {"Brightness", "0.5"}, {"Sharpen", "0"}, {"Blur", "0"}, {"Denoise", "0"}, {"Transparency", "0"}, {"SelectMode", "1"},
    {"DisplayMode", "2"}, {"IsDropTarget", "0"}, {"IsSnapTarget", "1"}, {"IsTextEditTarget", "1"}, {"DontMoveChildren", "0"},
    {"ShapePermeableX", "0"}, {"ShapePermeableY", "0"}, {"ShapePermeablePlace", "0"}, {"Relationships", "0"},
    {"ShapeFixedCode", "0"}, {"ShapePlowCode", "0"}, {"ShapeRouteStyle", "0"}, {"ShapePlaceStyle", "0"}, {"ConFixedCode", "0"},
    {"ConLineJumpCode", "0"}, {"ConLineJumpStyle", "0"}, {"ConLineJumpDirX", "0"}, {"ConLineJumpDirY", "0"},
    {"ShapePlaceFlip", "0"}, {"ConLineRouteExt", "0"}, {"ShapeSplit", "0"}, {"ShapeSplittable", "0"}, {"DisplayLevel", "0"},
    {"ResizePage", "0"}, {"EnableGrid", "0"}, {"DynamicsOff", "0"}, {"CtrlAsInput", "0"}, {"AvoidPageBreaks", "0"},
    {"PlaceStyle", "0"}, {"RouteStyle", "0"}, {"PlaceDepth", "0"}, {"PlowCode", "0"}, {"LineJumpCode", "1"},
    {"LineJumpStyle", "0"}, {"PageLineJumpDirX", "0"}, {"PageLineJumpDirY", "0"}, {"LineToNodeX", "0.125"},
    {"LineToNodeY", "0.125"}, {"BlockSizeX", "0.25"}, {"BlockSizeY", "0.25"}, {"AvenueSizeX", "0.375"}, {"AvenueSizeY", "0.375"},
    {"LineToLineX", "0.125"}, {"LineToLineY", "0.125"}, {"LineJumpFactorX", "0.66666666666667"},
    {"LineJumpFactorY", "0.66666666666667"}, {"LineAdjustFrom", "0"}, {"LineAdjustTo", "0"}, {"PlaceFlip", "0"},
    {"LineRouteExt", "0"}, {"PageShapeSplit", "0"}, {"PageLeftMargin", "0.25"}, {"PageRightMargin", "0.25"},
    {"PageTopMargin", "0.25"}, {"PageBottomMargin", "0.25"}, {"ScaleX", "1"}, {"ScaleY", "1"}, {"PagesX", "1"}, {"PagesY", "1"},
    {"CenterX", "0"}, {"CenterY", "0"}, {"OnPage", "0"}, {"PrintGrid", "0"}, {"PrintPageOrientation", "1"}, {"PaperKind", "1"},
    {"PaperSource", "7"}, {"QuickStyleLineColor", "100"}, {"QuickStyleFillColor", "100"}, {"QuickStyleShadowColor", "100"},
    {"QuickStyleFontColor", "100"}, {"QuickStyleLineMatrix", "100"}, {"QuickStyleFillMatrix", "100"},
    {"QuickStyleEffectsMatrix", "100"}, {"QuickStyleFontMatrix", "100"}, {"QuickStyleType", "0"}, {"QuickStyleVariation", "0"},
    {"LineGradientDir", "0"}, {"LineGradientAngle", "1.5707963267949"}, {"FillGradientDir", "0"},
    {"FillGradientAngle", "1.5707963267949"}, {"LineGradientEnabled", "0"}, {"FillGradientEnabled", "0"},
    {"RotateGradientWithShape", "1"}, {"UseGroupGradient", "0"}, {"BevelTopType", "0"}, {"BevelTopWidth", "0"},
    {"BevelTopHeight", "0"}, {"BevelBottomType", "0"}, {"BevelBottomWidth", "0"}, {"BevelBottomHeight", "0"},
    {"BevelDepthColor", "1"}, {"BevelDepthSize", "0"}, {"BevelContourColor", "0"}, {"BevelContourSize", "0"},
    {"BevelMaterialType", "0"}, {"BevelLightingType", "0"}, {"BevelLightingAngle", "0"}, {"RotationXAngle", "0"},
    {"RotationYAngle", "0"}, {"RotationZAngle", "0"}, {"RotationType", "0"}, {"Perspective", "0"}, {"DistanceFromGround", "0"},
    {"KeepTextFlat", "0"}, {"ReflectionTrans", "0"}, {"ReflectionSize", "0"}, {"ReflectionDist", "0"}, {"ReflectionBlur", "0"},
    {"GlowColor", "1"}, {"GlowColorTrans", "0"}, {"GlowSize", "0"}, {"SoftEdgesSize", "0"}, {"SketchSeed", "0"},
    {"SketchEnabled", "0"}, {"SketchAmount", "5"}, {"SketchLineWeight", "0.04166666666666666", "PT"},
    {"SketchLineChange", "0.14"}, {"SketchFillChange", "0.1"}, {"ColorSchemeIndex", "0"}, {"EffectSchemeIndex", "0"},
    {"ConnectorSchemeIndex", "0"}, {"FontSchemeIndex", "0"}, {"ThemeIndex", "0"}, {"VariationColorIndex", "0"},
    {"VariationStyleIndex", "0"}, {"EmbellishmentIndex", "0"}, {"ReplaceLockShapeData", "0"}, {"ReplaceLockText", "0"},
    {"ReplaceLockFormat", "0"}, {"ReplaceCopyCells", "0", "BOOL", kNoFormula}, {"PageWidth", "0", "", kNoFormula},
    {"PageHeight", "0", "", kNoFormula}, {"ShdwOffsetX", "0", "", kNoFormula}, {"ShdwOffsetY", "0", "", kNoFormula},
    {"PageScale", "0", "IN_F", kNoFormula}, {"DrawingScale", "0", "IN_F", kNoFormula}, {"DrawingSizeType", "0", "", kNoFormula},
    {"DrawingScaleType", "0", "", kNoFormula}, {"InhibitSnap", "0", "", kNoFormula}, {"PageLockReplace", "0", "BOOL", kNoFormula},
    {"PageLockDuplicate", "0", "BOOL", kNoFormula}, {"UIVisibility", "0", "", kNoFormula}, {"ShdwType", "0", "", kNoFormula},
    {"ShdwObliqueAngle", "0", "", kNoFormula}, {"ShdwScaleFactor", "0", "", kNoFormula},
    {"DrawingResizeType", "0", "", kNoFormula},
};
// clang-format on

constexpr FileCell kDefaultParagraph[] = {{"IndFirst", "0"},   {"IndLeft", "0"},         {"IndRight", "0"},
                                          {"SpLine", "-1.2"},  {"SpBefore", "0"},        {"SpAfter", "0"},
                                          {"HorzAlign", "1"},  {"Bullet", "0"},          {"BulletStr", ""},
                                          {"BulletFont", "0"}, {"BulletFontSize", "-1"}, {"TextPosAfterBullet", "0"},
                                          {"Flags", "0"}};
constexpr FileCell kDefaultGradientStop[] = {
    {"GradientStopColor", "1"}, {"GradientStopColorTrans", "0"}, {"GradientStopPosition", "0"}};

// What every style says first: that it gives lines, fill and text.
constexpr FileCell kAppliesToAll[] = {
    {"EnableLineProps", "1"}, {"EnableFillProps", "1"}, {"EnableTextProps", "1"}, {"HideForApply", "0"}};
constexpr FileCell kNormal[] = {{"LeftMargin", "0.05555555555555555", "PT"},
                                {"RightMargin", "0.05555555555555555", "PT"},
                                {"TopMargin", "0.05555555555555555", "PT"},
                                {"BottomMargin", "0.05555555555555555", "PT"}};
// The text of a connector hides the line behind it.
constexpr FileCell kConnector[] = {{"TextBkgnd", "#ffffff"}, {"EndArrow", "4"}};

void WriteOnlyRow(PartWriter& writer, std::string_view section, std::span<const FileCell> cells) {
  writer.Section(section, [&] { writer.Element("Row", {{"IX", "0"}}, [&] { writer.Cells(cells); }); });
}

void WriteStyle(PartWriter& writer, Style style, std::string_view name, std::span<const FileCell> cells,
                std::string_view textSize) {
  const std::string id = StyleNumber(style), parent = StyleNumber(Style::None), given(name);
  PartWriter::Attributes attributes{{"ID", id}, {"NameU", given}, {"IsCustomNameU", "1"}, {"Name", given}, {"IsCustomName", "1"}};
  if (style != Style::None)
    for (const std::string_view kind : {"LineStyle", "FillStyle", "TextStyle"}) attributes.emplace_back(kind, parent);
  writer.Element("StyleSheet", attributes, [&] {
    if (style != Style::None) writer.Cells(kAppliesToAll);
    writer.Cells(cells);
    WriteCharacter(writer, textSize);
    if (style != Style::None) return;
    WriteOnlyRow(writer, "Paragraph", kDefaultParagraph);
    writer.Section("Tabs", [&] { writer.Element("Row", {{"IX", "0"}}); });
    for (const std::string_view gradient : {"LineGradient", "FillGradient"}) WriteOnlyRow(writer, gradient, kDefaultGradientStop);
  });
}

}  // namespace

std::string StyleNumber(Style style) { return std::to_string(static_cast<int>(style)); }

void WriteCharacter(PartWriter& writer, std::string_view size) {
  const FileCell cells[] = {
      {"Font", "Calibri"},          {"Color", "0"},       {"Style", "0"},        {"Case", "0"},      {"Pos", "0"},
      {"FontScale", "1"},           {"Size", size},       {"DblUnderline", "0"}, {"Overline", "0"},  {"Strikethru", "0"},
      {"DoubleStrikethrough", "0"}, {"Letterspace", "0"}, {"ColorTrans", "0"},   {"AsianFont", "0"}, {"ComplexScriptFont", "0"},
      {"ComplexScriptSize", "-1"},  {"LangID", kLanguage}};
  WriteOnlyRow(writer, "Character", cells);
}

void WriteStyleSheets(PartWriter& writer) {
  writer.Element("StyleSheets", {}, [&] {
    WriteStyle(writer, Style::None, "No Style", kDefaults, kModuleTextSize);
    WriteStyle(writer, Style::Normal, "Normal", kNormal, kModuleTextSize);
    WriteStyle(writer, Style::Connector, "Connector", kConnector, kConnectorTextSize);
  });
}

}  // namespace vardo
