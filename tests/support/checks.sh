# Counts what a script of tests checks. Sourced after lib.sh; what the script writes goes to $work.

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
passed=0
failed=0

# check NAME COMMAND...: what the command says is shown when it fails, with the ends of $work/out and $work/err.
check() {
  local name=$1
  shift
  if "$@" >"$work/log" 2>&1; then
    echo "ok $name"
    passed=$((passed + 1))
  else
    echo "FAIL $name"
    failed=$((failed + 1))
    tail -n 15 "$work/log" "$work/out" "$work/err" 2>/dev/null
  fi
}

# run_program EXPECTED_CODE COMMAND...: its output, with the ends of lines of this system, in out and err.
run_program() {
  local expected=$1 code=0
  shift
  timeout --kill-after=10 300 "$@" </dev/null >"$work/raw" 2>"$work/err" || code=$?
  tr -d '\r' <"$work/raw" >"$work/out"
  [ "$code" = "$expected" ] || { echo "exit code $code, not $expected"; return 1; }
}

printed() { grep -q -x -F -- "$1" "$work/out"; }

# The last line and the exit code of the script.
end_checks() {
  echo "$passed passed, $failed failed"
  [ "$failed" = 0 ]
}
