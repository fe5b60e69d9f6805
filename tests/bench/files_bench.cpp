// How much time and memory large drawings take, beside a yardstick taken in the same run: the same bytes inflated, parsed,
// serialised and deflated with zlib and pugixml alone. Each is run in a process of its own, as a program that has just begun.
#include "Measurements.h"
#include "TestDrawings.h"
#include "package/ZipArchive.h"

#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>
#include <pugixml.hpp>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <system_error>

namespace vardo {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

struct Cost {
  double milliseconds;
  long kibibytes;  // at most at a time
};

Cost CostOf(const std::function<void()>& work) {
  int ends[2];
  if (pipe(ends) != 0) throw std::system_error(errno, std::generic_category());
  const pid_t child = fork();
  if (child == 0) {
    const auto start = Clock::now();
    work();
    const double milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    _exit(write(ends[1], &milliseconds, sizeof milliseconds) != sizeof milliseconds);
  }
  close(ends[1]);
  double milliseconds = 0;
  const bool told = read(ends[0], &milliseconds, sizeof milliseconds) == sizeof milliseconds;
  close(ends[0]);
  rusage usage;
  int status = 0;
  if (wait4(child, &status, 0, &usage) != child || status != 0 || !told) throw std::runtime_error("a measurement failed");
  return {milliseconds, usage.ru_maxrss};
}

// ------------------------------------------------------------------------------------------------------ the drawing

constexpr int kProperties = 10;

std::string Row(int number, const std::string& value, const std::string& more = {}) {
  return fmt::format("<Row N='Field{}'><Cell N='Value' V='{}' U='STR'/>{}</Row>", number, value, more);
}

std::string ModuleMaster() {
  std::string rows;
  for (int i = 0; i < kProperties; ++i)
    rows += Row(i, "", "<Cell N='Prompt' V=''/><Cell N='Label' V='Field'/><Cell N='Type' V='0'/>");
  return "<Shape ID='5' Type='Shape'><Cell N='Width' V='1'/><Cell N='Height' V='0.5'/><Section N='Property'>" + rows +
         "</Section><Section N='Connection'><Row T='Connection' IX='0'><Cell N='X' V='0'/><Cell N='Y' V='0.25'/></Row>"
         "<Row T='Connection' IX='1'><Cell N='X' V='1'/><Cell N='Y' V='0.25'/></Row></Section></Shape>";
}

std::string Module(int id) {
  std::string rows;
  for (int i = 0; i < kProperties; ++i) rows += Row(i, fmt::format("TRIA({}, {}, {})", i, id % 97, id));
  return fmt::format(
      "<Shape ID='{0}' NameU='Step.{0}' Name='Step.{0}' Type='Shape' Master='2'><Cell N='PinX' V='{1}'/><Cell N='PinY' V='{2}'/>"
      "<Section N='Property'>{3}</Section><Section N='Connection'><Row IX='0'><Cell N='X' V='0' F='Inh'/><Cell N='Y' V='0.25' "
      "F='Inh'/></Row>"
      "<Row IX='1'><Cell N='X' V='1' F='Inh'/><Cell N='Y' V='0.25' F='Inh'/></Row></Section><Text>Step {0}\n</Text></Shape>",
      id, id % 100 * 1.5, id / 100, rows);
}

std::string Connector(int id, int from, int to) {
  const auto end = [](std::string_view cell, int sheet, int point) {
    return fmt::format("<Cell N='{0}' V='{1}' F='PAR(PNT(Sheet.{1}!Connections.X{2},Sheet.{1}!Connections.Y{2}))'/>", cell, sheet,
                       point);
  };
  return fmt::format(
      "<Shape ID='{0}' NameU='Link.{0}' Name='Link.{0}' Type='Shape' Master='3'><Cell N='PinX' V='1' F='Inh'/><Cell N='PinY' "
      "V='1' F='Inh'/>"
      "{1}{2}{3}{4}<Section N='Geometry' IX='0'><Row T='LineTo' IX='2'><Cell N='X' V='1'/><Cell N='Y' "
      "V='0'/></Row></Section></Shape>",
      id, end("BeginX", from, 2), end("BeginY", from, 2), end("EndX", to, 1), end("EndY", to, 1));
}

// Modules in a circle, each with a connector to the next.
test::DrawingText LargeDrawing(int modules) {
  test::DrawingText text{
      .shapes = "",
      .masters = {{"Step", ModuleMaster()}, {"Link", "<Shape ID='5' Type='Shape'><Cell N='BeginX' V='0'/></Shape>"}}};
  for (int id = 1; id <= modules; ++id) text.shapes += Module(id);
  for (int from = 1; from <= modules; ++from) {
    const int id = modules + from, to = from % modules + 1;
    text.shapes += Connector(id, from, to);
    text.connects += fmt::format(
        "<Connect FromSheet='{0}' FromCell='BeginX' FromPart='9' ToSheet='{1}' ToCell='Connections.X2' ToPart='101'/>"
        "<Connect FromSheet='{0}' FromCell='EndX' FromPart='12' ToSheet='{2}' ToCell='Connections.X1' ToPart='100'/>",
        id, from, to);
  }
  return text;
}

// Its parts packed as our saving packs them.
void WriteLargeDrawing(const fs::path& file, int modules) {
  const ZipArchive nothing("new");
  ZipWriter writer(nothing);
  const test::PackageText package(LargeDrawing(modules));
  for (const test::ZipItem& part : package.items()) writer.Add(part.name, part.content);
  test::WriteFile(file, writer.Finish());
}

// ---------------------------------------------------------------------------------------------------- the yardstick

std::string Inflated(std::string_view packed, size_t size) {
  std::string bytes(size, '\0');
  z_stream stream{};
  inflateInit2(&stream, -MAX_WBITS);
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
  stream.avail_in = static_cast<uInt>(packed.size());
  stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
  stream.avail_out = static_cast<uInt>(size);
  inflate(&stream, Z_FINISH);
  inflateEnd(&stream);
  return bytes;
}

size_t DeflatedSize(const std::string& bytes) {
  uLongf size = compressBound(bytes.size());
  std::string packed(size, '\0');
  compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size(),
            Z_DEFAULT_COMPRESSION);
  return size;
}

