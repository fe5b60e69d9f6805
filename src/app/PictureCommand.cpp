#include "app/Commands.h"
#include "app/StandardStreams.h"
#include "base/FileError.h"
#include "base/Text.h"
#include "document/Drawing.h"
#include "picture/PagePicture.h"
#include "picture/SvgWriter.h"
#include "picture/qt/Export.h"
#include "platform/FileSystem.h"

#include <fmt/ostream.h>

namespace vardo {
namespace {

using picture::PagePicture;

std::vector<DrawingPage*> ChosenPages(Drawing& drawing, const PictureOptions& options) {
  const std::string file = PathInWords(options.file);
  if (!options.page.empty()) {
    DrawingPage* const page = drawing.FindPage(options.page);
    if (!page) throw FileError(fmt::format("{} has no page \"{}\"; `vardo show` lists its pages.", file, InWords(options.page)));
    return {page};
  }
  std::vector<DrawingPage*> pages;
  for (int i = 1; i <= drawing.PageCount(); ++i)
    if (!drawing.PageAt(i).IsBackground() && (options.allPages || pages.empty())) pages.push_back(&drawing.PageAt(i));
  if (pages.empty()) throw FileError(file + " has no page to make a picture of.");
  return pages;
}

// "plan.svg", "plan-2.svg", "plan-3.svg".
std::filesystem::path NumberedPath(const std::filesystem::path& path, size_t index) {
  if (index == 0) return path;
  std::filesystem::path numbered = path;
  return numbered.replace_filename(path.stem().string() + "-" + std::to_string(index + 1) + path.extension().string());
}

void TellNotes(const PagePicture& picture) {
  for (const picture::Note& note : picture.notes) {
    const std::string shape = note.shape == 0 ? "" : fmt::format(", shape {}", note.shape);
    Tell(fmt::format("page \"{}\"{}: {}", InWords(note.page), shape, note.sentence));
  }
}

}  // namespace

Outcome MakePicture(const PictureOptions& options, std::ostream& output) {
  std::string kind = LowerAscii(options.output.extension().string());
  if (kind != ".svg" && kind != ".png" && kind != ".pdf")
    throw FileError(fmt::format("{} is no picture's name; let it end in .svg, .png or .pdf.", PathInWords(options.output)));
  const std::unique_ptr<Drawing> drawing = Drawing::Open(options.file);
  std::vector<PagePicture> pictures;
  for (DrawingPage* page : ChosenPages(*drawing, options)) pictures.push_back(picture::PictureOf(*drawing, *page));

  std::optional<picture::Offscreen> qt;
  if (kind != ".svg") qt.emplace();
  std::vector<std::string> files;
  if (kind == ".pdf") {
    files.push_back(picture::PdfOf(pictures, options.scale));
  } else {
    for (const PagePicture& page : pictures)
      files.push_back(kind == ".svg" ? picture::SvgOf(page, options.scale) : picture::PngOf(page, options.scale));
  }
  for (size_t i = 0; i < files.size(); ++i) WriteFileAtomically(MachineFileSystem(), NumberedPath(options.output, i), files[i]);
  for (const PagePicture& page : pictures) TellNotes(page);
  for (size_t i = 0; i < files.size(); ++i) fmt::print(output, "Made {}.\n", PathInWords(NumberedPath(options.output, i)));
  return {0, options.output};
}

}  // namespace vardo
