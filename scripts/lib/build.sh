# Configuring and building a preset.
# shellcheck shell=bash

source "$root/scripts/lib/libraries.sh"
source "$root/scripts/lib/tables.sh"

# build_preset PRESET [TARGET...]: builds all of it or the targets given. The output is kept in
# build/logs and shown only when something fails.
build_preset() {
  local preset=$1 log=$build/logs/$1.log
  shift
  # What has come since this checkout was set up.
  fetch_libraries
  make_tables
  local targets=()
  [[ $# -eq 0 ]] || targets=(--target "$@")
  mkdir -p "$build/logs"
  if ! cmake -S "$root" --preset "$preset" -DCMAKE_C_COMPILER_LAUNCHER=ccache \
    -DCMAKE_CXX_COMPILER_LAUNCHER=ccache >"$log" 2>&1; then
    tail -n 40 "$log" >&2
    return 1
  fi
  if ! cmake --build "$build/$preset" "${targets[@]}" -- -k 0 >>"$log" 2>&1; then
    grep -v '^\[[0-9]*/[0-9]*\] ' "$log" | tail -n 200 >&2
    return 1
  fi
}

# Whether a configured preset has the target $2.
has_target() {
  ninja -C "$build/$1" -t query "$2" >/dev/null 2>&1
}
