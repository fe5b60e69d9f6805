// The in-memory drawing host: what a person does in the drawing program, and the object model through which the add-in sees it.
//   One drawing is open at a time. Everything runs on the caller's thread; events are delivered inside the call that raises them.
//   Each command of a person, with all that its listeners did, is one undo step. An undo or redo raises events for what it
//   brings, takes and changes, and says all the while that it is one.
#pragma once

#include "addin/host/HostFwd.h"
#include "addin/host/IVEventList.h"
#include "base/Errors.h"
#include "document/Drawing.h"
#include "document/ReplayNews.h"
#include "memoryhost/HeldRows.h"
#include "memoryhost/HostMenus.h"
#include "memoryhost/SheetRef.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// One write of the add-in or a person to a cell or, with an empty cell name, to a shape's text.
struct CellWrite {
  std::string sheet;  // the shape's name, "ThePage" or "TheDoc"
  std::string cell;   // "Prop.CreateName"; empty for the shape's text
  std::string text;   // the formula, or the text
  bool operator==(const CellWrite&) const = default;
};

class DrawingHost {
 public:
  DrawingHost();
  ~DrawingHost();
  DrawingHost(const DrawingHost&) = delete;
  DrawingHost& operator=(const DrawingHost&) = delete;

  // The object model; good as long as the host.
  const IVApplicationPtr& application() const { return application_; }

  // --- The drawing. Throw FileError, or HostError 5 where nothing is open; the open drawing stays as it was.
  void New();
  void Open(const std::filesystem::path& file);
  // Without a file, where it was opened from or last saved. Returns the file. One that another program has changed meanwhile is
  // refused unless overwriting is allowed.
  std::filesystem::path Save(const std::optional<std::filesystem::path>& file, Overwrite overwrite = Overwrite::Refuse);
  // Where the drawing was opened from or last saved; empty for a new one.
  const std::filesystem::path& file() const { return file_; }
  bool IsOpen() const { return drawing_ != nullptr; }
  Drawing& drawing();

  // --- Pages.
  DrawingPage& ActivePage();
  IVPagePtr AddPage(const std::optional<std::string>& name);
  void DeletePage(int pageId, bool renumber);
  void ShowPage(int pageId);
  void RenamePage(int pageId, std::string_view name);

  // --- Shapes. Positions in inches from the page's lower left corner.
  std::vector<std::string> MasterNames();
  // Null when a listener has deleted it.
  IVShapePtr Drop(std::string_view master, int pageId, double x, double y, const std::optional<std::string>& text);
  // The copies that no listener has deleted.
  std::vector<IVShapePtr> Paste(const std::vector<SheetRef>& originals, int pageId);
  // Draws a connector and glues its ends before its event is raised; it is selected then. Points count from 1. Null when a
  // listener has deleted it. Throws HostError when the master is no connector or a shape has no such point; nothing is drawn
  // then.
  struct End {
    std::optional<int> shape = {};  // none: a loose end
    std::optional<int> point = {};
    bool walks = false;  // without a point: glued to the shape as a whole, not to a new point at its outline
  };
  IVShapePtr Connect(std::string_view master, int pageId, const End& begin, const End& end);
  // Takes an end of a connector to another shape of its page, selects the connector and tells of it as of one just drawn. A
  // listener that refuses it may delete it.
  void Reglue(const SheetRef& connector, bool isBegin, const End& end);
  void Select(const std::vector<int>& shapeIds);  // of the active page
  // Deletes those shapes of the active page after raising the event that comes before a selection goes.
  void DeleteSelection();
  // A person types: the event is raised with nothing selected, unless the selection is kept.
  void TypeText(const SheetRef& shape, std::string_view text, bool keepSelection);
  // Makes a missing Prop. or User. row first.
  void SetCell(const SheetRef& sheet, std::string_view cell, std::string_view formula);
  void DeleteRow(const SheetRef& sheet, short section, short row);

  // What a command of the add-in does in one undo step.
  void RunCommand(std::string_view label, const std::function<void()>& command);

  // Throw HostError(kHostNotAllowed) when there is nothing to undo or redo, or a scope is open. Return the step's label. Undo
  // shows the page that was shown before the step.
  std::string Undo();
  std::string Redo();
  bool IsUndoingOrRedoing() const { return replaying_; }

  // How much of what has been done can be undone, in this drawing and in those opened later.
  void SetUndoLimit(EditLog::Limit limit);

  // Told after each step, and after each that is undone or redone, what it has touched. None for nobody.
  using StepObserver = std::function<void(const std::vector<TouchedCell>&)>;
  void SetStepObserver(StepObserver observer);

