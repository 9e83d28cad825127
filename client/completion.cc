#include "client/completion.h"

#include <vector>

#include "client/families.h"

namespace vexahealth {
namespace {

constexpr std::string_view kOtherCommands[] = {"get", "report", "record", "doctor", "trace", "keys", "completion"};
constexpr const char* kOptions = "--json --format --watch --count --no-wait --help --version";

std::string CommandWords() {
  std::string words;
  for (const Command& command : Commands()) words += std::string(command.name) + " ";
  for (const std::string_view command : kOtherCommands) words += std::string(command) + " ";
  words.pop_back();
  return words;
}

std::string KeyWords() {
  std::string words;
  for (const Family& family : Families()) {
    for (const Row& row : family.rows) words += std::string(row.key) + " ";
  }
  words.pop_back();
  return words;
}

std::string Replaced(std::string text, std::string_view mark, std::string_view with) {
  const size_t place = text.find(mark);
  return text.replace(place, mark.size(), with);
}

// What can follow a word, as pairs of the word and its followers; the first word that matches decides. The scripts
// share it.
std::string Followers(std::string_view begin, std::string_view between, std::string_view end) {
  const std::vector<std::pair<std::string, std::string>> followers = {
      {"get", KeyWords()},
      {"--format", "table json ndjson csv prometheus"},
      {"settings", "set --json --format"},
      {"record", "--show-serials --no-wait"},
      {"report", "--output --show-serials --json --no-wait"},
      {"set", "charge-limit quiet-fan --dry-run"},
      {"--dry-run", "charge-limit quiet-fan --json"},
      {"charge-limit", "60 80 100"},
      {"quiet-fan", "on off"},
      {"completion", "bash zsh fish powershell"},
      {"trace", "--seconds --level --json"},
  };
  std::string lines;
  for (const auto& [word, list] : followers) {
    lines += std::string(begin) + word + std::string(between) + list + std::string(end);
  }
  return lines;
}

constexpr const char* kBash = R"(# bash completion of vexahealth; read it with: source <(vexahealth completion bash)
_vexahealth() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} list
  case $before in
@FOLLOWERS@    *) list="@ALL@" ;;
  esac
  COMPREPLY=($(compgen -W "$list" -- "$word"))
}
complete -F _vexahealth vexahealth vexahealth.exe
)";

constexpr const char* kZsh = R"(# zsh completion of vexahealth; read it with: source <(vexahealth completion zsh)
_vexahealth() {
  local list
  case ${words[CURRENT-1]} in
@FOLLOWERS@    *) list="@ALL@" ;;
  esac
  compadd -- ${=list}
}
compdef _vexahealth vexahealth vexahealth.exe
)";

constexpr const char* kFish = R"(# fish completion of vexahealth; read it with: vexahealth completion fish | source
function __vexahealth
  switch (commandline -opc)[-1]
@FOLLOWERS@    case '*'
      string split ' ' -- '@ALL@'
  end
end
complete -c vexahealth -f -a '(__vexahealth)'
complete -c vexahealth.exe -f -a '(__vexahealth)'
)";

constexpr const char* kPowerShell =
    R"(# PowerShell completion of vexahealth; read it with: vexahealth completion powershell | Out-String | Invoke-Expression
Register-ArgumentCompleter -Native -CommandName vexahealth, vexahealth.exe -ScriptBlock {
  param($wordToComplete, $commandAst, $cursorPosition)
  $followers = @{
@FOLLOWERS@  }
  $elements = @($commandAst.CommandElements | ForEach-Object { $_.ToString() })
  $last = $elements.Count - 1
  if ($wordToComplete -ne '') { $last -= 1 }
  $list = '@ALL@'
  if ($last -ge 1 -and $followers.ContainsKey($elements[$last])) { $list = $followers[$elements[$last]] }
  $list -split ' ' | Where-Object { $_ -like "$wordToComplete*" } | ForEach-Object {
    [System.Management.Automation.CompletionResult]::new($_, $_, 'ParameterValue', $_)
  }
}
)";

}  // namespace

std::string CompletionScript(std::string_view shell) {
  const std::string all = CommandWords() + " " + kOptions;
  const auto script = [&all](const char* text, std::string_view begin, std::string_view between, std::string_view end) {
    return Replaced(Replaced(text, "@FOLLOWERS@", Followers(begin, between, end)), "@ALL@", all);
  };
  if (shell == "bash") return script(kBash, "    ", ") list=\"", "\" ;;\n");
  if (shell == "zsh") return script(kZsh, "    ", ") list=\"", "\" ;;\n");
  if (shell == "fish") return script(kFish, "    case '", "'\n      string split ' ' -- '", "'\n");
  if (shell == "powershell") return script(kPowerShell, "    '", "' = '", "'\n");
  return {};
}

}  // namespace vexahealth
