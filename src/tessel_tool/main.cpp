/// @file
/// The command line.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <exception>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "builder_services.hpp"
#include "builders_command.hpp"
#include "bundle_location.hpp"
#include "check_command.hpp"
#include "console.hpp"
#include "exit_status.hpp"
#include "explain_command.hpp"
#include "import_command.hpp"
#include "input.hpp"
#include "page/import_page.hpp"
#include "platform.hpp"
#include "reference_host/diagnosis/nearest_word.hpp"
#include "reference_host/json/pointer.hpp"
#include "schema_command.hpp"

namespace tessel_tool {

namespace {

constexpr std::size_t kMostJobs = 256;
/// So that a negative number, which the parser wraps, is none of them.
constexpr std::size_t kMostLines = std::numeric_limits<std::int64_t>::max();

/// What the command line asks for.
struct CommandLine {
  CommandLine() {
    app.require_subcommand(0, 1);
    for (CLI::App* command :
         {importCommand, checkCommand, explainCommand, buildersCommand, schemaCommand}) {
      command->fallthrough();
      command->footer("--bundle PATH and --version work with every command.");
    }
    app.set_version_flag("--version", "tessel " TESSEL_VERSION, "Show the version and exit");
    app.add_option("--bundle", bundle,
                   "The bundle to load instead of the one beside the tool or in ../lib")
        ->type_name("PATH");

    addFormat(*importCommand, "tree", {"html"});
    importCommand->add_flag("--log", importOptions.log, "Show the diagnostic records too");
    addLines(*importCommand, importOptions, "Each line of an input is a document");
    addJobs(*importCommand, importOptions.jobs, "How many documents to import at a time");
    importCommand->add_flag("--fail-fast", importOptions.failFast,
                            "Stop at the first error instead of doing the rest");
    importCommand
        ->add_option("-o,--output", resultPath,
                     "Write the results to this file; - is standard output")
        ->type_name("FILE")
        ->check(CLI::Validator(
            [](const std::string& path) { return path.empty() ? "a file has a name" : ""; }, ""));
    addFiles(*importCommand, importOptions.files);

    addFormat(*checkCommand, "text", {"sarif"});
    CLI::Option* noWarnings =
        checkCommand->add_flag("--no-warnings", checkOptions.noWarnings, "Tell errors alone");
    checkCommand->add_flag("--strict", checkOptions.strict, "Let a warning fail like an error")
        ->excludes(noWarnings);
    addLines(*checkCommand, checkOptions, "Each line of an input is a document");
    addJobs(*checkCommand, checkOptions.jobs, "How many documents to check at a time");
    addWords(*checkCommand, checkOptions.wordFiles);
    addFiles(*checkCommand, checkOptions.files);

    addFormat(*explainCommand, "text");
    explainCommand->add_flag("--all", explainOptions.all,
                             "List the builders that say no, too; JSON always does");
    addLines(*explainCommand, explainOptions, "Each line of the input is a value");
    explainCommand
        ->add_option("--pointer", explainOptions.pointer,
                     "Explain the value at this JSON pointer of a document")
        ->type_name("P")
        ->check(CLI::Validator(
            [](const std::string& text) {
              return reference_host::json::isPointer(text) ? "" : text + " is no JSON pointer";
            },
            ""));
    explainCommand
        ->add_option("FILE", explainOptions.file, "A JSON value; none, or -, is standard input")
        ->type_name("");

    addFormat(*buildersCommand, "text");

    schemaCommand->add_flag("--strict", schemaOptions.strict,
                            "Refuse types and members that no builder knows, too, and what "
                            "looks like a control and is none");
    addWords(*schemaCommand, schemaOptions.wordFiles);
  }

  void addFormat(CLI::App& command, const std::string& forPeople,
                 const std::vector<std::string>& further = {}) {
    std::vector<std::string> formats{forPeople, "json"};
    formats.insert(formats.end(), further.begin(), further.end());
    command.add_option("--format", format, "How to write the results")
        ->type_name(CLI::detail::join(formats, "|"))
        ->check(CLI::IsMember(formats).description(""));
  }

  template <typename Options>
  static void addLines(CLI::App& command, Options& options, const std::string& description) {
    CLI::Option* ndjson = command.add_flag("--ndjson", options.ndjson, description);
    command
        .add_option("--first-line", options.firstLine,
                    "The number of the first line, where the input is part of a longer one")
        ->type_name("N")
        ->check(CLI::Range(std::size_t{1}, kMostLines).description(""))
        ->needs(ndjson);
  }

  static void addJobs(CLI::App& command, std::size_t& jobs, const std::string& description) {
    command.add_option("--jobs", jobs, description)
        ->type_name("N")
        ->check(CLI::Range(std::size_t{1}, kMostJobs).description(""));
  }

  static void addWords(CLI::App& command, std::vector<std::string>& files) {
    command
        .add_option("--words", files,
                    "A file of class names and types that the builders may know, one a line")
        ->type_name("FILE")
        ->allow_extra_args(false);
  }

  static void addFiles(CLI::App& command, std::vector<std::string>& files) {
    command.add_option("FILE", files, "JSON documents; none, or -, is standard input")
        ->type_name("");
    command.final_callback([&files] {
      if (std::count(files.begin(), files.end(), kStandardInput) > 1) {
        throw CLI::ValidationError("FILE", "standard input can be read only once");
      }
    });
  }

