#include "app/Commands.h"
#include "app/StandardStreams.h"
#include "base/Errors.h"
#include "base/FileError.h"
#include "base/Text.h"
#include "platform/FileSystem.h"
#include "props/StringFunctions.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <new>

namespace {

using namespace vardo;

constexpr int kWrongUsage = 2;

// The program's own options, and what they ask for.
struct CommandLine {
  CLI::App app{"Models business and production processes as flowcharts in Visio drawings.", "vardo"};
  ShowOptions show;
  CheckOptions check;
  SimulateOptions simulate;
  MergeOptions merge;
  std::vector<std::string> outputs, ignored;  // of simulate, and the first of merge
  EditOptions edit;
  ScriptOptions script;
  NewOptions create;
  StencilOptions stencil;
  PictureOptions picture;
  DesktopOptions desktop;
  CLI::App* showCommand = nullptr;
  CLI::App* checkCommand = nullptr;
  CLI::App* simulateCommand = nullptr;
  CLI::App* mergeCommand = nullptr;
  CLI::App* editCommand = nullptr;
  CLI::App* scriptCommand = nullptr;
  CLI::App* newCommand = nullptr;
  CLI::App* stencilCommand = nullptr;
  CLI::App* pictureCommand = nullptr;
  CLI::App* desktopCommand = nullptr;

  CommandLine() {
    app.require_subcommand(1);
    app.set_version_flag("--version", "vardo " VARDO_VERSION);
    app.failure_message([](const CLI::App*, const CLI::Error& error) {
      return InWords(error.what()) + "\nRun with --help for more information.\n";
    });
    app.footer(
        "Examples:\n  vardo new bank.vsdx\n  vardo show bank.vsdx\n  vardo check bank.vsdx\n  vardo edit bank.vsdx Create "
        "CreateUnits=Minutes\n");

    desktopCommand = app.add_subcommand("desktop", "Draw and edit in a window");
    desktopCommand->add_option("FILE", desktop.files, "Drawings to open; without any a new one is begun");
    desktopCommand->footer("Examples:\n  vardo desktop\n  vardo desktop bank.vsdx\n");

    showCommand = app.add_subcommand("show", "Print a drawing's pages, modules and connections");
    showCommand->add_option("FILE", show.file, "The drawing")->required();
    showCommand->add_flag("--json", show.json, "Print JSON");
    showCommand->footer("Examples:\n  vardo show bank.vsdx\n  vardo show --json bank.vsdx\n");

    checkCommand = app.add_subcommand("check", "Say what is wrong with the model that a drawing shows");
    checkCommand->add_option("FILE", check.file, "The drawing")->required();
    checkCommand->add_option("--json", check.json, "Write the findings to this file, too; - prints them instead of the lines");
    checkCommand->add_option("--max-warnings", check.maxWarnings, "End with status 1 when there are more warnings")
        ->check(CLI::NonNegativeNumber);
    AddRepeated(checkCommand, "--ignore", check.ignore, "A rule not to apply; may be given several times");
    checkCommand->footer(
        "Examples:\n  vardo check bank.vsdx\n  vardo check --max-warnings 0 --ignore names/text-differs bank.vsdx\n"
        "  vardo check --json - bank.vsdx\n");

    AddSimulate();

    editCommand = app.add_subcommand("edit", "Edit a module in its dialog, on screen or with the fields given");
    editCommand->add_option("FILE", edit.file, "The drawing")->required();
    editCommand->add_option("SHAPE", edit.shape, "The module's shape: its name, its ID or its text")->required();
    editCommand->add_option("FIELD=TEXT", edit.assignments, "What to put into the dialog's fields, in this order");
    editCommand->add_option("-p,--page", edit.page, "The page the shape is on");
    editCommand->add_option("-o,--output", edit.output, "Save to this file and leave FILE as it is");
    editCommand->add_flag("--force", edit.force, "Save even if another program has changed the file meanwhile");
    editCommand->footer(
        "Examples:\n  vardo edit bank.vsdx Create\n  vardo edit bank.vsdx Create CreateUnits=Minutes CreateValue=5\n"
        "  vardo edit bank.vsdx \"Customer arrives\" CreateType=Schedule -o plan.vsdx\n");

    scriptCommand = app.add_subcommand("script", "Drive a drawing and its dialogs with JSON lines");
    scriptCommand->add_option("FILE", script.file, "The drawing to open first");
    scriptCommand->add_option("--forms", script.forms, "What shows the dialogs")->check(CLI::IsMember({"headless", "qt"}));
    scriptCommand->add_flag("--no-addin", script.withoutAddin, "Do not start the add-in when a drawing is opened");
    scriptCommand->footer(
        "Examples:\n  echo '{\"do\":\"pages\"}' | vardo script bank.vsdx\n  vardo script --forms qt < story.jsonl\n");

    newCommand = app.add_subcommand("new", "Make a drawing with the modules and connectors at hand");
    newCommand->add_option("FILE", create.file, "The drawing to make")->required();
    newCommand->add_flag("--replace", create.replace, "Replace a file of that name");
    newCommand->footer("Examples:\n  vardo new bank.vsdx\n");

    stencilCommand = app.add_subcommand("stencil", "Make the stencil and the template for Visio");
    stencilCommand->add_option("FOLDER", stencil.folder, "Where to put Vardo.vssx and Vardo.vstx; without it, here");
    stencilCommand->add_flag("--replace", stencil.replace, "Replace files of these names");
    stencilCommand->footer("Examples:\n  vardo stencil\n  vardo stencil --replace \"My Shapes\"\n");

    pictureCommand = app.add_subcommand("picture", "Make pictures of a drawing's pages: SVG, PNG or PDF");
    pictureCommand->add_option("FILE", picture.file, "The drawing")->required();
    pictureCommand->add_option("-o,--output", picture.output, "The picture: OUT.svg, OUT.png or OUT.pdf")->required();
    auto* const page = pictureCommand->add_option("-p,--page", picture.page, "The page, instead of the first");
    pictureCommand->add_flag("--all-pages", picture.allPages, "All pages: OUT.svg, OUT-2.svg, ..., or one PDF")->excludes(page);
    pictureCommand->add_option("--scale", picture.scale, "How large; at 1 an inch is 96 pixels")->check(CLI::Range(0.01, 100.0));
    pictureCommand->footer(
        "Examples:\n  vardo picture bank.vsdx -o bank.svg\n  vardo picture bank.vsdx --all-pages -o bank.pdf\n"
        "  vardo picture bank.vsdx --page Bank -o bank.png --scale 2\n");
  }

