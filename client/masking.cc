#include "client/masking.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <vector>

namespace vexahealth {
namespace {

// The battery's manufacture information carries its serial number among its bytes.
constexpr std::array<std::string_view, 9> kSerials = {"battery.serial_number",
                                                      "battery.manufacture_information",
                                                      "inventory.serial_number",
                                                      "inventory.board_serial_number",
                                                      "inventory.uuid",
                                                      "inventory.order_number",
                                                      "inventory.hdd_serial_numbers",
                                                      "inventory.ssd_serial_numbers",
                                                      "inventory.mac_addresses"};

constexpr size_t kShortestSecret = 6;  // shorter pieces stand in other texts by chance

char Lower(char character) { return static_cast<char>(std::tolower(static_cast<unsigned char>(character))); }

bool EqualIgnoringCase(char a, char b) { return Lower(a) == Lower(b); }

// The pieces of a text that is a list: serial numbers of several disks, or one.
void AddSecrets(std::string_view text, std::vector<std::string>& secrets) {
  while (!text.empty()) {
    const size_t end = std::min(text.find_first_of(";,"), text.size());
    std::string_view piece = text.substr(0, end);
    while (!piece.empty() && piece.front() == ' ') piece.remove_prefix(1);
    while (!piece.empty() && piece.back() == ' ') piece.remove_suffix(1);
    if (piece.size() >= kShortestSecret) secrets.emplace_back(piece);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void ReplaceEach(std::string& text, std::string_view secret) {
  size_t from = 0;
  for (;;) {
    const auto found = std::search(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(), secret.begin(),
                                   secret.end(), EqualIgnoringCase);
    if (found == text.end()) return;
    from = static_cast<size_t>(found - text.begin());
    text.replace(from, secret.size(), kMaskedText);
    from += kMaskedText.size();
  }
}

// What follows "\Users\" up to the next backslash.
void ReplaceUser(std::string& text) {
  constexpr std::string_view kUsers = "\\users\\";
  const auto found = std::search(text.begin(), text.end(), kUsers.begin(), kUsers.end(), EqualIgnoringCase);
  if (found == text.end()) return;
  const auto start = static_cast<size_t>(found - text.begin()) + kUsers.size();
  const size_t end = std::min(text.find('\\', start), text.size());
  text.replace(start, end - start, kMaskedText);
}

void Clean(std::string& text, const std::vector<std::string>& secrets) {
  for (const std::string& secret : secrets) ReplaceEach(text, secret);
  ReplaceUser(text);
}

}  // namespace

bool IsSerial(const Row& row) { return std::ranges::find(kSerials, row.key) != kSerials.end(); }

Report Masked(Report report) {
  std::vector<std::string> secrets;
  for (Reading& reading : report.readings) {
    if (!IsSerial(*reading.row) || reading.status != Status::kOk) continue;
    const auto* text = std::get_if<std::string>(&reading.value);
    if (text != nullptr && reading.row->kind != Kind::kByteList) AddSecrets(*text, secrets);
    reading = {.row = reading.row, .status = Status::kNotCollected, .value = {}, .note = std::string(kMaskedNote)};
  }
  std::ranges::sort(secrets, std::ranges::greater(), &std::string::size);  // the longest first: one can hold another
  for (Reading& reading : report.readings) {
    if (auto* text = std::get_if<std::string>(&reading.value)) Clean(*text, secrets);
    Clean(reading.note, secrets);
  }
  Clean(report.library.path, secrets);
  Clean(report.error, secrets);
  return report;
}

}  // namespace vexahealth
