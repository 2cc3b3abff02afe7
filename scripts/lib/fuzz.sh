# Running the fuzzers.
# shellcheck shell=bash

fuzzer_names() {
  local source
  for source in "$root"/fuzz/*.cpp; do
    [[ -f $source ]] && basename "$source" .cpp
  done
}

# fuzz_one NAME SECONDS: what it finds worth keeping stays in the cache, an input that breaks
# something in build/fuzz/NAME; fuzz/seeds/NAME, where it exists, is the start.
fuzz_one() {
  local name=$1 seconds=$2
  local corpus=$cache/fuzz/$name finds=$build/fuzz/$name log=$build/logs/fuzz-$1.log folders
  mkdir -p "$corpus" "$finds" "$build/logs"
  folders=("$corpus")
  [[ ! -d $root/fuzz/seeds/$name ]] || folders+=("$root/fuzz/seeds/$name")
  if "$build/fuzz/fuzzers/$name" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
    -print_final_stats=1 -artifact_prefix="$finds/" "${folders[@]}" </dev/null >"$log" 2>&1; then
    say "$name: $(awk '/number_of_executed_units/ { print $2 }' "$log") inputs"
    return 0
  fi
  tail -n 60 "$log" >&2
  warn "$name failed; the input is in $finds"
  return 1
}