  void AddSimulate() {
    simulateCommand = app.add_subcommand("simulate", "Run the model that a drawing shows");
    simulateCommand->add_option("FILE", simulate.file, "The drawing")->required();
    const auto addSetup = [this](SetupItem item, const char* help) {
      simulateCommand->add_option(std::string(InfoOf(item).option), simulate.order.setup[static_cast<size_t>(item)], help);
    };
    addSetup(SetupItem::Replications, "How many replications, or which: 101..200");
    addSetup(SetupItem::Length, "When a replication ends: 8h, 30 d, 90 min");
    addSetup(SetupItem::Until, "Ends a replication as soon as this expression is not 0");
    addSetup(SetupItem::WarmUp, "When statistics begin anew; auto proposes a time");
    addSetup(SetupItem::TimeUnit, "Seconds, Minutes, Hours or Days");
    addSetup(SetupItem::Seed, "Of the random numbers");
    addSetup(SetupItem::Confidence, "Of half-widths, in percent");
    addSetup(SetupItem::Precision, "Runs replications until the half-widths are that small, in percent of the means");
    addSetup(SetupItem::MaxReplications, "At most so many, with --precision");
    AddRepeated(simulateCommand, "--of", outputs, "Whose precision counts; may be given several times");
    AddRepeated(simulateCommand, "--ignore", ignored, "A rule not to apply; may be given several times");
    AddRepeated(simulateCommand, "--set", simulate.order.settings,
                "For this run: NAME=VALUE of a variable, or \"MODULE, FIELD=TEXT\"; may be given several times");
    simulateCommand->add_flag("--save-setup", simulate.savesSetup, "Keep these options of the run in the drawing");
    simulateCommand->add_option("--threads", simulate.threads, "How many; never changes a result");
    simulateCommand->add_option("--part", simulate.part, "The I-th of N parts of the replications, as I/N, or auto");
    simulateCommand->add_option("--max-entities", simulate.mostEntities, "Alive at a time")
        ->check(CLI::Range(1, (1 << 24) - 65536));
    simulateCommand->add_option("--max-steps", simulate.mostSteps, "Within one instant")->check(CLI::PositiveNumber);
    simulateCommand->add_flag("!--no-buckets", simulate.keepsBuckets, "Leave out what quantiles are made of");
    simulateCommand->add_option("--trace", simulate.trace, "Write what happens in one replication to this file, as JSON lines");
    simulateCommand->add_option("--trace-replication", simulate.traceReplication, "Which one; 1 unless it is given")
        ->check(CLI::PositiveNumber);
    AddResults(simulateCommand, simulate.results);
    simulateCommand->footer(
        "Examples:\n  vardo simulate bank.vsdx --length 8h\n  vardo simulate bank.vsdx --length 30d --warm-up 2d --seed 7\n"
        "  vardo simulate bank.vsdx --length 8h --part 2/10 --json part2.json\n");

    mergeCommand = app.add_subcommand("merge", "Put the results of parts of one run together");
    mergeCommand->add_option("FILE", merge.files, "Results, as --json writes them")->required();
    mergeCommand->add_option("--precision", merge.precision.setup[static_cast<size_t>(SetupItem::Precision)],
                             "Say how many replications it takes for half-widths that small, in percent of the means");
    AddRepeated(mergeCommand, "--of", outputs, "Whose precision counts; may be given several times");
    AddResults(mergeCommand, merge.results);
    mergeCommand->footer("Examples:\n  vardo merge part*.json --json all.json\n");
  }

