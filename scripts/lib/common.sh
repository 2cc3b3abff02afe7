# Sourced by every script: where things are, and how a script speaks.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
cache=$root/.cache
build=$root/build
readonly root cache build

# One cache of compiler results per checkout, whatever the build folder.
export CCACHE_DIR=$cache/ccache CCACHE_MAXSIZE=2G CCACHE_NOHASHDIR=1
# Chinese file names reach Wine only in a UTF-8 locale.
export LC_ALL=C.UTF-8

say() { printf '== %s\n' "$*" >&2; }
warn() { printf '!! %s\n' "$*" >&2; }
die() { warn "$*"; exit 1; }

# Says a step's name, runs it, and says how long it took.
timed() {
  local name=$1 start=$SECONDS status=0
  shift
  say "$name"
  "$@" || status=$?
  say "$name: $((SECONDS - start)) s"
  return "$status"
}

# The hash of standard input, as one word.
hash_of() { sha256sum | cut -d ' ' -f 1; }

# Whether the stamp file $1 holds the text $2.
stamped() { [[ -f $1 && $(<"$1") == "$2" ]]; }

# Writes text $2 into the stamp file $1, in one step.
stamp() {
  mkdir -p "$(dirname "$1")"
  printf '%s\n' "$2" >"$1.new"
  mv "$1.new" "$1"
}

# await_in SECONDS COMMAND...: repeats the command until it succeeds, and fails when it never does.
await_in() {
  local end=$((SECONDS + $1))
  shift
  until "$@"; do
    ((SECONDS < end)) || return 1
    sleep 0.1
  done
}

# fetch_pinned FOLDER NAME SUMS UNPACK: what the function UNPACK leaves in `unpacked`, in the folder that is then
# the current one, becomes a folder of the cache, unless what SUMS names is there already.
fetch_pinned() {
  local folder=$cache/$1 name=$2 sums=$3 unpack=$4 work
  stamped "$folder/stamp" "$sums" && return 0
  say "fetching $name"
  mkdir -p "$cache"
  work=$(mktemp -d "$folder.XXXXXX")
  (cd "$work" && "$unpack") || die "$name could not be had: see above"
  rm -rf "$folder"
  mv "$work/unpacked" "$folder"
  rm -r "$work"
  stamp "$folder/stamp" "$sums"
}
