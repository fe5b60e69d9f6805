#include "addin/host/HostConstants.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "base/Text.h"
#include "connect/EndFormulas.h"
#include "model/ModelSource.h"
#include "model/RunSetup.h"
#include "modules/BookkeepingRows.h"
#include "props/PropertyCells.h"

#include <algorithm>
#include <unordered_map>

namespace vardo {
namespace {

constexpr const char* kClassNameCell = "User.ClassName";

struct ConnectorMaster {
  std::string_view name;
  ConnectorKind kind;
};
constexpr ConnectorMaster kConnectorMasters[] = {
    {"True Connector", ConnectorKind::True},
    {"False Connector", ConnectorKind::False},
    {"Original Connector", ConnectorKind::Original},
    {"Duplicate Connector", ConnectorKind::Duplicate},
};

struct EndCells {
  const char *x, *trigger;
};
constexpr EndCells kBegin{"BeginX", "BegTrigger"}, kEnd{"EndX", "EndTrigger"};

// The host names copies of a master with a "." and a number behind.
std::string_view BeforeDot(std::string_view name) { return name.substr(0, name.find('.')); }

std::optional<std::string> CellIfThere(IVShape& shape, const std::string& cell) {
  if (!shape.CellExists(cell, kExistsAnywhere)) return std::nullopt;
  return shape.Cells(cell)->Formula();
}

std::string TextIfThere(IVShape& shape, const std::string& cell) { return UnquoteText(CellIfThere(shape, cell).value_or("")); }

bool HasConnectorMaster(std::string_view name) { return LowerAscii(name).find("connector") != std::string::npos; }

ConnectorKind KindOfMaster(std::string_view name) {
  for (const ConnectorMaster& master : kConnectorMasters)
    if (name.starts_with(master.name)) return master.kind;
  return ConnectorKind::Plain;
}

class PageReader {
 public:
  PageReader(ModelSource& source, IVPage& page, int number)
      : source_(source), page_(page), number_(number), shapes_(page.Shapes()), firstModule_(source.modules.size()) {}

  void Read() {
    const BulkTexts masters = page_.MasterNames();
    const int count = shapes_->Count();
    for (int position = 1; position <= count; ++position) {
      const IVShapePtr shape = shapes_->Item(position);
      const std::string_view master = masters.texts()[static_cast<size_t>(position - 1)].value_or("");
      if (shape->RowExists(kSectionObject, kRowXForm1D, kExistsAnywhere))
        connectors_.push_back({shape, position, HasConnectorMaster(master), KindOfMaster(master)});
      else
        ReadModule(*shape, position, master);
    }
    ReadProperties();
    ReadConnectors();
    source_.pages.push_back(ReadPage(count));
  }

 private:
  struct Drawn {
    IVShapePtr shape;
    int position;
    bool isConnector;
    ConnectorKind kind;
  };

  void ReadModule(IVShape& shape, int position, std::string_view master) {
    const auto className = CellIfThere(shape, kClassNameCell);
    const ModuleSchema* schema = className ? FindModule(UnquoteText(*className)) : FindModule(BeforeDot(master));
    if (!schema) return;
    // Other stencils have masters of these names, too.
    if (!className && !shape.CellExists(CellName(schema->Name().field), kExistsAnywhere)) return;
    SourceModule module;
    module.schema = schema;
    module.page = number_;
    module.shape = shape.ID();
    module.position = position;
    module.text = shape.Text();
    module.hasClass = className.has_value();
    module.hasThirdPoint = schema == FindModule("Separate") && HasThirdPoint(shape);
    module.values.resize(schema->properties.size());
    source_.modules.push_back(std::move(module));
  }

  // One that the host has made by itself is no exit.
  static bool HasThirdPoint(IVShape& shape) {
    constexpr short kRow = 2;
    if (!shape.RowExists(kSectionConnectionPts, kRow, kExistsAnywhere)) return false;
    const std::string mark = shape.CellsSRC(kSectionConnectionPts, kRow, kCellConnectionAutoGen)->Formula();
    return mark != "1" && mark != "TRUE";
  }

  // Each property of all modules of a kind at once.
  void ReadProperties() {
    std::array<std::vector<size_t>, std::size(kModules)> ofKind;
    for (size_t i = firstModule_; i < source_.modules.size(); ++i)
      ofKind[static_cast<size_t>(source_.modules[i].schema - kModules)].push_back(i);
    for (size_t kind = 0; kind < ofKind.size(); ++kind) {
      std::vector<int> positions;
      for (const size_t i : ofKind[kind]) positions.push_back(source_.modules[i].position);
      if (positions.empty()) continue;
      for (size_t place = 0; place < kModules[kind].properties.size(); ++place) {
        const BulkTexts formulas = page_.PropertyFormulas(positions, kModules[kind].properties[place].field);
        for (size_t i = 0; i < positions.size(); ++i)
          if (const auto formula = formulas.texts()[i])
            source_.modules[ofKind[kind][i]].values[place] = ViewBetweenQuotes(*formula);
      }
    }
    for (size_t i = firstModule_; i < source_.modules.size(); ++i) {
      SourceModule& module = source_.modules[i];
      module.name = TrimBlanks(module.values.front().value_or(""));
      if (module.name.empty()) module.name = TrimBlanks(module.text);
    }
  }

