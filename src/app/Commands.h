// The commands of the program `vardo`. What they throw reaches main, which says it in a sentence on standard error and ends with
// status 1; so it does when their output could not be written.
#pragma once

#include "run/PreparedRun.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace vardo {

// What has come of a command.
struct Outcome {
  int status = 0;                              // 1: refused, and said so
  std::optional<std::filesystem::path> saved;  // the file that its work is in, whatever becomes of the report
};

struct ShowOptions {
  std::filesystem::path file;
  bool json = false;
};
// Prints pages, modules with their properties, and connections.
Outcome ShowDrawing(const ShowOptions& options, std::ostream& output);

struct CheckOptions {
  std::filesystem::path file;
  std::filesystem::path json;       // "-": instead of the lines, on the output; empty: none
  std::optional<int> maxWarnings;   // more of them than that are a failure
  std::vector<std::string> ignore;  // rules
};
// Prints what the rules say of the drawing. Status 1: an error, or too many warnings.
Outcome CheckDrawing(const CheckOptions& options, std::ostream& output);

// Where results go beside the tables; empty: not there.
struct ResultsOptions {
  std::filesystem::path json;  // "-": instead of the tables, on the output
  std::filesystem::path csv;   // a folder
  std::filesystem::path html;
  bool all = false;      // a second table, of all observations
  bool isQuiet = false;  // no tables
};

struct SimulateOptions {
  std::filesystem::path file;
  RunOrder order;
  std::string part;      // I/N or auto; empty: all
  unsigned threads = 0;  // 0: all cores
  std::uint32_t mostEntities = 1'000'000;
  std::uint64_t mostSteps = 100'000'000;
  bool keepsBuckets = true;
  bool savesSetup = false;      // into the drawing
  std::filesystem::path trace;  // empty: none
  std::uint64_t traceReplication = 1;
  ResultsOptions results;
};
// Runs the model that the drawing shows. Status 1: it has errors, or was stopped. Throws RunError.
Outcome SimulateDrawing(const SimulateOptions& options, std::ostream& output);

struct MergeOptions {
  std::vector<std::filesystem::path> files;
  RunOrder precision;  // what is to be precise, and how; nothing else
  ResultsOptions results;
};
// Puts the results of parts of one run together.
Outcome MergeResults(const MergeOptions& options, std::ostream& output);

struct EditOptions {
  std::filesystem::path file;
  std::string shape;                     // its name, ID, or text
  std::string page;                      // empty: all pages are searched
  std::vector<std::string> assignments;  // FIELD=TEXT
  std::optional<std::filesystem::path> output;
  bool force = false;  // save over a file that another program has changed meanwhile
};
// Opens a module's dialog on screen, or fills it in without one when there are assignments; saves when OK was accepted.
Outcome EditModule(const EditOptions& options, std::ostream& output, int argc, char** argv);

struct ScriptOptions {
  std::filesystem::path file;  // empty: none is opened
  std::string forms = "headless";
  bool withoutAddin = false;
};
Outcome RunScript(const ScriptOptions& options, std::ostream& output, int argc, char** argv);

struct NewOptions {
  std::filesystem::path file;
  bool replace = false;
};
Outcome NewDrawing(const NewOptions& options, std::ostream& output);

struct StencilOptions {
  std::filesystem::path folder = ".";
  bool replace = false;
};
// Writes the stencil and the template into the folder.
Outcome WriteStencil(const StencilOptions& options, std::ostream& output);

struct DesktopOptions {
  std::vector<std::filesystem::path> files;  // none: a new drawing
};
// Shows the drawing program until its window is closed.
Outcome ShowDesktop(const DesktopOptions& options, int argc, char** argv);

struct PictureOptions {
  std::filesystem::path file, output;  // the output's ending says what is made: .svg, .png or .pdf
  std::string page;                    // empty: the first, or all
  bool allPages = false;
  double scale = 1;
};
// What could not be painted as it is meant goes to standard error, a line each.
Outcome MakePicture(const PictureOptions& options, std::ostream& output);

}  // namespace vardo
