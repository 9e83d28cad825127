#include "client/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "client/completion.h"

namespace vexahealth {
namespace {

using Action = Options::Action;

constexpr const char* kDescription =
    "Reads the health of this notebook (battery, charger, adapter, fans, radios, inventory) and shows or changes two\n"
    "settings of its firmware: the battery's charge limit and the quiet fan.";

constexpr const char* kFooter =
    "\nChanging a setting:\n"
    "  settings set charge-limit 60|80|100  Limit the charge of the battery, in percent\n"
    "  settings set quiet-fan on|off        Switch the quiet fan\n"
    "  --dry-run                            Find out whether the firmware offers it, and change nothing\n"
    "\nExamples:\n"
    "  vexahealth --json                                  every reading as JSON\n"
    "  vexahealth get battery.rsoc                        one bare value\n"
    "  vexahealth battery --watch 5                       look again every 5 seconds\n"
    "  vexahealth all --format prometheus                 for a text-file collector\n"
    "  vexahealth report --output report.html             one HTML file with verdicts, to mail\n"
    "  vexahealth settings set charge-limit 80 --dry-run  what would be done\n"
    "\n"
    "Exit codes:\n"
    "  0  readings were taken; the firmware answered for its settings; it accepted the change, or would be asked for "
    "it\n"
    "  1  the library is not ready or no reading of the notebook is ok; the reading has no value; the firmware did "
    "not\n"
    "     answer for its settings; doctor found a problem\n"
    "  2  wrong command line\n"
    "  3  VexaWinIO64.dll can't be loaded\n"
    "  4  the result can't be written\n"
    "  5  the firmware does not offer the setting, or does not answer; nothing was changed\n"
    "  6  the firmware refused the change, or did not answer\n"
    "  7  the firmware accepted the change, but it reads back otherwise or its setting file could not be written\n"
    "  8  trace: events can't be traced on this system, or not by this user";

constexpr uint32_t kLongestSeconds = 86400;

struct Words {
  bool no_wait = false;
  bool help = false;
  bool version = false;
  bool json = false;
  bool dry_run = false;
  std::string format;
  std::string watch;
  std::string count;
  std::string setting;
  std::string value;
  std::string key;
  std::string seconds;
  std::string level;
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
    AddFlag(app_, "--json", words.json, "Print one JSON value: the same as --format json");
    app_.add_option("--format", words.format, "table, json, ndjson, csv or prometheus");
    app_.add_option("--watch", words.watch, "Look again every so many seconds (0.2 to 86400; alone: 2)");
    app_.add_option("--count", words.count, "With --watch: end after so many samples");
    AddFlag(app_, "--no-wait", words.no_wait, "Leave out the manufacture information, which can take 3 seconds");
    for (const Command& command : Commands()) commands_.push_back(AddCommand(app_, command.name, command.summary));
    CLI::App* settings = app_.get_subcommand("settings");
    settings->require_subcommand(0, 1);
    set_ = AddCommand(*settings, "set", "Change one of them");
    set_->add_option("setting", words.setting, "charge-limit or quiet-fan");
    set_->add_option("value", words.value, "charge-limit: 60, 80 or 100 percent; quiet-fan: on or off");
    AddFlag(*set_, "--dry-run", words.dry_run, "Find out whether the firmware offers it, and change nothing");
    AddOthers(options, words);
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
  bool Set() const { return set_->parsed(); }
  bool Has(const char* command) const { return app_.get_subcommand(command)->parsed(); }

  // The command whose readings are meant.
  const Command* Chosen() const {
    for (size_t i = 0; i < commands_.size(); ++i) {
      if (commands_[i]->parsed()) return &Commands()[i];
    }
    return nullptr;
  }

  // What does something else than showing a command's readings.
  Action Other() const {
    constexpr std::pair<const char*, Action> kOthers[] = {
        {"get", Action::kGet},       {"report", Action::kReport}, {"record", Action::kRecord},
        {"doctor", Action::kDoctor}, {"trace", Action::kTrace},   {"keys", Action::kKeys},
        {"completion", Action::kCompletion}};
    for (const auto& [name, action] : kOthers) {
      if (Has(name)) return action;
    }
    return Set() ? Action::kChange : Action::kReadings;
  }