  void ReadConnectors() {
    if (connectors_.empty()) return;
    for (size_t i = firstModule_; i < source_.modules.size(); ++i) {
      const int id = source_.modules[i].shape;
      modulesByName_.emplace(shapes_->ItemFromID(id)->Name(), static_cast<int>(i));
      modulesByName_.emplace("Sheet." + std::to_string(id), static_cast<int>(i));
    }
    for (const Drawn& drawn : connectors_) {
      SourceConnector connector;
      connector.begin = ReadEnd(*drawn.shape, kBegin);
      connector.end = ReadEnd(*drawn.shape, kEnd);
      const bool touchesModule = connector.begin.at == ConnectorEnd::At::Module || connector.end.at == ConnectorEnd::At::Module;
      // Any other line is part of the picture alone.
      if (!touchesModule && (!drawn.isConnector || firstModule_ == source_.modules.size())) continue;
      connector.page = number_;
      connector.shape = drawn.shape->ID();
      connector.position = drawn.position;
      connector.name = drawn.shape->Name();
      connector.kind = drawn.kind;
      source_.connectors.push_back(std::move(connector));
    }
  }

  ConnectorEnd ReadEnd(IVShape& connector, const EndCells& cells) {
    const std::string formula = CellIfThere(connector, cells.x).value_or("");
    std::string name = ShapeReferredTo(formula, kGluedBeginning);
    if (name.empty()) name = ShapeReferredTo(CellIfThere(connector, cells.trigger).value_or(""), kTriggerBeginning);
    ConnectorEnd end;
    if (name.empty()) return end;
    end.point = PointReferredTo(formula);
    if (const auto found = modulesByName_.find(name); found != modulesByName_.end()) {
      end.at = ConnectorEnd::At::Module;
      end.module = found->second;
      return end;
    }
    end.at = ConnectorEnd::At::OtherShape;
    end.text = TextOf(name);
    return end;
  }

  // Its name where it shows none, and where the host does not find it by its name.
  std::string TextOf(const std::string& name) {
    const auto [found, isNew] = otherTexts_.try_emplace(name, name);
    if (!isNew) return found->second;
    try {
      if (const std::string text(TrimBlanks(shapes_->Item(name)->Text())); !text.empty()) found->second = text;
    } catch (const HostError& error) {
      if (error.number() != kHostBadIndex) throw;
    }
    return found->second;
  }

  SourcePage ReadPage(int shapes) {
    SourcePage page;
    const IVShapePtr sheet = page_.PageSheet();
    page.id = page_.ID();
    page.name = page_.Name();
    page.shapes = shapes;
    page.parent = TextIfThere(*sheet, CellName(kParentPageRow));
    page.count = TextIfThere(*sheet, CellName("Count"));
    for (size_t kind = 0; kind < kModuleKinds.size(); ++kind) {
      const auto text = CellIfThere(*sheet, CellName(kModuleKinds[kind]));
      page.isKept = page.isKept || text.has_value();
      page.registers[kind] = UnquoteText(text.value_or(""));
    }
    return page;
  }

  ModelSource& source_;
  IVPage& page_;
  int number_;
  IVShapesPtr shapes_;
  size_t firstModule_;
  std::vector<Drawn> connectors_;
  std::unordered_map<std::string, int> modulesByName_;
  std::unordered_map<std::string, std::string> otherTexts_;
};

void ReadSetupCells(IVShape& sheet, SetupTexts& setup) {
  for (size_t i = 0; i < setup.size(); ++i) {
    const auto formula = CellIfThere(sheet, std::string(InfoOf(static_cast<SetupItem>(i)).cell));
    if (formula) setup[i] = UnquoteText(*formula);
  }
}

}  // namespace

ModelSource ReadDrawing(const IVDocumentPtr& document) {
  ModelSource source;
  ReadSetupCells(*document->DocumentSheet(), source.setup);
  const IVPagesPtr pages = document->Pages();
  const int count = pages->Count();
  for (int i = 1; i <= count; ++i) PageReader(source, *pages->Item(i), i - 1).Read();
  return source;
}

}  // namespace vardo