  static void AddRepeated(CLI::App* command, const char* name, std::vector<std::string>& texts, const char* help) {
    command->add_option(name, texts, help)->expected(1)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  }
  static void AddResults(CLI::App* command, ResultsOptions& results) {
    command->add_option("--json", results.json, "Write the results to this file, too; - prints them instead of the tables");
    command->add_option("--csv", results.csv, "Write summary.csv and replications.csv into this folder, too");
    command->add_option("--html", results.html, "Write a page with tables and plots to this file, too");
    command->add_flag("--all", results.all, "All lines, and a second table of all observations");
    command->add_flag("--quiet", results.isQuiet, "Print nothing but failures");
  }

  // Options that are given several times are one text in the set-up.
  void JoinRepeated(SetupTexts& setup) {
    const auto join = [&](SetupItem item, const std::vector<std::string>& texts) {
      if (!texts.empty()) setup[static_cast<size_t>(item)] = JoinList(texts);
    };
    join(SetupItem::PrecisionOf, outputs);
    join(SetupItem::Ignore, ignored);
  }

  Outcome Run(std::ostream& output, int argc, char** argv) {
    if (*showCommand) return ShowDrawing(show, output);
    if (*checkCommand) return CheckDrawing(check, output);
    if (*simulateCommand) {
      JoinRepeated(simulate.order.setup);
      return SimulateDrawing(simulate, output);
    }
    if (*mergeCommand) {
      JoinRepeated(merge.precision.setup);
      return MergeResults(merge, output);
    }
    if (*editCommand) return EditModule(edit, output, argc, argv);
    if (*scriptCommand) return RunScript(script, output, argc, argv);
    if (*stencilCommand) return WriteStencil(stencil, output);
    if (*desktopCommand) return ShowDesktop(desktop, argc, argv);
    if (*pictureCommand) return MakePicture(picture, output);
    return NewDrawing(create, output);
  }
};

Outcome Obey(std::ostream& output, int argc, char** argv) {
  CommandLine line;
  try {
    line.app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return {line.app.exit(error, output, std::cerr) == 0 ? 0 : kWrongUsage, {}};
  }
  return line.Run(output, argc, argv);
}

std::string Unwritten(const Outcome& outcome, const std::string& why) {
  const std::string done = outcome.saved ? PathInWords(*outcome.saved) + " is saved, but the report on it" : "The output";
  return done + " could not be written (" + why + ").";
}

int Fail(std::string_view sentence) {
  Tell(sentence);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  PrepareStandardStreams();
  try {
    StandardOutput output;
    const Outcome outcome = Obey(output, argc, argv);
    return output.Finish() ? outcome.status : Fail(Unwritten(outcome, output.Failure()));
  } catch (const std::bad_alloc&) {
    return Fail("There is not enough memory for this drawing.");
  } catch (const std::exception& error) {
    return Fail(error.what());
  }
}
