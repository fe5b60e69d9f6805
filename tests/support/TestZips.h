// Archives of the kinds that others write, and changes of them.
#pragma once

#include "TestPackages.h"
#include "package/ZipArchive.h"

#include <string>
#include <utility>
#include <vector>

namespace vardo::test {

enum class Change { Keep, Replace, Drop };

// The archive with that done to its entries, and one more entry "new".
inline std::string Changed(const ZipArchive& original, const std::vector<Change>& changes) {
  ZipWriter writer(original);
  for (size_t i = 0; i < changes.size(); ++i) {
    const std::string& name = original.Entries()[i].name;
    if (changes[i] == Change::Keep) writer.Copy(i);
    if (changes[i] == Change::Replace) writer.Add(name, name + ", replaced");
  }
  writer.Add("new", "added");
  return writer.Finish();
}

inline std::vector<std::pair<std::string, std::string>> Contents(const ZipArchive& archive) {
  std::vector<std::pair<std::string, std::string>> contents;
  for (size_t i = 0; i < archive.Entries().size(); ++i) contents.emplace_back(archive.Entries()[i].name, archive.Read(i).View());
  return contents;
}

inline void SetNumber(std::string& bytes, size_t at, std::uint64_t number, int size) {
  std::string text;
  AppendNumber(text, number, size);
  bytes.replace(at, text.size(), text);
}

// One entry, whose sizes and checksum stand behind its data, as of a writer that cannot go back.
inline std::string ZipWithDescriptor(const std::string& name, const std::string& content) {
  const auto size = static_cast<std::int64_t>(content.size());
  std::string descriptor("PK\7\x8", 4);
  AppendNumber(descriptor, Crc32(content), 4);
  AppendNumber(descriptor, content.size(), 4);
  AppendNumber(descriptor, content.size(), 4);
  std::string zip =
      MakeZip({{.name = name, .content = content + descriptor, .flags = 8, .size = size, .packed = size, .crc = Crc32(content)}});
  for (const size_t field : {14, 18, 22}) SetNumber(zip, field, 0, 4);  // of the local header, where a reader must not look
  return zip;
}

// One entry, whose sizes and place stand in the directory as numbers of 64 bits.
inline std::string Zip64(const std::string& name, const std::string& content) {
  std::string zip = MakeZip({{name, content}}), extra;
  AppendNumber(extra, 1, 2);
  AppendNumber(extra, 24, 2);
  for (const size_t number : {content.size(), content.size(), size_t{0}}) AppendNumber(extra, number, 8);
  const size_t record = zip.find("PK\1\2"), end = zip.find("PK\5\6");
  for (const size_t field : {20, 24, 42}) SetNumber(zip, record + field, 0xFFFFFFFF, 4);
  SetNumber(zip, record + 30, extra.size(), 2);
  SetNumber(zip, end + 12, end - record + extra.size(), 4);
  return zip.insert(end, extra);
}

}  // namespace vardo::test
