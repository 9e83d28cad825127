#include "tests/support/call_script.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace vexa::test {

void CallScript::Fail(const std::string& function, DWORD error, int nth) { failures_[function] = {nth, error}; }

bool CallScript::Fails(const std::string& function, const std::string& text) {
  const int index = static_cast<int>(calls_.size());
  calls_.push_back(text.empty() ? function : function + " " + text);
  if (index >= sweep_.first && index <= sweep_.last) {
    SetLastError(sweep_.error);
    return true;
  }
  const auto failure = failures_.find(function);
  if (failure == failures_.end()) return false;
  if (failure->second.countdown > 0) {
    if (--failure->second.countdown > 0) return false;
    SetLastError(failure->second.error);
    failures_.erase(failure);
    return true;
  }
  SetLastError(failure->second.error);
  return true;
}

std::vector<std::string> CallScript::Take() { return std::exchange(calls_, {}); }

std::string Narrow(const wchar_t* text) {
  if (text == nullptr) return "null";
  char narrow[4096];
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, narrow, sizeof narrow, nullptr, nullptr);
  return size > 0 ? std::string(narrow, size - 1) : "?";
}

std::string Hex(uintptr_t number) {
  char text[16];
  return {text, std::to_chars(text, text + sizeof text, number, 16).ptr};
}

int CountOf(const std::vector<std::string>& calls, const std::string& call) {
  return static_cast<int>(std::count(calls.begin(), calls.end(), call));
}

}  // namespace vexa::test
