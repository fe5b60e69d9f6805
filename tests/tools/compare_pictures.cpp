// Compares our pictures of drawings with another reader's, page by page, the least alike first:
//   vardo-compare-pictures FOLDER [DRAWING...]
// Without drawings those in the folder that VARDO_SAMPLES names. FOLDER gets for every page our picture beside the other one.
#include "base/FileError.h"
#include "document/Drawing.h"
#include "picture/SvgWriter.h"
#include "picture/qt/Export.h"

#include <fmt/format.h>
#include <librevenge-generators/librevenge-generators.h>
#include <librevenge-stream/librevenge-stream.h>
#include <libvisio/libvisio.h>

#include <sys/wait.h>
#include <unistd.h>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>

namespace {

namespace fs = std::filesystem;
using namespace vardo;

constexpr unsigned kPatience = 60;  // seconds that the other reader gets for a drawing
constexpr int kWidest = 1000, kBlur = 4;

struct Likeness {
  double alike = 0;  // 1: the same
  std::string page;
};

fs::path OtherSvg(const fs::path& folder, const std::string& stem, size_t page) {
  return folder / fmt::format("{}-{}.other.svg", stem, page);
}

// In a process of its own, which may crash or take too long.
void WriteOthers(const fs::path& drawing, const fs::path& folder, const std::string& stem) {
  const pid_t child = fork();
  if (child == 0) {
    alarm(kPatience);
    librevenge::RVNGFileStream stream(drawing.c_str());
    librevenge::RVNGStringVector pages;
    librevenge::RVNGSVGDrawingGenerator generator(pages, "svg");
    if (!libvisio::VisioDocument::isSupported(&stream) || !libvisio::VisioDocument::parse(&stream, &generator)) _exit(1);
    for (unsigned i = 0; i < pages.size(); ++i)
      std::ofstream(OtherSvg(folder, stem, i + 1)) << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" << pages[i].cstr();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
}

QImage Rasterised(const fs::path& svg, QSize size) {
  const fs::path png = fs::path(svg).replace_extension(".png");
  const std::string command = fmt::format("rsvg-convert --unlimited -b white -w {} -h {} -o '{}' '{}' 2>/dev/null", size.width(),
                                          size.height(), png.string(), svg.string());
  QImage image;
  if (std::system(command.c_str()) == 0) image.load(QString::fromStdString(png.string()));
  fs::remove(png);
  return image.isNull() ? image : image.convertToFormat(QImage::Format_RGB32);
}

// What differs in parts of what is painted, so that white paper counts for nothing.
double Alike(const QImage& ours, const QImage& others) {
  const QSize size = ours.size() / kBlur;
  const QImage a = ours.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).convertToFormat(QImage::Format_RGB32);
  const QImage b = others.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).convertToFormat(QImage::Format_RGB32);
  double different = 0, painted = 1;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x) {
      const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
      for (const auto& [u, v] : {std::pair(qRed(p), qRed(q)), {qGreen(p), qGreen(q)}, {qBlue(p), qBlue(q)}}) {
        different += std::abs(u - v);
        painted += 255 - std::min(u, v);
      }
    }
  return 1 - different / painted;
}

void SaveSideBySide(const QImage& ours, const QImage& others, const fs::path& file) {
  const bool isWide = ours.width() > ours.height();
  QImage both(isWide ? ours.width() : ours.width() * 2 + 8, isWide ? ours.height() * 2 + 8 : ours.height(), QImage::Format_RGB32);
  both.fill(Qt::darkGray);
  QPainter painter(&both);
  painter.drawImage(0, 0, ours);
  painter.drawImage(isWide ? 0 : ours.width() + 8, isWide ? ours.height() + 8 : 0, others);
  painter.end();
  both.save(QString::fromStdString(file.string()));
}

void Compare(const fs::path& file, const fs::path& folder, std::vector<Likeness>& all) {
  const std::string stem = file.stem().string();
  WriteOthers(file, folder, stem);
  const auto begin = std::chrono::steady_clock::now();
  const std::unique_ptr<Drawing> drawing = Drawing::Open(file);
  size_t number = 0;
  for (int i = 1; i <= drawing->PageCount(); ++i) {
    DrawingPage& page = drawing->PageAt(i);
    if (page.IsBackground()) continue;
    const picture::PagePicture picture = picture::PictureOf(*drawing, page);
    ++number;
    const double scale = std::min(2.0, kWidest / (std::max(picture.width, picture.height) * picture::kPixelsPerInch));
    const std::string png = picture::PngOf(picture, scale);
    QImage ours = QImage::fromData(reinterpret_cast<const uchar*>(png.data()), static_cast<int>(png.size()))
                      .convertToFormat(QImage::Format_RGB32);
    const fs::path svg = OtherSvg(folder, stem, number);
    if (!fs::exists(svg)) {
      all.push_back({2, fmt::format("{} page {}: not read by the other reader", stem, number)});
      ours.save(QString::fromStdString((folder / fmt::format("{}-{}.png", stem, number)).string()));
      continue;
    }
    const QImage others = Rasterised(svg, ours.size());
    if (others.isNull()) {
      all.push_back({2, fmt::format("{} page {}: the other picture cannot be shown", stem, number)});
      continue;
    }
    all.push_back({Alike(ours, others), fmt::format("{} page {}", stem, number)});
    SaveSideBySide(ours, others, folder / fmt::format("{}-{}.png", stem, number));
  }
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
  fmt::print(stderr, "{:6.2f} s {}\n", took.count(), stem);
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) {
    std::cerr << "usage: vardo-compare-pictures FOLDER [DRAWING...]\n";
    return 2;
  }
  const fs::path folder = arguments[1];
  fs::create_directories(folder);
  std::vector<fs::path> files(arguments + 2, arguments + count);
  if (const char* samples = std::getenv("VARDO_SAMPLES"); files.empty() && samples)
    for (const auto& entry : fs::directory_iterator(samples))
      if (entry.path().extension().string().starts_with(".vs")) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  picture::Offscreen qt;
  std::vector<Likeness> all;
  for (const fs::path& file : files) {
    try {
      Compare(file, folder, all);
    } catch (const FileError& error) {
      std::cerr << error.what() << '\n';
    }
  }
  std::stable_sort(all.begin(), all.end(), [](const Likeness& a, const Likeness& b) { return a.alike < b.alike; });
  for (const Likeness& likeness : all) fmt::print("{:.3f} {}\n", likeness.alike, likeness.page);
}
