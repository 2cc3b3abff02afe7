# Debian packages: the list, and installing what of it is missing.
# shellcheck shell=bash

# The tools that judge the sources are taken by version, so that all judge alike.
readonly packages=(
  # building
  g++ cmake ninja-build ccache faketime googletest
  unixodbc-dev zlib1g-dev
  mingw-w64 mingw-w64-tools libwine-dev libz-mingw-w64-dev
  # what the pinyin of characters is
  icu-devtools
  # judging
  clang-format-14 clang-tidy-14 clang-14 libclang-rt-14-dev
  # running what is built for Windows, and looking at it
  wine wine64 fonts-wqy-zenhei xvfb openbox xdotool imagemagick x11-utils sqlite3
  # compiling the samples in C#
  mono-mcs libmono-system-windows-forms4.0-cil libmono-microsoft-csharp4.0-cil
  # another program's workbooks for the tests
  python3-openpyxl
  # a database server for the tests, and the driver that reaches it
  postgresql odbc-postgresql openssl
)

# missing_packages PACKAGE...: those of them that are not installed.
missing_packages() {
  local name
  for name in "$@"; do
    dpkg-query -W -f '${db:Status-Abbrev}' "$name" 2>/dev/null | grep -q '^ii' || echo "$name"
  done
}

missing_npm() {
  # npm is large, and often there without being a package: only the command counts.
  command -v npm >/dev/null || [[ -f $cache/sqlite/stamp ]] || echo npm
}

as_root() {
  if [[ $(id -u) == 0 ]]; then "$@"; else sudo "$@"; fi
}

# install_packages PACKAGE...
install_packages() {
  local missing
  mapfile -t missing < <(missing_packages "$@")
  [[ ${#missing[@]} -gt 0 ]] || return 0
  say "installing ${missing[*]}"
  local apt=(env DEBIAN_FRONTEND=noninteractive apt-get -q -o Acquire::Retries=3
    -o DPkg::Lock::Timeout=300)
  as_root "${apt[@]}" update </dev/null >&2
  as_root "${apt[@]}" install -y --no-install-recommends "${missing[@]}" </dev/null >&2
}
