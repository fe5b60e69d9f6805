// What is written must be the same to another reader of archives.
#include "TestZips.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zip.h>

namespace vardo {
namespace {

using test::Change;
using test::Changed;
using test::Contents;

std::vector<std::pair<std::string, std::string>> ContentsByLibzip(const std::string& bytes) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* const source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
  zip_t* const zip = zip_open_from_source(source, ZIP_RDONLY | ZIP_CHECKCONS, &error);
  std::vector<std::pair<std::string, std::string>> contents;
  if (!zip) {
    contents.emplace_back("refused", zip_error_strerror(&error));
    zip_source_free(source);
    return contents;
  }
  for (zip_int64_t i = 0; i < zip_get_num_entries(zip, 0); ++i) {
    zip_stat_t status;
    zip_stat_index(zip, static_cast<zip_uint64_t>(i), 0, &status);
    std::string content(status.size, '\0');
    zip_file_t* const file = zip_fopen_index(zip, static_cast<zip_uint64_t>(i), 0);
    EXPECT_EQ(zip_fread(file, content.data(), content.size()), static_cast<zip_int64_t>(content.size()));
    EXPECT_EQ(zip_fclose(file), 0) << "the checksum";
    contents.emplace_back(status.name, content);
  }
  zip_discard(zip);
  return contents;
}

TEST(LibzipReader, SeesTheSameArchives) {
  const std::string kinds[] = {
      test::MakeZip({{"a", "one"}}),
      test::MakeZip({{"a", std::string(5000, 'x')}}, "a comment"),
      test::ZipWithDescriptor("a", "one"),
      test::Zip64("a", "one"),
      test::MakeZip({{"\xC3\xA4", "one", 0, 0x0800}}),
  };
  for (const std::string& zip : kinds)
    for (const Change change : {Change::Keep, Change::Replace, Change::Drop}) {
      const std::string changed = Changed(ZipArchive(zip, "test"), {change});
      EXPECT_EQ(ContentsByLibzip(changed), Contents(ZipArchive(changed, "test")));
    }
}

TEST(LibzipReader, SeesTheSameLargeText) {
  std::string text;
  for (int i = 0; i < 300'000; ++i) text += "<Cell N='" + std::to_string(i * 7919 % 1000) + "'/>";
  const ZipArchive nothing("test");
  ZipWriter writer(nothing);
  writer.Add("page", text);
  EXPECT_EQ(ContentsByLibzip(writer.Finish()).at(0).second, text);
}

}  // namespace
}  // namespace vardo
