// A drawing made from a few lines of text, as somebody would describe a model.
//   page Sub of Page-1              a page, and the one it belongs to; what follows stands on it. The first page is there.
//   Create Come | CreateValue=2     a module, and fields that are not as the stencil has them; its name is its text, too
//   Come -> Work -> Go              connectors, glued to exits and entries
//   Ask -true-> Work                one of the special connectors, at its exit: true, false, original, duplicate
//   Ask:3 -> Work:1                 glued to those points; 0: to the shape as a whole
//   Work ->                         an end that is loose
//   cell Work User.ClassName="X"    a formula of a shape, of ThePage (the one shown) or of TheDoc
//   row Work 7 2                    a row of a section that is taken away
// Pages are registered as the add-in does it; cells come last, so they can put that out of step.
#pragma once

#include "addin/host/IVApplication.h"
#include "addin/host/IVShape.h"
#include "memoryhost/DrawingHost.h"
#include "modules/ModuleKinds.h"
#include "props/StringFunctions.h"

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

class ModelDrawing {
 public:
  explicit ModelDrawing(std::string_view text) {
    host_.New();
    for (const std::string& line : SplitList(text, "\n"))
      if (const std::string_view trimmed = TrimBlanks(line); !trimmed.empty()) Obey(std::string(trimmed));
    Register();
    for (const auto& [page, line] : cells_) SetCell(page, line);
    for (const std::string& line : rows_) DeleteRow(line);
  }
  IVDocumentPtr document() { return host_.application()->ActiveDocument(); }
  DrawingHost& host() { return host_; }

 private:
  struct Placed {
    int page, id;
    std::string kind;
  };

  static std::vector<std::string> Split(std::string_view text, std::string_view between) {
    std::vector<std::string> parts;
    for (size_t end; (end = text.find(between)) != std::string_view::npos; text.remove_prefix(end + between.size()))
      parts.emplace_back(TrimBlanks(text.substr(0, end)));
    parts.emplace_back(TrimBlanks(text));
    return parts;
  }

  void Obey(const std::string& line) {
    const std::string word = line.substr(0, line.find(' '));
    const std::string rest(TrimBlanks(line.substr(std::min(line.size(), word.size() + 1))));
    if (word == "page") return AddPage(rest);
    if (word == "cell") return cells_.emplace_back(PageShown().id(), rest), void();
    if (word == "row") return rows_.push_back(rest);
    if (IsModuleKind(word)) return Drop(word, rest);
    Connect(line);
  }

  DrawingPage& PageShown() { return host_.ActivePage(); }

  void AddPage(const std::string& text) {
    const std::vector<std::string> parts = Split(text, " of ");
    host_.AddPage(parts[0]);
    if (parts.size() > 1) host_.SetCell(host_.RefTo(PageShown(), SheetKind::Page), "Prop.VardoParentPage", '"' + parts[1] + '"');
  }

  void Drop(const std::string& kind, const std::string& text) {
    const std::vector<std::string> parts = Split(" " + text, " | ");
    const IVShapePtr shape = host_.Drop(kind, PageShown().id(), 1, 1, std::nullopt);
    const SheetRef ref = host_.RefTo(PageShown(), shape->ID());
    placed_[parts[0]] = {PageShown().id(), shape->ID(), kind};
    host_.SetCell(ref, "Prop." + kind + "Name", '"' + parts[0] + '"');
    shape->SetText(parts[0]);
    for (size_t i = 1; i < parts.size(); ++i) {
      const size_t equals = parts[i].find('=');
      host_.SetCell(ref, "Prop." + parts[i].substr(0, equals), '"' + parts[i].substr(equals + 1) + '"');
    }
  }

  const Placed& Find(const std::string& name) const {
    const auto found = placed_.find(name);
    if (found == placed_.end()) throw std::runtime_error("the drawing has no shape " + name);
    return found->second;
  }

  // The next arrow of a line: where it stands, its length, the connector's master and the point that it leaves by.
  struct Arrow {
    const char *sign, *master;
    int exit;
  };
  static constexpr Arrow kArrows[] = {{"->", "Dynamic connector", 1},
                                      {"-true->", "True Connector", 1},
                                      {"-false->", "False Connector", 3},
                                      {"-original->", "Original Connector", 1},
                                      {"-duplicate->", "Duplicate Connector", 3}};
  static const Arrow& ArrowNamed(std::string_view sign) {
    for (const Arrow& arrow : kArrows)
      if (arrow.sign == sign) return arrow;
    throw std::runtime_error("no arrow " + std::string(sign));
  }

  void Connect(const std::string& line) {
    std::vector<std::string> stations(1);
    std::vector<const Arrow*> arrows;
    for (const std::string& word : Split(line, " ")) {
      if (word.ends_with("->")) {
        arrows.push_back(&ArrowNamed(word));
        stations.emplace_back();
      } else {
        stations.back() += (stations.back().empty() ? "" : " ") + word;
      }
    }
    if (arrows.empty()) throw std::runtime_error("what is " + line);
    for (size_t i = 0; i < arrows.size(); ++i)
      host_.Connect(arrows[i]->master, PageShown().id(), End(stations[i], arrows[i]->exit), End(stations[i + 1], 0));
  }

  // exit 0: the station is entered.
  DrawingHost::End End(const std::string& station, int exit) {
    if (station.empty()) return {};
    const std::vector<std::string> parts = Split(station, ":");
    const Placed& shape = Find(parts[0]);
    int point = exit > 0 ? exit : shape.kind == "Dispose" ? 1 : 2;
    if (parts.size() > 1) point = std::stoi(parts[1]);
    if (point == 0) return {shape.id, std::nullopt, true};
    return {shape.id, point};
  }

  void Register() {
    for (int i = 1; i <= host_.drawing().PageCount(); ++i) {
      DrawingPage& page = host_.drawing().PageAt(i);
      std::map<std::string, std::string> registers;
      int count = 0;
      for (const auto& [name, placed] : placed_) {
        if (placed.page != page.id()) continue;
        std::string& positions = registers[placed.kind];
        positions += (positions.empty() ? "" : ";") + std::to_string(page.IndexOf(*page.FindShape(placed.id)));
        ++count;
      }
      const SheetRef sheet = host_.RefTo(page, SheetKind::Page);
      for (const std::string_view kind : kModuleKinds)
        host_.SetCell(sheet, "Prop." + std::string(kind), '"' + registers[std::string(kind)] + '"');
      host_.SetCell(sheet, "Prop.Count", '"' + std::to_string(count) + '"');
    }
  }

  SheetRef RefTo(const std::string& name, int page) {
    if (name == "ThePage") return host_.RefTo(*host_.drawing().FindPage(page), SheetKind::Page);
    if (name == "TheDoc") return host_.RefTo(*host_.drawing().FindPage(page), SheetKind::Document);
    return host_.RefTo(*host_.drawing().FindPage(Find(name).page), Find(name).id);
  }

  void SetCell(int page, const std::string& line) {
    const size_t equals = line.find('='), blank = line.rfind(' ', equals);
    host_.SetCell(RefTo(line.substr(0, blank), page), line.substr(blank + 1, equals - blank - 1), line.substr(equals + 1));
  }

  void DeleteRow(const std::string& line) {
    const std::vector<std::string> words = Split(line, " ");
    host_.DeleteRow(RefTo(words[0], 0), static_cast<short>(std::stoi(words[1])), static_cast<short>(std::stoi(words[2])));
  }

  DrawingHost host_;
  std::map<std::string, Placed> placed_;
  std::vector<std::pair<int, std::string>> cells_;
  std::vector<std::string> rows_;
};

}  // namespace vardo
