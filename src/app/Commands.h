// The commands of the program `vardo`. Each returns the exit status: 0 done, 1 refused or failed with a sentence on standard
// error. FileError and AutomationError reach main, which prints their sentence and returns 1.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vardo {

struct ShowOptions {
  std::filesystem::path file;
  bool json = false;
};
// Prints pages, modules with their properties, and connections.
int ShowDrawing(const ShowOptions& options);

struct EditOptions {
  std::filesystem::path file;
  std::string shape;                     // its name, ID, or text
  std::string page;                      // empty: all pages are searched
  std::vector<std::string> assignments;  // FIELD=TEXT
  std::optional<std::filesystem::path> output;
  bool force = false;  // save over a file that another program has changed meanwhile
};
// Opens a module's dialog on screen, or fills it in without one when there are assignments; saves when OK was accepted.
int EditModule(const EditOptions& options, int argc, char** argv);

struct ScriptOptions {
  std::filesystem::path file;  // empty: none is opened
  std::string forms = "headless";
  bool withoutAddin = false;
};
int RunScript(const ScriptOptions& options, int argc, char** argv);

struct NewOptions {
  std::filesystem::path file;
  bool replace = false;
};
int NewDrawing(const NewOptions& options);

}  // namespace vardo
