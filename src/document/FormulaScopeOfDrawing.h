// What the formula of a cell can ask about the drawing around it.
#pragma once

#include "document/CellAddress.h"
#include "formula/Formula.h"

namespace vardo {

class Drawing;
class DrawingPage;
class Sheet;

// Good while page and sheet are. page: null for the document's own sheet.
class FormulaScopeOfDrawing : public FormulaScope {
 public:
  FormulaScopeOfDrawing(Drawing& drawing, DrawingPage* page, const Sheet& sheet, const CellAddress& address)
      : drawing_(drawing), page_(page), sheet_(sheet), address_(address) {}

  std::optional<CellValue> Value(const FormulaReference& reference) const override;
  std::optional<Point> OnPage(std::string_view sheet, Point own) const override;
  std::optional<Point> WalkingEnd(std::string_view trigger, std::string_view otherTrigger) const override;
  bool WantsY() const override { return address_.cell.text().ends_with('Y'); }

 private:
  const Sheet* Find(std::string_view sheet) const;

  Drawing& drawing_;
  DrawingPage* page_;
  const Sheet& sheet_;
  const CellAddress& address_;
};

}  // namespace vardo
