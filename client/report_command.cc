// vexahealth report: everything, in one HTML file.
#include "client/exit_codes.h"
#include "client/html_report.h"
#include "client/machine.h"
#include "client/session.h"

namespace vexahealth {

int RunReport(const Options& options) {
  const Sample sample = TakeSample(*FindCommand("all"), options.may_wait);
  Complain(sample.report.error);
  const Serials serials = options.show_serials ? Serials::kShow : Serials::kMask;
  const std::string page = options.json() ? HtmlReportJson(sample.report, serials) : HtmlReport(sample.report, serials);
  if (options.output.empty()) return Print(page, sample.exit_code);
  if (!WriteFileAt(options.output, page)) {
    Complain(options.output + " can't be written");
    return kExitOutputFailed;
  }
  return sample.exit_code;
}

}  // namespace vexahealth
