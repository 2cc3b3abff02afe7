# Running test suites and counting their cases.
# shellcheck shell=bash

# One line for each suite or check: name, passed, failed, skipped, separated by tabs.
readonly tally=$build/tally.tsv

count() { printf '%s\t%d\t%d\t%d\n' "$1" "$2" "$3" "${4:-0}" >>"$tally"; }

# Runs a check and counts it as one test.
check() {
  local name=$1
  shift
  if timed "$name" "$@"; then count "$name" 1 0; else count "$name" 0 1; warn "$name failed"; fi
}

# run_suites PRESET [CTEST ARGUMENT...]: runs a preset's tests and counts every case. What a suite
# leaves is trusted only as far as it goes: a suite that died, left no results, or ran no case
# counts as failed.
run_suites() {
  local preset=$1 folder=$build/$1 report=$build/logs/$1.xml log=$build/logs/$1-tests.log
  shift
  rm -rf "$folder/results" "$report"
  mkdir -p "$folder/results"
  local status=0
  ctest --test-dir "$folder" --output-on-failure --no-tests=error --output-junit "$report" \
    --parallel "$(nproc)" "$@" </dev/null >"$log" 2>&1 || status=$?
  local before=0
  before=$(failures)
  if [[ -s $report ]]; then
    count_report "$preset" "$report"
  else
    count "$preset: ctest" 0 1
  fi
  # CTest may know of a failure that its report does not show.
  if [[ $status -ne 0 && $(failures) == "$before" ]]; then count "$preset: ctest" 0 1; fi
  [[ $status -eq 0 ]] || show_failures "$log"
}

# The output of a run without what went well: the start of a case is shown unless its success follows.
show_failures() {
  awk '
    / +Start +[0-9]+:| Test +#[0-9]+:.* Passed |^\[-{10}\]/ { next }
    /^\[ RUN      \]/ { start = $0; next }
    /^\[       OK \]/ { start = ""; next }
    start != "" { print start; start = "" }
    { print }' "$1" | tail -n 300 >&2
}

failures() { awk -F '\t' '{ sum += $3 } END { print sum + 0 }' "$tally"; }

# Counts the cases behind each test of a report of CTest.
count_report() {
  local preset=$1 report=$2 name status passed failed results
  while IFS=$'\t' read -r name status passed failed; do
    results=$build/$preset/results/$name.xml
    if [[ -s $results ]]; then
      count_results "$preset: $name" "$status" "$results"
    elif [[ $status == run ]] && ! is_suite "$preset" "$name"; then
      count "$preset: $name" 1 0
    elif [[ $status == disabled ]]; then
      count "$preset: $name" 0 0 1
    else
      count "$preset: $name" "$passed" $((failed + 1))
      warn "$preset: $name ended without results"
    fi
  done < <(tests_of_report "$report")
}

is_suite() { grep -qxF "$2" "$build/$1/suites.txt"; }

# For each test: its name, CTest's verdict, and the cases that its output shows as passed and failed
# (all that is known of a suite that died).
tests_of_report() {
  awk '
    function attribute(line, name) {
      return match(line, " " name "=\"[^\"]*\"") \
        ? substr(line, RSTART + length(name) + 3, RLENGTH - length(name) - 4) : ""
    }
    function finish() { if (name != "") print name "\t" status "\t" ok "\t" bad }
    /<testcase / {
      finish()
      name = attribute($0, "name"); status = attribute($0, "status"); ok = 0; bad = 0
    }
    /^\[       OK \]/ { ++ok }
    /^\[  FAILED  \].*\([0-9]+ ms\)/ { ++bad }
    END { finish() }' "$1"
}

# Counts the cases in the results of one suite.
count_results() {
  local name=$1 status=$2 results=$3 tests failed skipped
  read -r tests failed skipped < <(awk '
    function number(line, name) {
      return match(line, " " name "=\"[0-9]+\"") \
        ? substr(line, RSTART + length(name) + 3, RLENGTH - length(name) - 4) + 0 : 0
    }
    /<testsuites / { tests = number($0, "tests"); failed = number($0, "failures") + number($0, "errors") }
    /<testsuite / { skipped += number($0, "skipped") + number($0, "disabled") }
    END { print tests + 0, failed + 0, skipped + 0 }' "$results")
  local passed=$((tests - failed - skipped))
  # Every case was fine and yet the program failed: a leak, or a crash while ending.
  if [[ $status != run && $failed -eq 0 ]]; then failed=1; fi
  if [[ $tests -eq 0 ]]; then failed=1; warn "$name has no cases"; fi
  count "$name" "$passed" "$failed" "$skipped"
}

# Every folder of tests/ that holds sources must have become a suite or test of the preset.
check_suites() {
  local preset=$1 folder name known bad=0
  shift
  known=$(ctest --test-dir "$build/$preset" -N)
  for folder in "$@"; do
    compgen -G "$root/tests/$folder/*.cpp" >/dev/null || continue
    name=${folder}_tests
    grep -qE ": ${name}$" <<<"$known" || { warn "$preset lacks the suite $name"; bad=1; }
  done
  return "$bad"
}

# run_walk SCRIPT [ARGUMENT...]: walks through the desk and counts each step; ends it after walk_seconds.
run_walk() {
  local name=$1 log=$build/logs/$1.log passed failed status=0
  shift
  timeout "${walk_seconds:-600}" "$root/scripts/$name" "$@" >"$log" 2>&1 || status=$?
  cat "$log" >&2
  passed=$(grep -c '^ok - ' "$log" || true)
  failed=$(grep -c '^not ok - ' "$log" || true)
  if [[ $failed -eq 0 && ($status -ne 0 || $passed -eq 0) ]]; then failed=1; fi
  count "$name" "$passed" "$failed"
}

# Prints all that failed, and as the last line the sums.
print_tally() {
  awk -F '\t' '
    { passed += $2; failed += $3; skipped += $4 }
    $3 > 0 { printf "failed: %s (%d of %d)\n", $1, $3, $2 + $3 }
    END {
      line = sprintf("%d passed, %d failed", passed, failed)
      if (skipped > 0) line = line sprintf(", %d skipped", skipped)
      print line
    }' "$tally"
}
