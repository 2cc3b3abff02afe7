# The pinned source of SQLite: fetched once, checked by its hashes.
# shellcheck shell=bash

# Debian's own SQLite refuses a function named `left`, which the statements need; this package of
# the npm registry carries the source of a newer one.
readonly sqlite_package=better-sqlite3@12.11.1
readonly sqlite_archive=better-sqlite3-12.11.1.tgz
readonly sqlite_archive_sum="\
76af40b40a608393c616d0733c54819771d94231e893981a40233ace1d989346929830acd426e7548f3f1e001242434ab16169b1e20ef5b7a0e71c696216c87c  $sqlite_archive"
readonly sqlite_sums="\
60d2f39a3726cd6b9021da6f4e868608d66fbb6528a9f513dc8ffcc640493422  sqlite3.c
9e69a1353a4288450b0d5239ede11fc7f1f4c8e5eb07491fc8317eacb5b7de7e  sqlite3.h"

fetch_sqlite() { fetch_pinned sqlite SQLite "$sqlite_sums" unpack_sqlite; }

# In the current folder; each step is checked, since `set -e` is off under `||`.
unpack_sqlite() {
  npm pack "$sqlite_package" --ignore-scripts --silent </dev/null >/dev/null &&
    sha512sum --check --quiet <<<"$sqlite_archive_sum" >&2 &&
    mkdir unpacked &&
    tar xzf "$sqlite_archive" -C unpacked --strip-components=3 \
      package/deps/sqlite3/sqlite3.c package/deps/sqlite3/sqlite3.h &&
    (cd unpacked && sha256sum --check --quiet <<<"$sqlite_sums" >&2)
}
