#include "picture/ForeignPicture.h"

#include "document/Drawing.h"
#include "package/Package.h"
#include "picture/ResolvedSheet.h"

#include <pugixml.hpp>

#include <cstdint>
#include <string_view>

namespace vardo::picture {
namespace {

constexpr std::uint64_t kLargestImage = 64u << 20;  // bytes

std::uint32_t NumberAt(std::string_view bytes, size_t at, size_t count) {
  std::uint32_t number = 0;
  for (size_t i = 0; i < count && at + i < bytes.size(); ++i)
    number |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
  return number;
}

// A bitmap as it is in memory gets the header that it has in a file.
std::string WithBitmapHeader(std::string_view dib) {
  constexpr std::uint32_t kFileHeader = 14, kMasks = 12, kBitFields = 3;
  const std::uint32_t header = NumberAt(dib, 0, 4), bits = NumberAt(dib, 14, 2), used = NumberAt(dib, 32, 4);
  const std::uint32_t colours = bits > 8 ? used : used != 0 ? used : 1u << bits;
  const std::uint32_t masks = header == 40 && NumberAt(dib, 16, 4) == kBitFields ? kMasks : 0;
  std::string bytes = "BM";
  for (const std::uint32_t number :
       {static_cast<std::uint32_t>(dib.size()) + kFileHeader, 0u, kFileHeader + header + masks + colours * 4})
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>(number >> (8 * i));
  return bytes.append(dib);
}

// By how the bytes begin, whatever the file says of them; empty for what is no image that painters know.
std::string TypeOf(std::string_view bytes) {
  if (bytes.starts_with("\x89PNG")) return "image/png";
  if (bytes.starts_with("\xff\xd8")) return "image/jpeg";
  if (bytes.starts_with("GIF8")) return "image/gif";
  if (bytes.starts_with("BM")) return "image/bmp";
  return {};
}

bool IsBareBitmap(std::string_view bytes) {
  constexpr std::uint32_t kInfoHeader = 40, kLongHeaders[] = {108, 124};
  const std::uint32_t header = NumberAt(bytes, 0, 4), bits = NumberAt(bytes, 14, 2);
  return bytes.size() > kInfoHeader && (header == kInfoHeader || header == kLongHeaders[0] || header == kLongHeaders[1]) &&
         bits >= 1 && bits <= 32;
}

// The nearest up the line of inheritance that holds the data.
const DrawingShape* HolderOf(const SheetResolver& resolver, const DrawingShape& shape) {
  for (const DrawingShape* at = &shape; at; at = resolver.BaseOf(*at))
    if (pugi::xml_node(at->element()).child("ForeignData")) return at;
  return nullptr;
}

std::string KindInWords(std::string_view kind, std::string_view part) {
  if (kind == "Object") return "Embedded object";
  const size_t dot = part.rfind('.');
  std::string ending(dot == std::string_view::npos ? std::string_view() : part.substr(dot + 1));
  for (char& c : ending) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return ending.empty() ? "Picture" : "Picture (" + ending + ")";
}

}  // namespace

std::optional<ForeignPicture> ReadForeignPicture(Drawing& drawing, const SheetResolver& resolver, const DrawingShape& shape) {
  const DrawingShape* const holder = HolderOf(resolver, shape);
  if (!holder) return std::nullopt;
  const pugi::xml_node data = pugi::xml_node(holder->element()).child("ForeignData");
  Package& package = drawing.package();
  const Relationships relationships = package.RelationshipsOf(holder->part().name());
  const Relationship* const relationship = relationships.Find(data.child("Rel").attribute("r:id").value());
  ForeignPicture picture;
  picture.label = KindInWords(data.attribute("ForeignType").value(), relationship ? relationship->target : "");
  if (!relationship || relationship->external || !package.Has(relationship->target)) return picture;
  std::string bytes = package.Bytes(relationship->target);
  if (bytes.size() > kLargestImage) return picture;
  if (IsBareBitmap(bytes)) bytes = WithBitmapHeader(bytes);
  picture.type = TypeOf(bytes);
  if (!picture.type.empty()) picture.bytes = std::make_shared<const std::string>(std::move(bytes));
  return picture;
}

}  // namespace vardo::picture