 private:
  void AddOthers(Options& options, Words& words) {
    CLI::App* get = AddCommand(app_, "get", "Print the value of one reading, bare");
    get->add_option("key", words.key, "The reading's key, for instance battery.rsoc; \"keys\" lists them");
    CLI::App* report = AddCommand(app_, "report", "Write everything into one HTML file that can be mailed");
    report->add_option("--output", options.output, "The file to write; without it standard output");
    AddFlag(*report, "--show-serials", options.show_serials, "Don't mask serial numbers and addresses");
    CLI::App* record = AddCommand(app_, "record", "Write this machine as a scenario for the simulated notebook");
    record->add_option("file", options.output, "The file to write");
    AddFlag(*record, "--show-serials", options.show_serials, "Don't mask the battery's serial number");
    AddCommand(app_, "doctor", "Print what decides whether the library works here, in one block to paste");
    CLI::App* trace = AddCommand(app_, "trace", "Print the library's trace events, of all processes");
    trace->add_option("--seconds", words.seconds, "How long, 1 to 86400 (10)");
    trace->add_option("--level", words.level, "1: critical lines only, 4: informational, 5: everything (5)");
    AddCommand(app_, "keys", "List every reading: key, unit, export, metric");
    CLI::App* completion = AddCommand(app_, "completion", "Print a completion script for a shell");
    completion->add_option("shell", options.shell, "bash, zsh, fish or powershell");
  }

  static void AddFlag(CLI::App& app, const char* name, bool& flag, const char* description) {
    app.add_flag(name, flag, description)->disable_flag_override();
  }

  static CLI::App* AddCommand(CLI::App& app, std::string_view name, std::string_view description) {
    CLI::App* command = app.add_subcommand(std::string(name), std::string(description))->fallthrough();
    command->set_help_flag();
    return command;
  }

  CLI::App app_;
  std::vector<CLI::App*> commands_;
  CLI::App* set_ = nullptr;
};

bool IsNumeric(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789.") == std::string_view::npos;
}

// "--watch" may stand alone: what follows it is its value only when it looks like one.
std::vector<std::string> WithWatchValue(const std::vector<std::string>& arguments) {
  std::vector<std::string> result;
  for (size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] != "--watch") {
      result.push_back(arguments[i]);
    } else if (i + 1 < arguments.size() && IsNumeric(arguments[i + 1])) {
      result.push_back("--watch=" + arguments[++i]);
    } else {
      result.emplace_back("--watch=2");
    }
  }
  return result;
}

std::optional<uint32_t> WholeNumber(std::string_view text, uint32_t least, uint32_t largest) {
  uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < least || number > largest) return {};
  return number;
}

// Milliseconds of "2", "0.5", "1.25".
std::optional<uint32_t> Interval(std::string_view text) {
  constexpr uint32_t kLeastMs = 200;
  const size_t point = text.find('.');
  const auto seconds = WholeNumber(text.substr(0, point), 0, kLongestSeconds);
  if (!seconds) return {};
  uint32_t thousandths = 0;
  if (point != std::string_view::npos) {
    std::string digits(text.substr(point + 1));
    if (digits.empty() || digits.size() > 3) return {};
    digits.resize(3, '0');
    const auto fraction = WholeNumber(digits, 0, 999);
    if (!fraction) return {};
    thousandths = *fraction;
  }
  const uint32_t interval_ms = *seconds * 1000 + thousandths;
  if (interval_ms < kLeastMs || interval_ms > kLongestSeconds * 1000) return {};
  return interval_ms;
}

std::string ReadWatch(const Words& words, Options& options) {
  if (words.watch.empty()) return words.count.empty() ? "" : "--count belongs to --watch";
  if (options.action != Action::kReadings && options.action != Action::kGet) {
    return "--watch goes with commands that show readings";
  }
  if (options.format == Format::kPrometheus) return "--watch does not go with --format prometheus";
  options.watch.emplace();
  const auto interval = Interval(words.watch);
  if (!interval) return "--watch takes 0.2 to 86400 seconds, not \"" + words.watch + "\"";
  options.watch->interval_ms = *interval;
  if (words.count.empty()) return {};
  options.watch->count = WholeNumber(words.count, 1, 1000000000);
  return options.watch->count ? "" : "--count takes a number from 1 up, not \"" + words.count + "\"";
}