  // --- Menus.
  HostMenus& menus() { return menus_; }

  // --- For tests and for commands that report what they did.
  void StartWriteLog();
  std::vector<CellWrite> TakeWriteLog();

  // --- Behind the object model. Throw HostError(kHostObjectGone) when the sheet or page has gone.
  struct SheetView {
    DrawingPage* page;  // null for the document's sheet
    Sheet* sheet;
  };
  SheetView Resolve(const SheetRef& ref);
  // Another one once what has been resolved may have gone.
  std::uint64_t Stamp() const;
  DrawingShape& ResolveShape(const SheetRef& ref);
  DrawingPage& ResolvePage(int drawing, int pageId);
  SheetRef RefTo(const DrawingPage& page, int shapeId) const { return {serial_, page.id(), shapeId}; }
  // The page's own sheet, or the document's.
  SheetRef RefTo(const DrawingPage& page, SheetKind kind) const { return {serial_, page.id(), 0, kind}; }
  int serial() const { return serial_; }
  const std::vector<int>& selection() const { return selection_; }
  // Formulas name shapes by their names here, and by "Sheet." and their IDs in the drawing, so that a shape can be renamed.
  std::string FormulaOf(const SheetView& view, const CellAddress& address);
  std::string FormulaOf(const SheetRef& ref, const CellAddress& address) { return FormulaOf(Resolve(ref), address); }
  void WriteFormula(const SheetRef& ref, const CellAddress& address, std::string_view formula);
  void AddSection(const SheetRef& ref, const SectionInfo& section);
  short AddRow(const SheetRef& ref, const SectionInfo& section, short position);
  short AddNamedRow(const SheetRef& ref, const SectionInfo& section, std::string_view name);
  // formulas: the last one serves for all further cells. refused: what is thrown when those have been written. Inside a command,
  // cells before one that fails stay written.
  void WriteFormulas(const SheetRef& ref, const std::vector<CellAddress>& cells, const std::vector<std::string>& formulas,
                     const std::optional<HostError>& refused);
  // The row of a cell that is going to be held; null for one that is known by its name.
  std::shared_ptr<const HeldRow> HoldRow(const SheetRef& ref, const CellAddress& address);
  // The shape's name, "ThePage" or "TheDoc".
  std::string SheetName(const SheetRef& ref);
  void WriteText(const SheetRef& ref, std::string_view text);
  void DeleteShape(const SheetRef& ref);
  void DeleteMaster(int masterId);
  IVEventPtr Advise(std::int16_t code, const IVEventSinkPtr& sink, std::string_view targetArgs);
  int AdviseCount() const { return static_cast<int>(advises_.size()); }
  IVEventPtr AdviseAt(int index);
  int BeginUndoScope(std::string_view label);
  void EndUndoScope(int scope, bool keep);

 private:
  struct AdvisedEvent;
  class Command;
  class OpenScopesEnd;

  struct UndoScope {
    int number, pageBefore;
  };

  void Replace(std::unique_ptr<Drawing> drawing, const std::filesystem::path& file);
  std::string Replay(ReplayDirection direction);
  void TellOfGoing(const ReplayNews& news);
  void TellOfChange(const ReplayNews& news);
  void Raise(std::uint16_t code, const EventSubject& subject, std::string_view moreInfo = {});
  void RaiseTextChanged(const DrawingPage& page, int shapeId);
  void SelectAndTell(std::vector<int> shapeIds);
  IVShapePtr Announce(const SheetRef& ref);
  void PutFormula(const SheetRef& ref, const CellAddress& address, std::string_view formula);
  void RequirePoint(int pageId, const End& end);
  void Glue(const SheetRef& connector, const ConnectorEnd& cells, const End& end, Point otherEnd);
  int AddOutlinePoint(const SheetRef& ref, Point towards);
  void MoveRowsUp(const SheetRef& ref, const SectionInfo& section, short position);
  void TellTouched();
  void RefuseLostGlue(const SheetView& view, const CellAddress& address, const Formula& formula);

  IVApplicationPtr application_;
  HeldRows heldRows_;
  std::unique_ptr<Drawing> drawing_;
  std::filesystem::path file_;
  int serial_ = 0;
  int activePage_ = 0;
  std::vector<int> selection_;
  std::vector<std::shared_ptr<AdvisedEvent>> advises_;
  std::int32_t eventSequence_ = 0;
  bool replaying_ = false;
  std::vector<UndoScope> undoScopes_;
  int lastUndoScope_ = 0;
  HostMenus menus_;
  std::optional<std::vector<CellWrite>> writes_;
  StepObserver stepObserver_;
  EditLog::Limit undoLimit_;
};

}  // namespace vardo
