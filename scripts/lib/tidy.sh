# clang-tidy over the sources that changed since they were last found clean; those of the tests, which
# take as long as all others together, are left to the compiler.
# shellcheck shell=bash

# A source file's stamp holds all that its verdict depends on: the tool, its settings, how the file
# is compiled, and the contents of the file and of every header of ours that it includes. What it
# includes is known from the build. Stamps outlive build folders.
readonly tidy_stamps=$cache/tidy tidy_work=$build/tidy

tidy_sources() {
  rm -rf "$tidy_work"
  mkdir -p "$tidy_stamps" "$tidy_work"
  list_tidy_units native-debug >"$tidy_work/native-debug"
  list_tidy_units win64 >"$tidy_work/win64"
  [[ -s $tidy_work/native-debug ]] || { warn "no sources to judge"; return 1; }
  # The modules that know Windows are judged as Windows sources, all others natively.
  awk -F '\t' 'NR == FNR { native[$1]; next } !($1 in native)' \
    "$tidy_work/native-debug" "$tidy_work/win64" >"$tidy_work/windows"
  write_tidy_keys native-debug "$tidy_work/native-debug"
  write_tidy_keys win64 "$tidy_work/windows"
  local keys units
  keys=$(find "$tidy_work" -name '*.key' | wc -l)
  units=$(cat "$tidy_work/native-debug" "$tidy_work/windows" | wc -l)
  [[ $keys -eq $units ]] || { warn "$units sources, but only $keys could be judged"; return 1; }
  local stale
  mapfile -t stale < <(stale_tidy_keys)
  say "clang-tidy judges ${#stale[@]} of $keys files"
  [[ ${#stale[@]} -gt 0 ]] || return 0
  export -f tidy_one windows_tidy_arguments
  export root build tidy_stamps tidy_work
  printf '%s\0' "${stale[@]}" | xargs -0 -n 1 -P "$(nproc)" bash -c 'tidy_one "$1"' tidy_one
}

# The compiled sources of ours in a preset: file, object, command, separated by tabs.
list_tidy_units() {
  awk -v root="$root/" '
    function value(line) { sub(/^[^:]*: "/, "", line); sub(/",?$/, "", line); return line }
    /^  "command": / { command = value($0) }
    /^  "file": / {
      file = value($0)
      if (index(file, root) != 1) next
      file = substr(file, length(root) + 1)
      if (file !~ /^(src|desk|bench)\/.*\.cpp$/) next
      object = command; sub(/^.* -o /, "", object); sub(/ .*$/, "", object)
      print file "\t" object "\t" command
    }' "$build/$1/compile_commands.json" | sort -u -t $'\t' -k 1,1
}

# write_tidy_keys PRESET LIST: writes NAME.key for each source of the list. The first line tells
# which preset and file it is about.
write_tidy_keys() {
  local preset=$1 list=$2
  { find "$root/src" "$root/desk" "$root/tests" "$root/bench" -type f -name '*.[ch]*'
    find "$build/$preset" -name '*.h' -not -path '*/googletest/*'; } |
    xargs -d '\n' sha256sum >"$tidy_work/hashes"
  local tool
  tool=$(clang-tidy-14 --version | hash_of).$(hash_of <"$root/.clang-tidy")
  ninja -C "$build/$preset" -t deps 2>/dev/null |
    awk -F '\t' -v tool="$tool" -v preset="$preset" -v root="$root/" -v work="$tidy_work/" \
      -v folder="$build/$preset/" '
      FILENAME ~ /\/hashes$/ {
        hash[substr($0, 67)] = substr($0, 1, 64)
        next
      }
      FILENAME != "-" { unit[$2] = $1; command[$2] = $3; next }
      /^[^ ].*: #deps/ { object = $0; sub(/: #deps.*/, "", object); next }
      /^    / {
        path = substr($0, 5)
        if (path !~ /^\//) path = folder path
        if (object in unit && path in hash) used[object] = used[object] path " " hash[path] "\n"
      }
      END {
        for (object in unit) {
          name = unit[object]; gsub(/\//, "@", name)
          key = work name ".key"
          print preset "\t" unit[object] > key
          print tool "\n" command[object] > key
          # Without its includes from a build a verdict cannot be kept.
          if (object in used) { printf "%s", used[object] > key } else { print "unbuilt" > key }
          close(key)
        }
      }' "$tidy_work/hashes" "$list" -
}

stale_tidy_keys() {
  local key
  for key in "$tidy_work"/*.key; do
    cmp -s "$key" "$tidy_stamps/$(basename "$key")" || echo "$key"
  done
}

# Clang does not know all warnings of GCC, and takes the headers of the cross compiler when told where
# they are.
windows_tidy_arguments() {
  local headers
  headers=$(dirname "$(x86_64-w64-mingw32-g++-posix -print-libgcc-file-name)")/include/c++
  printf -- '--extra-arg=%s\n' --target=x86_64-w64-windows-gnu "-isystem$headers" \
    "-isystem$headers/x86_64-w64-mingw32"
}

tidy_one() {
  local key=$1 preset file windows=() arguments=(--extra-arg=-Wno-unknown-warning-option)
  IFS=$'\t' read -r preset file <"$key"
  [[ $preset == native-debug ]] || mapfile -t windows < <(windows_tidy_arguments)
  arguments+=("${windows[@]}")
  if clang-tidy-14 -p "$build/$preset" --quiet "${arguments[@]}" "$root/$file" \
    >"$key.out" 2>"$key.err"; then
    grep -qx unbuilt "$key" || cp "$key" "$tidy_stamps/$(basename "$key")"
    return 0
  fi
  cat "$key.out" >&2
  # No finding and yet no success: the tool itself failed.
  [[ -s $key.out ]] || cat "$key.err" >&2
  return 1
}
