# Wine: prepared prefixes of this checkout, and the life of a wineserver.
# shellcheck shell=bash

# A crash ends the program at once instead of asking; no offers to fetch .NET or a browser.
export WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d"

readonly wine_folder=${TAVRIX_WINE:-$cache/wine}

# Fonts that programs ask for and the settings that make a run repeatable, as a registry file. The
# "Sharp" face has drawn pictures of the small sizes, without which Chinese text is a blur there.
wine_settings() {
  local font
  printf 'REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Wine\\Fonts\\Replacements]\r\n'
  for font in "MS Shell Dlg" "MS Shell Dlg 2" Tahoma "MS Sans Serif" System SimSun \
    "Microsoft YaHei" "Microsoft YaHei UI" "Segoe UI"; do
    printf '"%s"="WenQuanYi Zen Hei Sharp"\r\n' "$font"
  done
  printf '\r\n[HKEY_CURRENT_USER\\Control Panel\\Desktop\\WindowMetrics]\r\n'
  for font in MessageFont MenuFont StatusFont CaptionFont SmCaptionFont; do
    printf '"%s"=hex:%s\r\n' "$font" "$(nine_points Tahoma)"
  done
  printf '\r\n[HKEY_CURRENT_USER\\Software\\Wine\\Drivers]\r\n"Graphics"="null"\r\n'
  # A caret that blinks would make two pictures of one state differ.
  printf '\r\n[HKEY_CURRENT_USER\\Control Panel\\Desktop]\r\n"CursorBlinkRate"="-1"\r\n'
}

# A LOGFONTW of 9 points (12 pixels) as the registry holds it: five numbers of which the first is the
# height and the last the weight, eight bytes, the name in 32 UTF-16 units.
nine_points() {
  local face=$1 i
  printf 'f4,ff,ff,ff,00,00,00,00,00,00,00,00,00,00,00,00,90,01,00,00,00,00,00,01,00,00,00,00'
  for ((i = 0; i < 32; i++)); do
    if ((i < ${#face})); then printf ',%02x,00' "'${face:i:1}"; else printf ',00,00'; fi
  done
}

# What a prepared prefix depends on: Wine, whether it has a 32-bit side, and how it is made.
wine_key() {
  { dpkg-query -W -f '${Package} ${Version}\n' wine64 wine32 2>/dev/null || true
    declare -f wine_settings nine_points make_wine_template keep_out_of_home; } | hash_of
}

# Prepares the prefix that all others are copied from: 10 s and 700 MB, once.
make_wine_template() {
  local template=$wine_folder/template key settings
  key=$(wine_key)
  stamped "$wine_folder/stamp" "$key" && return 0
  say "preparing Wine"
  rm -rf "$wine_folder"
  mkdir -p "$wine_folder"
  settings=$wine_folder/settings.reg
  wine_settings >"$settings"
  in_prefix "$template" timeout 300 wine wineboot -i || die "Wine could not be prepared"
  in_prefix "$template" timeout 60 wine regedit /S "$settings" || die "Wine refused its settings"
  in_prefix "$template" timeout 60 wineserver -w
  keep_out_of_home "$template"
  stamp "$wine_folder/stamp" "$key"
}

# Runs a command with a prefix, silently and without a display of its own.
in_prefix() {
  local prefix=$1
  shift
  env -u DISPLAY WINEPREFIX="$prefix" "$@" </dev/null >/dev/null 2>&1
}

# Wine links the user's own folders into a new prefix; a test must not write there.
keep_out_of_home() {
  local link
  find "$1/drive_c/users" -type l | while read -r link; do
    rm "$link"
    mkdir "$link"
  done
}

# Makes $1 a fresh copy of the template, with graphics driver $2 (null or x11).
fresh_prefix() {
  local prefix=$1 driver=$2
  stop_wine "$prefix"
  rm -rf "$prefix"
  mkdir -p "$(dirname "$prefix")"
  cp -a --reflink=auto "$wine_folder/template" "$prefix"
  sed -i "s/^\"Graphics\"=\"null\"/\"Graphics\"=\"$driver\"/" "$prefix/user.reg"
}

# Makes $1 such a copy only where there is none of this template yet: what programs keep in it stays.
lasting_prefix() {
  local prefix=$1 driver=$2
  cmp -s "$wine_folder/stamp" "$prefix.stamp" && return 0
  fresh_prefix "$prefix" "$driver"
  cp "$wine_folder/stamp" "$prefix.stamp"
}

# How a Windows program names the file $1.
windows_path() {
  local path
  path=$(realpath -m "$1")
  printf 'Z:%s\n' "${path//\//\\}"
}

# A server that stays makes each program start in a twentieth of a second instead of seconds.
start_wine() {
  export WINEPREFIX=$1
  timeout 60 wineserver -p </dev/null >/dev/null 2>&1
  timeout 120 wine wineboot </dev/null >/dev/null 2>&1
}

stop_wine() {
  [[ -d $1 ]] || return 0
  WINEPREFIX=$1 timeout 30 wineserver -k </dev/null >/dev/null 2>&1 || true
}
