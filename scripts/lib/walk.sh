# Driving the desk from outside: keys, mouse and pictures.
# shellcheck shell=bash

readonly screenshots=${TAVRIX_SCREENSHOTS:-$build/screenshots}
steps=0 failed_steps=0 desk_process='' desk_window=''

readonly sample_book=$build/sample.book

# Keeps the book that the desk has made in the prefix that is set, when it was first started there.
keep_sample_book() {
  local made
  made=$(compgen -G "$WINEPREFIX/drive_c/users/*/Documents/Tavrix/*.book" | head -n 1)
  rm -f "$sample_book"
  sqlite3 "$made" ".backup '$sample_book'"
}

begin_walk() {
  rm -rf "$screenshots"
  mkdir -p "$screenshots"
  start_desk "$@"
}

# Also for a walk that has closed the desk and goes on.
start_desk() {
  "$root/scripts/wine" "$build/win64/bin/desk.exe" "$@" </dev/null >"$screenshots/desk.log" 2>&1 &
  desk_process=$!
}

# Runs an action and tells how it went.
step() {
  local name=$1 verdict=ok
  shift
  steps=$((steps + 1))
  "$@" || { verdict="not ok"; failed_steps=$((failed_steps + 1)); }
  printf '%s - %s\n' "$verdict" "$name"
  [[ $verdict == ok ]] || take_picture "$screenshots/$(printf '%02d' "$steps")-failed.png"
}

end_walk() {
  if desk_runs; then kill "$desk_process"; fi
  wait "$desk_process" 2>/dev/null || true
  rm -f "$screenshots/now.png"
  [[ $failed_steps -eq 0 ]]
}

take_picture() { import -silent -window root "$1"; }

# The picture of this step, once the screen stands still: 0.2 s without a change.
settled_picture() {
  local picture last='' now try
  picture=$screenshots/$(printf '%02d' "$steps").png
  for ((try = 0; try < 50; ++try)); do
    sleep 0.2
    take_picture "$picture"
    now=$(picture_content "$picture")
    [[ $now != "$last" ]] || return 0
    last=$now
  done
}

# The pixels alone: a file also holds the time.
picture_content() { convert "$1" rgb:- | sha256sum; }

# A step must change what is seen, however long a busy machine takes to show it.
changes_picture() {
  local before
  before=$(picture_content "$screenshots/$(printf '%02d' $((steps - 1))).png")
  "$@"
  await_in 10 picture_differs "$before" || { settled_picture; return 1; }
  settled_picture
  desk_runs
}
picture_differs() {
  take_picture "$screenshots/now.png"
  [[ $(picture_content "$screenshots/now.png") != "$1" ]]
}

desk_runs() { kill -0 "$desk_process" 2>/dev/null; }

await_window() {
  await_in 60 find_window || return 1
  xdotool windowactivate --sync "$desk_window"
  settled_picture
  desk_runs
}
find_window() {
  desk_window=$(xdotool search --onlyvisible --class 'desk.exe' 2>/dev/null | head -n 1)
  [[ -n $desk_window ]]
}

# The window manager loses the focus when two modal windows close at once; a user of it would click.
back_to_window() { xdotool windowactivate --sync "$desk_window"; }

keys() { changes_picture xdotool key --clearmodifiers --delay 60 "$@"; }

# click X Y [BUTTON]: in pixels of the frame's client area.
click() {
  changes_picture xdotool mousemove --sync --window "$desk_window" "$1" "$2" click "${3:-1}"
}

# drag X Y TO-X TO-Y: with the left button, in pixels of the frame's client area.
drag() { changes_picture drag_mouse "$@"; }
drag_mouse() {
  xdotool mousemove --sync --window "$desk_window" "$1" "$2" mousedown 1 \
    mousemove --sync --window "$desk_window" "$3" "$4" mouseup 1
}

resize_window() { changes_picture xdotool windowsize --sync "$desk_window" "$1" "$2"; }

type_text() { changes_picture xdotool type --delay 60 "$1"; }

close_window() {
  xdotool key --clearmodifiers alt+F4
  await_in 20 desk_is_gone && wait "$desk_process"
}
desk_is_gone() { ! desk_runs; }
