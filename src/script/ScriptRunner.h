// `vardo script`: a drawing and its dialogs driven by JSON lines; docs/script-protocol.md describes the language.
#pragma once

#include "script/AddinSession.h"
#include "script/Desktop.h"
#include "script/Request.h"

#include <functional>
#include <optional>
#include <ostream>
#include <string>

namespace vardo {

class ScriptRunner : private DesktopListener {
 public:
  // The next line of input, without its end; none when there are no more, or none yet.
  using LineSource = std::function<std::optional<std::string>()>;

  // The session and the desktop that its add-in works on must outlive the runner.
  ScriptRunner(AddinSession& session, Desktop& desktop, LineSource nextLine, std::ostream& output);

  // Runs the lines there are, as long as the output takes the replies and every command under way waits for a form of its own:
  // to be called at first, and by whatever runs while a form is shown. Lines behind one that closes a form are left until the
  // commands below have ended.
  void Serve();
  bool IsReady() const { return commandsUnderWay_ == formsShown_; }
  bool CanAnswer() const { return output_.good(); }
  // The exit status: 0, or 1 when the last reply was a failure or could not be given.
  int Status() const { return lastFailed_ || !CanAnswer() ? 1 : 0; }

 private:
  struct Command;
  static const Command kCommands[];

  void FormShown(const std::string& name, const std::string& caption) override;
  void FormClosed(const std::string& name) override;
  void MessageShown(const std::string& text, const std::string& title, int style) override;
  void HelpShown(const std::string& file, const std::string& topic) override;

  void Handle(const std::string& line);
  Json Execute(const std::string& name, const Json& arguments);
  void Emit(const Json& line);
  void Event(const char* name, Json fields);

  // One method a command. The result is null where there is none.
  Json New(const Json&), OpenFile(const Json&), Save(const Json&), Pages(const Json&), PageAdd(const Json&),
      PageDelete(const Json&), PageShow(const Json&), PageRename(const Json&), PageActive(const Json&), Masters(const Json&),
      Shapes(const Json&), Drop(const Json&), Connect(const Json&), Paste(const Json&), Select(const Json&), Delete(const Json&),
      TypeText(const Json&), Cell(const Json&), SetCell(const Json&), Rows(const Json&), RowDelete(const Json&),
      Menus(const Json&), MenuRun(const Json&), Actions(const Json&), ActionRun(const Json&), Undo(const Json&),
      CheckDrawing(const Json&), SimulateDrawing(const Json&), Redo(const Json&), Screen(const Json&), Screenshot(const Json&);
  Json SetupEventSink(const Json&), AddVardoMenu(const Json&), InitializePage(const Json&), ShowEditor(const Json&),
      Submodel(const Json&), CloseSubmodel(const Json&), CopyAndPaste(const Json&), LoadedFormNames(const Json&);
  Json DescribeForm(const Json&), FormType(const Json&), FormPick(const Json&), FormCheck(const Json&), FormFocus(const Json&),
      FormClick(const Json&), FormDblClick(const Json&), FormKey(const Json&);

  DrawingPage& PageArgument(const Json& arguments, const char* name = "page");
  SheetRef ShapeArgument(const Json& arguments, const char* name);
  SheetRef ShapeNamed(const Json& shape, DrawingPage& page);
  DrawingHost::End EndArgument(const Json& arguments, DrawingPage& page, const char* shape, const char* point);
  SheetRef SheetArgument(const Json& arguments);
  Json DescribeShape(const SheetRef& ref);
  void RunAddon(const std::string& caption, const std::string& statement);

  ControlSeen ControlArgument(const Json& arguments);

  AddinSession& session_;
  Desktop& desktop_;
  LineSource nextLine_;
  std::ostream& output_;
  int commandsUnderWay_ = 0;
  int formsShown_ = 0;
  bool lastFailed_ = false;
};

}  // namespace vardo
