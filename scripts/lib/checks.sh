# Checks of the sources and of the built library that need no test program.
# shellcheck shell=bash

our_sources() {
  (cd "$root" && find src desk tests bench fuzz -type f \( -name '*.h' -o -name '*.cpp' \) | sort)
}

check_format() {
  local files
  mapfile -t files < <(our_sources)
  (cd "$root" && clang-format-14 --dry-run -Werror "${files[@]}") && return 0
  warn "scripts/format mends this"
  return 1
}

# What each folder may include, a line each: the folder, then those whose headers it may use, as
# includes name them; "/*" stands for all folders below. The longest line of a source's folder counts.
readonly folder_includes="\
src/host host
src/viewkit viewkit host
src/viewkit/grid viewkit/grid viewkit host
src/viewkit/tree viewkit/tree viewkit host
src/viewkit/controls viewkit/controls viewkit host
src/viewkit/layout viewkit/layout viewkit/controls viewkit/grid viewkit/tree viewkit host
src/viewkit/win32 viewkit viewkit/* host
src/editing editing viewkit viewkit/* host
src/maintenance maintenance editing viewkit viewkit/* host
src/picker picker editing viewkit viewkit/* host
src/com com host
src/accessible accessible com viewkit viewkit/* host
src/component component component/* accessible com picker maintenance editing viewkit viewkit/* host
desk/book/files book/files host
desk/book/database book/database host
desk/book/sql book/sql book/database host
desk/book/session book/session book/sql book/database host
desk/book/sqlite book/sqlite book/session book/sql book/database book/files host
desk/book/odbc book/odbc book/session book/sql book/database book/files host
desk/book/journal book/journal book/session book/sql book/database host
desk/book/ledger book/ledger book/session book/sql book/database embedded host
desk/book/exchange book/exchange book/ledger book/session book/database book/files embedded host
desk/book/chart book/chart book/ledger book/session book/sql book/database host
desk/book/host book/host book/ledger book/session book/sql book/database book/files host
desk/book book book/* embedded host
desk/views views book book/* embedded viewkit viewkit/* host
desk/app/frame app/frame views viewkit viewkit/* host
desk/app/container app/container app/frame app com host
desk/app/controls app/controls app/container app/automation app com views book book/* viewkit viewkit/* host
desk/app/posting app/posting app/controls app/container app/frame app com views book book/* viewkit viewkit/* host
desk/app/progress app/progress app/frame views book book/* viewkit viewkit/* host
desk/app/print app/print app/frame app/progress views book book/* viewkit viewkit/* host
desk/app/sheet app/sheet app/frame app/program views book book/* viewkit viewkit/* host
desk/app app app/* views accessible com book book/* viewkit viewkit/* host"

# The modules that may know Windows, and their suites.
readonly windows_folders='^((src/viewkit/win32|src/com|src/accessible|src/component|desk/app|tests/component|tests/windows|tests/package)/|desk/book/(odbc/odbc_api\.h|files/fresh_file\.cpp)$)'
readonly windows_words='<(windows|windowsx|commctrl|ole2|oleauto|olectl|objbase)\.h>|\<(HWND|HDC|HRESULT|BSTR|IDispatch|IUnknown|LPARAM|WPARAM)\>'

check_layers() {
  local bad=0
  portable_sources_name_windows && bad=1
  includes_point_up && bad=1
  return "$bad"
}

# Comments may speak of windows; the code may not.
portable_sources_name_windows() {
  local found
  found=$(our_sources | grep -vE "$windows_folders" | (cd "$root" && xargs grep -nE "$windows_words") |
    grep -vE '^[^:]*:[0-9]*: *(//|\*)' || true)
  found+=$(our_sources | grep -vE "$windows_folders" |
    (cd "$root" && xargs grep -nE '#include "viewkit/win32/') || true)
  [[ -n $found ]] || return 1
  warn "these know Windows and must not:"
  printf '%s\n' "$found" >&2
}

includes_point_up() {
  local found
  # What measures the desk from inside is one of the benchmarks.
  found=$(our_sources | grep -E '^(src|desk)/' | grep -v '^desk/app/measure/' | (cd "$root" && xargs grep -HnE '^#include "') |
    awk -v table="$folder_includes" '
      BEGIN {
        count = split(table, lines, "\n")
        for (i = 1; i <= count; ++i) {
          words = split(lines[i], word, " ")
          known[word[1]]
          for (j = 2; j <= words; ++j) may[word[1], word[j]]
        }
      }
      function folder_of(path) { return sub(/\/[^\/]*$/, "", path) ? path : "" }
      {
        folder = folder_of(substr($0, 1, index($0, ":") - 1))
        while (folder != "" && !(folder in known)) folder = folder_of(folder)
        included = $0; sub(/^.*#include "/, "", included)
        included = folder_of(included)
        # A generated header stands beside nothing: it has no folder.
        if (included == "") next
        if (!((folder, included) in may) && !((folder, folder_of(included) "/*") in may)) print
      }')
  [[ -n $found ]] || return 1
  warn "these include what is above them:"
  printf '%s\n' "$found" >&2
}

readonly library_exports="DllCanUnloadNow DllGetClassObject DllRegisterServer DllUnregisterServer"
readonly system_libraries='^(advapi32|comctl32|comdlg32|gdi32|imm32|kernel32|msimg32|msvcrt|ole32|oleaut32|rpcrt4|shell32|shlwapi|user32|usp10|uxtheme|version)\.dll$'

# check_library PRESET TOOL-PREFIX MACHINE BYTES: what a host relies on before it runs any of the code, and
# how large it may be.
check_library() {
  local library=$build/$1/bin/tavrix.dll objdump=$2-objdump machine=$3 most=$4 facts exports strange bytes bad=0
  [[ -f $library ]] || { warn "$library was not built"; return 1; }
  facts=$("$objdump" -p "$library")
  grep -q "file format $machine" <<<"$facts" || { warn "not for $machine"; bad=1; }
  exports=$(awk '/^\[Ordinal\/Name Pointer\] Table/ { on = 1; next } on && NF == 0 { exit }
    on { print $NF }' <<<"$facts" | sort | paste -s -d ' ')
  [[ $exports == "$library_exports" ]] || { warn "exports: $exports"; bad=1; }
  strange=$(awk '/DLL Name:/ { print tolower($NF) }' <<<"$facts" | grep -vE "$system_libraries" || true)
  [[ -z $strange ]] || { warn "imports:" $strange; bad=1; }
  bytes=$(stat -c %s "$library")
  [[ $bytes -lt $most ]] || { warn "$bytes bytes"; bad=1; }
  grep -qE 'TYPELIB' <<<"$facts" || { warn "no type library"; bad=1; }
  return "$bad"
}

# Every public member stands in the reference as the interface definitions declare it.
check_reference() { perl "$root/scripts/reference" --check; }

# Books that were made by hand lie in the user's documents, survive the prefix that they were made
# through, and are never overwritten by one.
check_documents() (
  set -e
  source "$root/scripts/lib/documents.sh"
  room=$(mktemp -d)
  trap 'rm -rf "$room"' EXIT
  unset XDG_CONFIG_HOME XDG_DOCUMENTS_DIR
  HOME=$room/home
  mkdir -p "$HOME/.config" "$room/prefix/drive_c/users/"{Public,me}/Documents
  printf 'XDG_DOCUMENTS_DIR="$HOME/Meine Dokumente"\n' >"$HOME/.config/user-dirs.dirs"
  documents="$HOME/Meine Dokumente" me=$room/prefix/drive_c/users/me
  mkdir -p "$me/Documents/Tavrix" "$me/AppData/Roaming/Tavrix/selfbb"
  printf old >"$me/Documents/Tavrix/a.book"
  printf layout >"$me/AppData/Roaming/Tavrix/selfbb/Kjkm.txt"
  rescue_documents "$room/prefix"
  keep_documents "$room/prefix"
  printf new >"$me/Documents/Tavrix/a.book"
  printf made >"$me/AppData/Roaming/Tavrix/desk.txt"
  rescue_documents "$room/prefix"
  keep_documents "$room/prefix"
  rm -rf "$room/prefix"
  [[ $(<"$documents/Tavrix/a.book") == new && $(<"$documents/Tavrix/user/desk.txt") == made &&
    $(<"$documents/Tavrix/user/selfbb/Kjkm.txt") == layout ]]
)
