#include "client/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace vexahealth {
namespace {

constexpr const char* kFooter =
    "\nExit codes: 0 readings were taken; 1 the library is not ready or no reading of the notebook is ok;\n"
    "2 wrong command line; 3 VexaWinIO64.dll can't be loaded; 4 the result can't be written.";

}  // namespace

Options ParseOptions(const std::vector<std::string>& arguments) {
  Options options;
  bool no_wait = false;
  CLI::App app("Reads the health of this notebook: embedded controller, battery, charger.", "vexahealth");
  app.allow_windows_style_options(false);
  app.set_help_flag();  // handled below, so that it goes together with --json
  bool help = false;
  bool version = false;
  app.add_flag("-h,--help", help, "Print this help")->disable_flag_override();
  app.add_flag("--version", version, "Print the versions of this client and of the library")
      ->disable_flag_override();
  app.add_flag("--json", options.json, "Print one JSON value instead of the table")->disable_flag_override();
  app.add_flag("--no-wait", no_wait, "Leave out the manufacture information, which can take 3 seconds")
      ->disable_flag_override();
  app.add_subcommand("status", "Print every reading (the default)")->fallthrough()->set_help_flag();
  app.require_subcommand(0, 1);
  app.footer(kFooter);
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::ParseError& error) {
    options.action = Options::Action::kUsageError;
    options.json =
        std::ranges::any_of(arguments, [](const auto& text) { return text.starts_with("--json"); });
    options.text = error.what();
    return options;
  }
  options.may_wait = !no_wait;
  if (help) {
    options.action = Options::Action::kHelp;
    options.text = app.help();
  } else if (version) {
    options.action = Options::Action::kVersion;
  }
  return options;
}

}  // namespace vexahealth
