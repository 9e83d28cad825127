#!/usr/bin/env bash
# Shows that the fuzz targets find faults: puts each fault of fuzz/faults into a copy of the parsers and fuzzes it, with
# the dictionary but without the corpus, for at most five minutes. One line per fault with the seconds it took; the exit
# code is 1 when one was not found. Not part of ./test.

source "$(dirname "${BASH_SOURCE[0]}")/../tools/lib.sh"

readonly LIMIT_SECONDS=300
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
missed=0

for fault in "$ROOT"/fuzz/faults/*.patch; do
  name=${fault##*/}
  name=${name%.patch}
  target=elements
  grep -q '^+++ b/radio/bss_list' "$fault" && target=bss_list
  tree=$work/$name
  mkdir -p "$tree/corpus"
  cp -r "$ROOT/radio" "$ROOT/frame" "$ROOT/fuzz" "$tree/"
  patch --quiet --directory="$tree" --strip=1 <"$fault"
  (cd "$tree" && clang++-19 -std=c++23 -O2 -g -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=all \
    -D_GLIBCXX_ASSERTIONS -I. -o fuzzer "fuzz/${target}_fuzz.cc" \
    radio/{antenna_records,bss_list,count_text,elements,max_rate,rate_tables,scan_classifier}.cc)
  begin=$(date +%s.%N)
  code=0
  (cd "$tree" && ./fuzzer -seed=1 -max_len=700 -timeout=20 -max_total_time=$LIMIT_SECONDS -dict="fuzz/$target.dict" corpus) \
    >"$tree/log" 2>&1 || code=$?
  seconds=$(awk -v begin="$begin" -v end="$(date +%s.%N)" 'BEGIN { printf "%.1f", end - begin }')
  if [ "$code" = 0 ]; then
    echo "MISSED $name: nothing in $seconds s"
    missed=$((missed + 1))
  else
    echo "found $name after $seconds s: $(grep -m1 -oE "ERROR: .{0,70}|runtime error: .{0,70}|Assertion '.{0,60}" "$tree/log" || echo "exit code $code")"
  fi
done
[ "$missed" = 0 ]
