// Small packages built byte by byte in memory, so that a test can make them lie.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vardo::test {

// An entry, stored unless a method is named. Fields that are not set tell the truth.
struct ZipItem {
  std::string name, content;
  std::uint16_t method = 0, flags = 0;
  std::int64_t size = -1;    // declared, unpacked
  std::int64_t packed = -1;  // declared
  std::int64_t offset = -1;  // of the local header, as the directory has it
  std::int64_t crc = -1;     // declared
  std::string localName{};   // as the local header has it; empty: the same
};

inline std::uint32_t Crc32(std::string_view bytes) {
  std::uint32_t crc = ~0u;
  for (unsigned char byte : bytes) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320u : 0);
  }
  return ~crc;
}

inline void AppendNumber(std::string& out, std::uint64_t number, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>(number >> (8 * i));
}

// What the local and the central header have in common: from the flags to the sizes.
inline std::string SharedHeader(const ZipItem& item) {
  std::string header;
  AppendNumber(header, item.flags, 2);
  AppendNumber(header, item.method, 2);
  AppendNumber(header, 0x00210000, 4);  // 1980-01-01
  AppendNumber(header, item.crc < 0 ? Crc32(item.content) : static_cast<std::uint64_t>(item.crc), 4);
  AppendNumber(header, item.packed < 0 ? item.content.size() : static_cast<std::uint64_t>(item.packed), 4);
  AppendNumber(header, item.size < 0 ? item.content.size() : static_cast<std::uint64_t>(item.size), 4);
  return header;
}

inline std::string EndRecord(size_t count, size_t directorySize, size_t directoryOffset, std::string_view comment) {
  std::string end("PK\5\6\0\0\0\0", 8);
  AppendNumber(end, count, 2);
  AppendNumber(end, count, 2);
  AppendNumber(end, directorySize, 4);
  AppendNumber(end, directoryOffset, 4);
  AppendNumber(end, comment.size(), 2);
  return end.append(comment);
}

inline std::string MakeZip(const std::vector<ZipItem>& items, std::string_view comment = {}) {
  std::string zip, directory;
  for (const ZipItem& item : items) {
    const size_t offset = item.offset < 0 ? zip.size() : static_cast<size_t>(item.offset);
    const std::string& localName = item.localName.empty() ? item.name : item.localName;
    zip += std::string("PK\3\4\x14\0", 6) + SharedHeader(item);
    AppendNumber(zip, localName.size(), 2);
    AppendNumber(zip, 0, 2);
    zip += localName + item.content;
    directory += std::string("PK\1\2\x14\0\x14\0", 8) + SharedHeader(item);
    AppendNumber(directory, item.name.size(), 2);
    directory.append(12, '\0');
    AppendNumber(directory, offset, 4);
    directory += item.name;
  }
  return zip + directory + EndRecord(items.size(), directory.size(), zip.size(), comment);
}

inline constexpr std::string_view kPagePart = "visio/pages/page1.xml";

// A drawing of one page, as Visio writes it, with an ill-formed solution and a picture of bytes.
inline std::vector<ZipItem> DrawingItems() {
  const std::string declaration = "<?xml version='1.0' encoding='utf-8' ?>\r\n";
  const std::string relsDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n";
  const std::string main =
      " xmlns='http://schemas.microsoft.com/office/visio/2012/main'"
      " xmlns:r='http://schemas.openxmlformats.org/officeDocument/2006/relationships' xml:space='preserve'";
  const auto relationships = [&](std::string_view type, std::string_view target) {
    return relsDeclaration +
           "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\"><Relationship Id=\"rId1\" "
           "Type=\"" +
           "http://schemas.microsoft.com/visio/2010/relationships/" + std::string(type) + "\" Target=\"" + std::string(target) +
           "\"/></Relationships>";
  };
  const auto declare = [](std::string_view part, std::string_view type) {
    return "<Override PartName=\"/visio/" + std::string(part) + "\" ContentType=\"application/vnd.ms-visio." + std::string(type) +
           "+xml\"/>";
  };
  return {
      {"[Content_Types].xml",
       relsDeclaration +
           "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
           "<Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
           "<Default Extension=\"xml\" ContentType=\"application/xml\"/>" +
           declare("document.xml", "drawing.main") + declare("pages/pages.xml", "pages") + declare("pages/page1.xml", "page") +
           "</Types>"},
      {"_rels/.rels", relationships("document", "visio/document.xml")},
      {"visio/solutions/solution1.xml", "<a:not well formed"},
      {"visio/media/image1.bin", std::string("\0\1\2\xFF", 4)},
      {"visio/document.xml", declaration + "<VisioDocument" + main + "><Colors/></VisioDocument>"},
      {"visio/_rels/document.xml.rels", relationships("pages", "pages/pages.xml")},
      {"visio/pages/pages.xml", declaration + "<Pages" + main + "><Page ID='0' NameU='Page-1'><Rel r:id='rId1'/></Page></Pages>"},
      {"visio/pages/_rels/pages.xml.rels", relationships("page", "page1.xml")},
      {std::string(kPagePart), declaration + "<PageContents" + main +
                                   "><Shapes><Shape ID='1'><Cell N='F' V='a&amp;b' F='THEMEGUARD(THEMEVAL(\"Dark\"))&apos;'/>"
                                   "<Text><cp IX='0'/>one\r\ntwo\n</Text></Shape></Shapes></PageContents>"},
  };
}

// The drawing with another content of one part.
inline std::vector<ZipItem> DrawingWith(std::string_view part, std::string content) {
  std::vector<ZipItem> items = DrawingItems();
  for (ZipItem& item : items)
    if (item.name == part) item.content = std::move(content);
  return items;
}

// The drawing with one more entry.
inline std::vector<ZipItem> DrawingAnd(ZipItem item) {
  std::vector<ZipItem> items = DrawingItems();
  items.push_back(std::move(item));
  return items;
}

}  // namespace vardo::test