std::string ReadFormat(const Words& words, Options& options) {
  const bool plain_text = options.action == Action::kRecord || options.action == Action::kCompletion;
  if (plain_text && (words.json || !words.format.empty())) return "record and completion have no other format";
  if (words.json) options.format = Format::kJson;
  if (words.format.empty()) return {};
  const std::optional<Format> format = FormatFrom(words.format);
  if (!format) return "--format takes table, json, ndjson, csv or prometheus, not \"" + words.format + "\"";
  if (words.json && *format != Format::kJson) return "--json and --format " + words.format + " exclude each other";
  options.format = *format;
  const bool readings = options.action == Action::kReadings || options.action == Action::kGet;
  const bool plain = *format == Format::kTable || *format == Format::kJson;
  return readings || plain ? "" : "--format " + words.format + " goes with commands that show readings";
}

// What is wrong with a command line that was taken apart, or empty.
std::string ReadChange(const Words& words, Options& options) {
  if (words.setting.empty()) return "set: which setting, charge-limit or quiet-fan?";
  ParsedChange parsed = ParseChange(words.setting, words.value);
  options.change = parsed.request;
  options.change.dry_run = words.dry_run;
  return std::move(parsed.error);
}

std::string ReadTrace(const Words& words, Options& options) {
  if (!words.seconds.empty()) {
    const auto seconds = WholeNumber(words.seconds, 1, kLongestSeconds);
    if (!seconds) return "--seconds takes 1 to 86400, not \"" + words.seconds + "\"";
    options.seconds = *seconds;
  }
  if (!words.level.empty()) {
    const auto level = WholeNumber(words.level, 1, 5);
    if (!level) return "--level takes 1 to 5, not \"" + words.level + "\"";
    options.level = static_cast<int>(*level);
  }
  return {};
}

std::string ReadRest(const Words& words, Options& options) {
  switch (options.action) {
    case Action::kChange: return ReadChange(words, options);
    case Action::kTrace: return ReadTrace(words, options);
    case Action::kGet:
      options.key = words.key;
      if (words.key.empty()) return "get: which reading? \"keys\" lists them";
      return FindRow(words.key) == nullptr ? "there is no reading \"" + words.key + "\"; \"keys\" lists them" : "";
    case Action::kRecord: return options.output.empty() ? "record: into which file?" : "";
    case Action::kCompletion:
      return CompletionScript(options.shell).empty() ? "completion: for which shell, bash, zsh, fish or powershell?"
                                                     : "";
    default: return {};
  }
}

bool WaitsFor(const Options& options) {
  const bool shows = options.command == FindCommand("status") || options.command == FindCommand("battery") ||
                     options.command == FindCommand("all");
  return (options.action == Action::kReadings && shows) || options.action == Action::kReport ||
         options.action == Action::kRecord;
}

// The format that a command line asks for that is wrong elsewhere.
Format FormatIn(const std::vector<std::string>& arguments) {
  Format format = Format::kTable;
  for (size_t i = 0; i < arguments.size(); ++i) {
    std::string_view word = arguments[i];
    if (word.starts_with("--json")) format = Format::kJson;
    if (word == "--format" && i + 1 < arguments.size()) format = FormatFrom(arguments[i + 1]).value_or(format);
    if (word.starts_with("--format=")) format = FormatFrom(word.substr(9)).value_or(format);
  }
  return format;
}

// The first word that names a command, so that a usage error keeps the promised readings.
const Command* CommandIn(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    if (const Command* command = FindCommand(argument)) return command;
  }
  return FindCommand("status");
}

}  // namespace

Options ParseOptions(const std::vector<std::string>& arguments) {
  Options options;
  Words words;
  CommandLine line(options, words);
  options.text = line.Parse(WithWatchValue(arguments));
  const bool parsed = options.text.empty();
  options.may_wait = !words.no_wait;
  options.command = line.Chosen() != nullptr ? line.Chosen() : CommandIn(arguments);
  if (parsed && (words.help || words.version)) {
    options.action = words.help ? Action::kHelp : Action::kVersion;
    options.format = FormatIn(arguments);
    if (words.help) {
      Options unused;
      options.text = CommandLine(unused, words).Help();
    }
    return options;
  }
  if (parsed) {
    options.action = line.Other();
    options.text = ReadFormat(words, options);
    if (options.text.empty()) options.text = ReadWatch(words, options);
    if (options.text.empty()) options.text = ReadRest(words, options);
    if (options.text.empty() && words.no_wait && !WaitsFor(options)) {
      options.text = "--no-wait belongs to status, battery, all, report and record";
    }
  }
  if (!options.text.empty()) {
    options.action = Action::kUsageError;
    options.format = FormatIn(arguments);
  }
  return options;
}

}  // namespace vexahealth