struct StringWriter : pugi::xml_writer {
  std::string text;
  void write(const void* data, size_t size) override { text.append(static_cast<const char*>(data), size); }
};

void Yardstick(const fs::path& file, bool rewrite) {
  pugi::set_memory_management_functions(std::malloc, std::free);  // as it comes; the process has no tree yet
  const std::string zip = test::ReadFile(file);
  for (const ZipEntry& entry : ReadZipDirectory(zip, file.string()).entries) {
    const std::string_view packed = std::string_view(zip).substr(entry.data, entry.packed);
    std::string part = entry.method == 0 ? std::string(packed) : Inflated(packed, entry.size);
    if (crc32(0, reinterpret_cast<const Bytef*>(part.data()), static_cast<uInt>(part.size())) != entry.crc)
      throw FileError("yardstick: bad checksum");
    if (!entry.name.ends_with(".xml")) continue;
    pugi::xml_document tree;
    tree.load_buffer_inplace(part.data(), part.size(), pugi::parse_default | pugi::parse_ws_pcdata);
    if (!rewrite) continue;
    StringWriter writer;
    tree.save(writer, "", pugi::format_raw);
    DeflatedSize(writer.text);
  }
}

// ------------------------------------------------------------------------------------------------------ measurements

// The best of several runs of each, taken in turns, so that what else the machine does hits both.
void Compare(std::string_view what, const std::function<void()>& ours, const std::function<void()>& yardstick) {
  constexpr int kRuns = 7;
  Cost best{1e99, 0}, least{1e99, 0};
  const auto isLess = [](const Cost& a, const Cost& b) { return a.milliseconds < b.milliseconds; };
  for (int run = 0; run < kRuns; ++run) {
    least = std::min(least, CostOf(yardstick), isLess);
    best = std::min(best, CostOf(ours), isLess);
  }
  fmt::print("{:<24}{:>10.1f} ms{:>10.1f} ms{:>8.2f}{:>10.1f} MiB{:>10.1f} MiB{:>8.2f}\n", what, best.milliseconds,
             least.milliseconds, best.milliseconds / least.milliseconds, static_cast<double>(best.kibibytes) / 1024,
             static_cast<double>(least.kibibytes) / 1024,
             static_cast<double>(best.kibibytes) / static_cast<double>(least.kibibytes));
  std::fflush(stdout);
}

void Measure(int modules) {
  const test::TempFolder folder;
  const fs::path file = folder / "large.vsdx", saved = folder / "saved.vsdx";
  CostOf([&] { WriteLargeDrawing(file, modules); });
  fmt::print("{} modules and as many connectors\n{:<24}{:>13}{:>13}{:>8}{:>14}{:>14}{:>8}\n", modules, "", "vardo", "yardstick",
             "ratio", "vardo", "yardstick", "ratio");
  const auto open = [&] { Drawing::Open(file); };
  const auto walk = [&] { Drawing::Open(file)->PageAt(1).ShapeCount(); };
  const auto edit = [&] {
    const auto drawing = Drawing::Open(file);
    drawing->PageAt(1).ShapeAt(1).SetText(drawing->editor(), "edited");
    drawing->Save(saved);
  };
  const auto read = [&] { Yardstick(file, false); };
  const auto rewrite = [&] { Yardstick(file, true); };
  Compare("open", open, read);
  Compare("open, walk", walk, read);
  Compare("open, edit, save", edit, rewrite);
}

}  // namespace

void MeasureFiles() {
  for (const int modules : {10'000, 100'000}) Measure(modules);
}

}  // namespace vardo
