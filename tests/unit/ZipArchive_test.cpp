#include "package/ZipArchive.h"

#include "TestZips.h"
#include "base/FileError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace vardo {
namespace {

using test::Change;
using test::Changed;
using test::Contents;
using test::MakeZip;
using test::ZipItem;
using testing::ElementsAre;
using testing::Pair;

std::string Noise(size_t size) {
  std::mt19937 random(1);
  std::string noise(size, '\0');
  for (char& c : noise) c = static_cast<char>(random());
  return noise;
}

TEST(ZipArchive, CopiesAddsAndLeavesOut) {
  const ZipArchive original(MakeZip({{"a", "one"}, {"folder/", ""}, {"b", "two"}, {"c", "three"}}, "a comment"), "test");
  const ZipArchive changed(Changed(original, {Change::Keep, Change::Keep, Change::Replace, Change::Drop}), "test");
  EXPECT_THAT(Contents(changed),
              ElementsAre(Pair("a", "one"), Pair("folder/", ""), Pair("b", "b, replaced"), Pair("new", "added")));
  EXPECT_EQ(changed.Comment(), "a comment");
}

TEST(ZipArchive, ACommentMayBeAsLongAsItsLengthCanSay) {
  const std::string longest(0xFFFF, 'c');
  const ZipArchive archive(MakeZip({{"a", "one"}}, longest), "test");
  EXPECT_EQ(archive.Comment(), longest);
}

TEST(ZipArchive, AnArchiveBeginsWithNothing) {
  const ZipArchive nothing("test");
  ZipWriter writer(nothing);
  writer.Add("a", "content");
  EXPECT_THAT(Contents(ZipArchive(writer.Finish(), "test")), ElementsAre(Pair("a", "content")));
}

TEST(ZipArchive, EntriesThatAreKeptKeepTheirBytes) {
  const std::string zip = MakeZip({{"a", "one"}, {"b", "two"}, {"c", "three"}});
  const ZipArchive original(zip, "test");
  const ZipArchive changed(Changed(original, {Change::Keep, Change::Replace, Change::Keep}), "test");
  for (const size_t kept : {0, 2}) {
    const ZipEntry &before = original.Entries()[kept], &after = changed.Entries()[kept];
    EXPECT_EQ(changed.Bytes().substr(after.header, after.data + after.packed - after.header),
              zip.substr(before.header, before.data + before.packed - before.header));
  }
  EXPECT_EQ(Changed(original, {Change::Keep, Change::Replace, Change::Keep}), changed.Bytes()) << "the same each time";
}

TEST(ZipArchive, SizesThatFollowTheDataAreWrittenBeforeIt) {
  const ZipArchive original(test::ZipWithDescriptor("a", "content"), "test");
  const std::string changed = Changed(original, {Change::Keep});
  EXPECT_THAT(Contents(ZipArchive(changed, "test")), ElementsAre(Pair("a", "content"), Pair("new", "added")));
  EXPECT_EQ(changed.find("PK\7\x8"), std::string::npos);
}

TEST(ZipArchive, SizesOf64BitsAreReadAndCopied) {
  const ZipArchive original(test::Zip64("a", "content"), "test");
  EXPECT_THAT(Contents(original), ElementsAre(Pair("a", "content")));
  EXPECT_THAT(Contents(ZipArchive(Changed(original, {Change::Keep}), "test")),
              ElementsAre(Pair("a", "content"), Pair("new", "added")));
}

TEST(ZipArchive, WhatDoesNotGetShorterIsStored) {
  const ZipArchive nothing("test");
  ZipWriter writer(nothing);
  const std::string noise = Noise(1000);
  writer.Add("noise", noise);
  writer.Add("empty", "");
  writer.Add("text", std::string(1000, 'x'));
  const ZipArchive archive(writer.Finish(), "test");
  EXPECT_THAT(Contents(archive), ElementsAre(Pair("noise", noise), Pair("empty", ""), Pair("text", std::string(1000, 'x'))));
  EXPECT_EQ(archive.Entries()[0].packed, 1000u);
  EXPECT_LT(archive.Entries()[2].packed, 100u);
}

TEST(ZipArchive, WhatWouldBeTakenForABombCanStillBeWritten) {
  const ZipArchive nothing("test");
  ZipWriter writer(nothing);
  const std::string blanks(3 << 20, ' ');
  writer.Add("blanks", blanks);
  EXPECT_EQ(Contents(ZipArchive(writer.Finish(), "test")).at(0).second, blanks);
}

}  // namespace
}  // namespace vardo