  ExitStatus run() {
    BuilderServices services(locateBundle(bundle));
    const bool json = format == "json";
    ExitStatus status = ExitStatus::kSuccess;
    if (importCommand->parsed()) {
      std::optional<ResultFile> file;
      if (resultPath && *resultPath != "-") file.emplace(*resultPath);
      importOptions.json = json;
      status = format == "html" ? runImportPage(services, importOptions)
                                : runImport(services, importOptions);
      if (file) file->complete();
    } else if (checkCommand->parsed()) {
      if (json) checkOptions.format = CheckOptions::Format::kJson;
      if (format == "sarif") checkOptions.format = CheckOptions::Format::kSarif;
      status = runCheck(services, checkOptions);
    } else if (explainCommand->parsed()) {
      explainOptions.json = json;
      status = runExplain(services, explainOptions);
    } else if (schemaCommand->parsed()) {
      status = runSchema(services, schemaOptions);
    } else {
      status = runBuilders(services, json);
    }
    services.close();
    return status;
  }

  CLI::App app{"Turns JSON documents into document models through a bundle of builders", "tessel"};
  CLI::App* importCommand =
      app.add_subcommand("import", "Import documents and show the nodes that are built from them");
  CLI::App* checkCommand =
      app.add_subcommand("check", "Tell all problems of documents, and what to write instead");
  CLI::App* explainCommand =
      app.add_subcommand("explain", "Show what each builder makes of a JSON value, and why");
  CLI::App* buildersCommand =
      app.add_subcommand("builders", "List the builders that the bundle publishes");
  CLI::App* schemaCommand =
      app.add_subcommand("schema", "Write a JSON Schema of documents, for editors and validators");
  std::optional<std::string> bundle;
  std::string format;
  std::optional<std::string> resultPath;
  ImportOptions importOptions;
  CheckOptions checkOptions;
  ExplainOptions explainOptions;
  SchemaOptions schemaOptions;
};

/// The command that is asked for; the tool itself where there is none.
const CLI::App& commandOf(const CLI::App& app) {
  const auto commands = app.get_subcommands();
  return commands.empty() ? app : *commands.front();
}

/// What is wrong with a command line that holds more than is expected.
std::string unexpected(const CLI::App& app) {
  std::string word = app.remaining(true).front();
  if (word.empty()) word = R"("")";
  if (!app.get_subcommands().empty() || word.front() == '-') {
    const CLI::App& asked = commandOf(app);
    std::vector<std::string> names;
    for (const CLI::Option* option : asked.get_options()) names.push_back(option->get_name());
    const std::string nearest = reference_host::diagnosis::nearestWord(word, names);
    return "The following argument was not expected: " + word +
           (nearest.empty() ? "" : "; did you mean " + nearest + '?');
  }
  std::vector<std::string> commands;
  std::string list;
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    commands.push_back(command->get_name());
    list.append(list.empty() ? "" : ", ").append(command->get_name());
  }
  const std::string nearest = reference_host::diagnosis::nearestWord(word, commands);
  std::string reason = "there is no command " + word;
  if (!nearest.empty()) reason.append("; did you mean ").append(nearest) += '?';
  return reason + " (" + list + ")";
}

/// Whether help is asked for, whatever else is.
bool asksForHelp(int argc, char** argv) {
  for (int index = 1; index < argc; ++index) {
    const std::string_view word = argv[index];
    if (word == "--") return false;
    if (word == "--help" || word == "-h") return true;
  }
  return false;
}

ExitStatus runCommandLine(int argc, char** argv) {
  CommandLine commandLine;
  bool help = asksForHelp(argc, argv);
  const auto refuse = [&app = commandLine.app](const std::string& reason) {
    const CLI::App& asked = commandOf(app);
    const std::string command = &asked == &app ? "" : asked.get_name() + ' ';
    complain("usage", reason + "; see tessel " + command + "--help");
    return ExitStatus::kUnusable;
  };
  try {
    commandLine.app.parse(argc, argv);
    if (!help && commandLine.app.get_subcommands().empty()) {
      return refuse("a command is needed: import, check, explain, builders or schema");
    }
  } catch (const CLI::CallForHelp&) {
    help = true;  // the parser may take it for the option behind "--" too
  } catch (const CLI::CallForVersion& version) {
    if (!help) {
      writeResult(std::string(version.what()) + '\n');
      return ExitStatus::kSuccess;
    }
  } catch (const CLI::ExtrasError&) {
    if (!help) return refuse(unexpected(commandLine.app));
  } catch (const CLI::ParseError& error) {
    if (!help) return refuse(error.what());
  }
  // The command that help is about is known by now, also where the line is wrong.
  if (help) {
    writeResult(commandLine.app.help());
    return ExitStatus::kSuccess;
  }
  return commandLine.run();
}

}  // namespace

}  // namespace tessel_tool

int main(int argc, char** argv) {
  using tessel_tool::ExitStatus;
  tessel_tool::reportBrokenPipesAsErrors();
  ExitStatus status = ExitStatus::kInputFailed;
  try {
    status = tessel_tool::runCommandLine(argc, argv);
  } catch (const tessel_tool::BundleError& error) {
    tessel_tool::complain(error.what());
    status = ExitStatus::kUnusable;
  } catch (const tessel_tool::OutputError& error) {
    tessel_tool::complain(error.where(), error.what());
  } catch (const std::bad_alloc&) {
    tessel_tool::complain(tessel_tool::kOutOfMemory);
  } catch (const std::exception& error) {
    tessel_tool::complain("unexpected error", error.what());
  } catch (...) {
    tessel_tool::complain("unexpected error", "something was thrown that does not say what");
  }
  return static_cast<int>(status);
}
