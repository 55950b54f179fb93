#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "Files.h"
#include "TextClass.h"
#include "Verbs.h"

namespace {

constexpr int DefaultWidth = 80;
constexpr int MostWidth = 10000;

constexpr char Reported[] =
    "Exit status: 0 if there was nothing to report, 1 if there was, 2 if FILE cannot be read,\n"
    "the output cannot be written, or the program is used wrongly.";

struct Arguments {
  std::string file = "-";
  std::string otherFile = "-";
  std::vector<std::string> classes;
  std::size_t width = DefaultWidth;
  bool sorted = false;
  bool strict = false;
  bool svg = false;
};

class CommandLine {
 public:
  CommandLine() {
    app_.require_subcommand(1);
    app_.set_help_all_flag("--help-all", "Print the help messages of all verbs and exit");
    app_.footer(
        "FILE is standard input when it is left out or -. `lvtext VERB --help` tells the rest.\n"
        "Problems are reported as FILE:LINE:COLUMN: reason.");
    addCheck();
    addPrint();
    addFormat();
    addToJson();
    addFromJson();
    addGraph();
    addDiff();
    addStats();
  }

  int run(int count, char const* const* arguments) {
    try {
      if (!parse(count, arguments)) {
        return Success;
      }
      for (std::string const& declaration : given_.classes) {
        declareClass(declaration);
      }
      return verb_();
    } catch (CLI::ParseError const& error) {
      std::fprintf(stderr, "lvtext: %s\n`lvtext --help` tells how it is used.\n",
                   reasonOf(error).c_str());
      return Failure;
    } catch (std::exception const& error) {
      std::fprintf(stderr, "lvtext: %s\n", error.what());
      return Failure;
    }
  }

 private:
  // Whether there is a verb to run. There is none when help was asked for, which is given then.
  bool parse(int count, char const* const* arguments) {
    try {
      app_.parse(count, arguments);
      return true;
    } catch (CLI::Success const& request) {
      app_.exit(request, std::cout);
      flushOut();
      return false;
    }
  }

  // What is wrong with the arguments. Of what stands in place of a verb the parser does not tell.
  std::string reasonOf(CLI::ParseError const& error) const {
    bool const isVerbMissing =
        error.get_exit_code() == static_cast<int>(CLI::ExitCodes::RequiredError) &&
        app_.get_subcommands().empty();
    if (!isVerbMissing) {
      return error.what();
    }
    std::vector<std::string> const others = app_.remaining();
    return others.empty() ? "a verb is expected" : "a verb is expected, not " + others.front();
  }

  CLI::App* add(char const* name, char const* description, std::function<int()> verb) {
    CLI::App* const command = app_.add_subcommand(name, description);
    command->callback([this, verb = std::move(verb)] { verb_ = verb; });
    command->footer(Reported);
    return command;
  }

  void addFile(CLI::App* command) {
    command->add_option("FILE", given_.file, "The text to read.")->type_name("");
    addClasses(command);
  }

  void addClasses(CLI::App* command) {
    command
        ->add_option("--class", given_.classes,
                     "Read objects *NAME{...} with these fields. Up to 64 times.")
        ->type_name("NAME=COUNT|NAME=FIELD,...")
        ->type_size(1)
        ->allow_extra_args(false);
  }

  void addStrict(CLI::App* command) {
    command->add_flag("--strict", given_.strict, "Write nothing if anything is reported.");
  }

  void addCheck() {
    addFile(add("check", "Report every problem, with the line and a caret.",
                [this] { return checkText(given_.file); }));
  }

  void addPrint() {
    addFile(add("print", "Print each value on a line, as a program that reads it has it.",
                [this] { return printText(given_.file); }));
  }

  void addFormat() {
    CLI::App* const command =
        add("format", "Print the values indented, the entries of maps in their order.",
            [this] { return formatText(given_.file, given_.sorted, given_.width); });
    addFile(command);
    command->add_flag("--sort", given_.sorted, "Sort the entries of maps by their keys.");
    command->add_option("--width", given_.width, "Columns of a line; 80 if not given.")
        ->type_name("COLUMNS")
        ->check(CLI::Range(1, MostWidth));
  }

  void addToJson() {
    CLI::App* const command =
        add("to-json", "Convert each value to JSON, on a line. Report what does not come back.",
            [this] { return convertToJson(given_.file, given_.strict); });
    addFile(command);
    addStrict(command);
  }

  void addFromJson() {
    CLI::App* const command =
        add("from-json", "Convert JSON values to text. Report what does not come back.",
            [this] { return convertFromJson(given_.file, given_.strict); });
    addFile(command);
    addStrict(command);
  }

  void addGraph() {
    CLI::App* const command =
        add("graph", "Draw the values as a graph, in the language of Graphviz.",
            [this] { return graphText(given_.file, given_.svg); });
    addFile(command);
    command->add_flag("--svg", given_.svg, "Write a picture instead, which dot has to make.");
  }

  void addDiff() {
    CLI::App* const command = add("diff", "Compare two texts, value by value.",
                                  [this] { return diffTexts(given_.file, given_.otherFile); });
    command->add_option("LEFT", given_.file, "The first text.")->type_name("")->required();
    command->add_option("RIGHT", given_.otherFile, "The second text.")->type_name("")->required();
    addClasses(command);
    command->footer(
        "Exit status: 0 if they hold the same, 1 if not, 2 if one cannot be read or has problems,\n"
        "or the program is used wrongly.");
  }

  void addStats() {
    addFile(
        add("stats", "Count what is in the values.", [this] { return printStats(given_.file); }));
  }

  CLI::App app_{"Reads, checks and converts the text format of tarselvalues.", "lvtext"};
  Arguments given_;
  std::function<int()> verb_;
};

}  // namespace

int runCommandLine(int count, char const* const* arguments) {
  return CommandLine().run(count, arguments);
}
