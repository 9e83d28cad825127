#include "client/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <utility>

namespace vexahealth {
namespace {

constexpr const char* kDescription =
    "Reads the health of this notebook (embedded controller, battery, charger) and shows or changes two settings of "
    "its\n"
    "firmware: the battery's charge limit and the quiet fan.";

constexpr const char* kFooter =
    "\nChanging a setting:\n"
    "  settings set charge-limit 60|80|100  Limit the charge of the battery, in percent\n"
    "  settings set quiet-fan on|off        Switch the quiet fan\n"
    "  --dry-run                            Find out whether the firmware offers it, and change nothing\n"
    "\nExamples:\n"
    "  vexahealth --json                                  every reading as JSON\n"
    "  vexahealth settings                                what is set\n"
    "  vexahealth settings set charge-limit 80 --dry-run  what would be done\n"
    "  vexahealth settings set quiet-fan on\n"
    "\n"
    "Exit codes:\n"
    "  0  readings were taken; the firmware answered for its settings; it accepted the change, or would be asked for "
    "it\n"
    "  1  the library is not ready or no reading of the notebook is ok; the firmware did not answer for its settings\n"
    "  2  wrong command line\n"
    "  3  VexaWinIO64.dll can't be loaded\n"
    "  4  the result can't be written\n"
    "  5  the firmware does not offer the setting, or does not answer; nothing was changed\n"
    "  6  the firmware refused the change, or did not answer\n"
    "  7  the firmware accepted the change, but it reads back otherwise or its setting file could not be written";

struct Words {
  bool no_wait = false;
  bool help = false;
  bool version = false;
  bool dry_run = false;
  std::string setting;
  std::string value;
};

class CommandLine {
 public:
  CommandLine(Options& options, Words& words) : app_(kDescription, "vexahealth") {
    app_.allow_windows_style_options(false);
    app_.set_help_flag();  // handled below, so that it goes together with --json
    app_.require_subcommand(0, 1);
    app_.footer(kFooter);
    AddFlag(app_, "-h,--help", words.help, "Print this help");
    AddFlag(app_, "--version", words.version, "Print the versions of this client and of the library");
    AddFlag(app_, "--json", options.json, "Print one JSON value instead of the table");
    AddFlag(app_, "--no-wait", words.no_wait,
            "status: leave out the manufacture information, which can take 3 seconds");
    AddCommand(app_, "status", "Print every reading (the default)");
    settings_ = AddCommand(app_, "settings", "Print the charge limit and the quiet fan");
    settings_->require_subcommand(0, 1);
    set_ = AddCommand(*settings_, "set", "Change one of them");
    set_->add_option("setting", words.setting, "charge-limit or quiet-fan");
    set_->add_option("value", words.value, "charge-limit: 60, 80 or 100 percent; quiet-fan: on or off");
    AddFlag(*set_, "--dry-run", words.dry_run, "Find out whether the firmware offers it, and change nothing");
  }

  // What is wrong, or empty.
  std::string Parse(const std::vector<std::string>& arguments) {
    try {
      app_.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
      return {};
    } catch (const CLI::ParseError& error) {
      return error.what();
    }
  }

  // The help of the whole client; of one command only, once a command line with that command was parsed.
  std::string Help() const { return app_.help(); }
  bool Settings() const { return settings_->parsed(); }
  bool Set() const { return set_->parsed(); }

 private:
  static void AddFlag(CLI::App& app, const char* name, bool& flag, const char* description) {
    app.add_flag(name, flag, description)->disable_flag_override();
  }

  static CLI::App* AddCommand(CLI::App& app, const char* name, const char* description) {
    CLI::App* command = app.add_subcommand(name, description)->fallthrough();
    command->set_help_flag();
    return command;
  }

  CLI::App app_;
  CLI::App* settings_ = nullptr;
  CLI::App* set_ = nullptr;
};

bool AnyStartsWith(const std::vector<std::string>& arguments, std::string_view text) {
  return std::ranges::any_of(arguments, [text](const std::string& argument) { return argument.starts_with(text); });
}

// What is wrong with a command line that was taken apart, or empty.
std::string ReadChange(const Words& words, Options& options) {
  if (words.setting.empty()) return "set: which setting, charge-limit or quiet-fan?";
  ParsedChange parsed = ParseChange(words.setting, words.value);
  options.change = parsed.request;
  options.change.dry_run = words.dry_run;
  return std::move(parsed.error);
}

}  // namespace

Options ParseOptions(const std::vector<std::string>& arguments) {
  Options options;
  Words words;
  CommandLine line(options, words);
  options.text = line.Parse(arguments);
  const bool parsed = options.text.empty();
  options.may_wait = !words.no_wait;
  options.settings = line.Settings() || std::ranges::find(arguments, "settings") != arguments.end();
  if (parsed && words.help) {
    options.action = Options::Action::kHelp;
    Options unused;
    options.text = CommandLine(unused, words).Help();
    return options;
  }
  if (parsed && words.version) {
    options.action = Options::Action::kVersion;
    return options;
  }
  if (parsed && line.Settings()) {
    options.action = line.Set() ? Options::Action::kChange : Options::Action::kSettings;
    if (words.no_wait)
      options.text = "--no-wait belongs to status";
    else if (line.Set())
      options.text = ReadChange(words, options);
  }
  if (!options.text.empty()) {
    options.action = Options::Action::kUsageError;
    options.json = AnyStartsWith(arguments, "--json");
  }
  return options;
}

}  // namespace vexahealth
