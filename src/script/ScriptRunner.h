// `vardo script`: a drawing and its dialogs driven by JSON lines; docs/script-protocol.md describes the language.
#pragma once

#include "forms/FormPresenter.h"
#include "platform/Platform.h"
#include "script/AddinSession.h"

#include <nlohmann/json.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

namespace vardo {

using Json = nlohmann::ordered_json;

class ScriptRunner {
 public:
  // The next line of input, without its end; none when there are no more.
  using LineSource = std::function<std::optional<std::string>()>;

  ScriptRunner(bool withAddin, LineSource nextLine, std::ostream& output, Platform& machine);
  ~ScriptRunner();

  // The toolkit that shows the forms; both must outlive the runner. Its RunModal is to call Pump.
  void UseForms(FormPresenter& presenter, FormDriver& driver);
  // Runs commands until the form is closed or there are no more.
  void Pump(Form& form);

  // Throws FileError.
  void Open(const std::filesystem::path& file) { session_.Open(file); }
  // Runs commands until there are no more. Returns 0, or 1 when the last reply was a failure.
  int Run();

 private:
  class ScriptPlatform;
  class ScriptPresenter;
  struct Command;
  static const Command kCommands[];

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
      Redo(const Json&), Screen(const Json&), Screenshot(const Json&);
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

  LineSource nextLine_;
  std::ostream& output_;
  AddinSession session_;
  std::unique_ptr<ScriptPlatform> platform_;
  std::unique_ptr<ScriptPresenter> presenter_;
  FormDriver* driver_ = nullptr;
  bool lastFailed_ = false;
};

}  // namespace vardo
