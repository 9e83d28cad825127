#include "client/session.h"

#include "client/exit_codes.h"
#include "client/json_report.h"
#include "client/machine.h"
#include "client/settings_calls.h"
#include "client/settings_report.h"
#include "client/text.h"
#include "client/watch.h"

namespace vexahealth {
namespace {

constexpr char kNotReady[] =
    "the library is not ready: InitializeWinIo answered 0. VexaSAIO.sys must lie beside VexaWinIO64.dll, and "
    "setting up its service needs administrator rights";
constexpr char kSettingsSilent[] = "the firmware answered neither for the charge limit nor for the quiet fan";

// A line on the terminal that says what is being asked, wiped when the readings are there.
class ProgressLine {
 public:
  ProgressLine() : shown_(ErrorIsTerminal()) {}
  ~ProgressLine() {
    if (width_ > 0) WriteError("\r" + std::string(width_, ' ') + "\r");
  }
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  void Show(std::string_view what) {
    if (!shown_) return;
    std::string line = "asking: " + std::string(what);
    const size_t width = line.size();
    if (width < width_) line.append(width_ - width, ' ');
    width_ = std::max(width, width_);
    WriteError("\r" + line);
  }

 private:
  bool shown_;
  size_t width_ = 0;
};

// How the commands ask a library; `ready`: it was started.
Context ContextOf(const vexa::Library& library, bool ready, bool may_wait, ProgressLine& progress) {
  return {.library = &library,
          .ready = ready,
          .may_wait = may_wait,
          .route = ReadRoute(),
          .decode = ActiveCodePageToUtf8,
          .decode_wide = WideToUtf8,
          .power_line = ReadPowerLine,
          .wanted = {},
          .progress = [&progress](std::string_view what) { progress.Show(what); }};
}

void Fill(const vexa::Library& library, const Command& command, bool may_wait, std::string_view key, Report& report) {
  ProgressLine progress;
  vexa::Answer<vexa::Session> started = std::unexpected(vexa::Reason::kNotCollected);
  if (report.library.needs_driver) {
    progress.Show("driver");
    started = library.Start();
    report.library.ready = started.has_value();
    if (!report.library.ready) report.error = kNotReady;
  }
  const Context context = ContextOf(library, report.library.ready, may_wait, progress);
  report.library.route = context.route;
  report.readings = CollectCommand(command, context, key);
}

Sample SampleOf(const Options& options) { return TakeSample(*options.command, options.may_wait, options.key); }

std::string ErrorText(const Report& report) {
  if (!report.error.empty() || report.readings.size() != 1) return report.error;
  const Reading& reading = report.readings.front();
  if (reading.status == Status::kOk) return {};
  return std::string(reading.row->key) + ": " + std::string(StatusName(reading.status)) +
         (reading.note.empty() ? "" : ": " + reading.note);
}

// The library is freed between two samples: its radio snapshots are made once per load.
int Watch(const Options& options) {
  const WatchOptions& watch = *options.watch;
  WatchPrinter printer({.format = options.format,
                        .bare = options.action == Options::Action::kGet,
                        .terminal = options.format == Format::kTable ? OutputTerminal() : std::nullopt});
  int best = kExitNotLoaded;
  std::string complained;
  for (uint32_t taken = 0; !watch.count || taken < *watch.count; ++taken) {
    const uint64_t began = ClockMs();
    const Sample sample = SampleOf(options);
    best = std::min(best, sample.exit_code);
    if (sample.report.error != complained) Complain(complained = sample.report.error);
    if (!WriteOutput(printer.Next(sample.report))) return kExitOutputFailed;
    const uint64_t now = ClockMs();
    const bool last = watch.count && taken + 1 == *watch.count;
    const uint64_t next = last ? now : NextStart(began, now, watch.interval_ms);
    if (WaitInterrupted(static_cast<uint32_t>(next - now))) break;
  }
  return best;
}

}  // namespace

void Complain(const std::string& text) {
  if (!text.empty()) WriteError("vexahealth: " + EscapeForTerminal(text, Backslash::kKeep) + "\n");
}

int Print(const std::string& text, int exit_code) { return WriteOutput(text) ? exit_code : int{kExitOutputFailed}; }

std::expected<vexa::Library, std::string> LoadBesideClient(LibraryState& state) {
  const std::optional<std::wstring> folder = OwnFolder();
  if (!folder) return std::unexpected("the client's own folder can't be found");
  const std::wstring path = *folder + kLibraryFile;
  state.path = WideToUtf8(path);
  std::expected<vexa::Library, std::string> library = LoadVexaLibrary(path);
  if (library) {
    state.loaded = true;
    state.version = *library->GetIoDllVersion();
  }
  return library;
}

Sample TakeSample(const Command& command, bool may_wait, std::string_view key) {
  Report report{.library = {.needs_driver = NeedsDriver(command, key)},
                .readings = {},
                .error = {},
                .command = key.empty() ? std::string(command.name) : "get",
                .time = NowUtc()};
  const std::expected<vexa::Library, std::string> library = LoadBesideClient(report.library);
  if (!library) {
    report.error = library.error();
    report.readings = NothingOf(command, "VexaWinIO64.dll is not loaded", key);
    return {.report = std::move(report), .exit_code = kExitNotLoaded};
  }
  Fill(*library, command, may_wait, key, report);
  int exit_code = ExitCodeFor(report);
  if (!key.empty()) exit_code = report.readings.front().status == Status::kOk ? kExitOk : kExitNoReadings;
  if (command.name == "settings" && exit_code != kExitOk) report.error = kSettingsSilent;
  return {.report = std::move(report), .exit_code = exit_code};
}

int WithSession(bool may_wait, const std::function<void(Session&)>& use) {
  LibraryState state;
  const std::expected<vexa::Library, std::string> library = LoadBesideClient(state);
  if (!library) {
    Complain(library.error());
    return kExitNotLoaded;
  }
  ProgressLine progress;
  progress.Show("driver");
  const auto started = library->Start();
  if (!started) {
    Complain(kNotReady);
    return kExitNoReadings;
  }
  Context context = ContextOf(*library, true, may_wait, progress);
  context.decode = [](std::string_view text) { return std::string(text); };  // texts stay the bytes that they are
  Session session(context);
  use(session);
  return kExitOk;
}

int RunReadings(const Options& options) {
  if (options.watch) return Watch(options);
  const Sample sample = SampleOf(options);
  const bool bare = options.action == Options::Action::kGet && options.format == Format::kTable;
  Complain(bare ? ErrorText(sample.report) : sample.report.error);
  if (!bare) return Print(Render(sample.report, options.format), sample.exit_code);
  if (sample.exit_code != kExitOk) return sample.exit_code;
  return Print(BareValue(sample.report.readings.front()) + "\n", sample.exit_code);
}

int RunChange(const Options& options) {
  SettingsReport report;
  report.time = NowUtc();
  report.change = Change{.request = options.change};
  report.library.needs_driver = false;
  const std::expected<vexa::Library, std::string> library = LoadBesideClient(report.library);
  int exit_code = kExitNotLoaded;
  if (!library) {
    report.error = library.error();
    report.settings = NothingCollected("VexaWinIO64.dll is not loaded", kSettingRows);
  } else {
    ProgressLine progress;
    const ChangeFacts facts = CarryOut(options.change, ContextOf(*library, false, true, progress));
    report.change = DecideChange(options.change, facts);
    report.settings = DecideSettings(NewestAnswers(facts));
    report.library.route = ReadRoute();
    report.error = report.change->error;
    exit_code = ExitCodeFor(report.change->outcome);
  }
  Complain(report.error);
  return Print(options.json() ? SettingsJson(report) : SettingsTable(report), exit_code);
}

int RunVersion(const Options& options) {
  LibraryState state;
  state.needs_driver = false;
  const std::expected<vexa::Library, std::string> library = LoadBesideClient(state);
  const std::string error = library ? std::string() : library.error();
  Complain(error);
  const int exit_code = library ? kExitOk : kExitNotLoaded;
  if (options.json()) return Print(JsonVersionText(state, error), exit_code);
  std::string text = "vexahealth " + std::string(kClientVersion) + "\n";
  if (state.version) text += Printf("VexaWinIO64.dll interface %u.%u\n", *state.version >> 16, *state.version & 0xFFFF);
  return Print(text, exit_code);
}

int RunUsageError(const Options& options) {
  Complain(options.text);
  WriteError("Run vexahealth --help for what is possible.\n");
  if (options.format == Format::kTable) return kExitUsage;
  const Report report{.library = {.needs_driver = NeedsDriver(*options.command)},
                      .readings = NothingOf(*options.command, "wrong command line"),
                      .error = options.text,
                      .command = std::string(options.command->name),
                      .time = NowUtc()};
  return Print(Render(report, options.format), kExitUsage);
}

}  // namespace vexahealth
