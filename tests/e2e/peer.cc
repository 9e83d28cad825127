#include "tests/e2e/peer.h"

#include <cstdio>
#include <cstdlib>

namespace vexa::test {
namespace {

// A pipe of which a child inherits one end.
void MakePipe(HANDLE& read_end, HANDLE& write_end, HANDLE& kept) {
  SECURITY_ATTRIBUTES inheritable{.nLength = sizeof(SECURITY_ATTRIBUTES), .bInheritHandle = TRUE};
  if (!CreatePipe(&read_end, &write_end, &inheritable, 0)) std::abort();
  SetHandleInformation(kept, HANDLE_FLAG_INHERIT, 0);
}

}  // namespace

Peer::Peer() {
  HANDLE peer_input = nullptr;
  HANDLE peer_output = nullptr;
  MakePipe(peer_input, to_peer_, to_peer_);
  MakePipe(from_peer_, peer_output, from_peer_);

  STARTUPINFOW startup{.cb = sizeof(STARTUPINFOW), .dwFlags = STARTF_USESTDHANDLES};
  startup.hStdInput = peer_input;
  startup.hStdOutput = peer_output;
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  std::wstring command = L"\"" + std::wstring(program) + L"\" --peer";
  PROCESS_INFORMATION information{};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &information)) {
    std::fprintf(stderr, "a peer can't be started: error %lu\n", GetLastError());
    std::abort();
  }
  process_ = information.hProcess;
  CloseHandle(information.hThread);
  // A second holder of these would keep the pipes open when the peer has ended.
  CloseHandle(peer_input);
  CloseHandle(peer_output);
}

void Peer::Tell(const std::string& command) {
  const std::string line = command + "\n";
  DWORD written = 0;
  WriteFile(to_peer_, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

std::string Peer::Line() {
  std::string line;
  char character = '\0';
  DWORD read = 0;
  while (ReadFile(from_peer_, &character, 1, &read, nullptr) && read == 1) {
    if (character == '\n') return line;
    if (character != '\r') line += character;
  }
  return "(ended)";
}

std::vector<std::string> Peer::Answer() {
  std::vector<std::string> lines;
  do {
    lines.push_back(Line());
  } while (lines.back()[0] != '=' && lines.back() != "(ended)");
  return lines;
}

std::vector<std::string> Peer::Ask(const std::string& command) {
  Tell(command);
  return Answer();
}

void Peer::Exit() {
  Tell("exit");
  Gone();
}

void Peer::Kill() {
  if (process_ == nullptr) return;
  TerminateProcess(process_, 1);
  Gone();
}

void Peer::Gone() {
  WaitForSingleObject(process_, INFINITE);
  CloseHandle(process_);
  CloseHandle(to_peer_);
  CloseHandle(from_peer_);
  process_ = nullptr;
}

}  // namespace vexa::test
