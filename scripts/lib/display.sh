# A display of our own: an X server without a screen, and a window manager, without which modal
# dialogs get no keys.
# shellcheck shell=bash

display_processes=()

# Starts both on a free display, unless one runs already, and sets DISPLAY.
start_display() {
  [[ ${#display_processes[@]} -eq 0 ]] || return 0
  mkdir -p "$build"
  local number=$build/display
  : >"$number"
  # Without repeated keys: on a busy machine a key that is pressed would count twice.
  Xvfb -r -displayfd 3 -screen 0 1280x960x24 -nolisten tcp 3>"$number" </dev/null >/dev/null 2>&1 &
  display_processes+=($!)
  await_in 10 test -s "$number" || die "no display: Xvfb did not start"
  DISPLAY=:$(<"$number")
  export DISPLAY
  openbox </dev/null >/dev/null 2>&1 &
  display_processes+=($!)
  await_in 10 window_manager_runs || die "no window manager: openbox did not start"
}

window_manager_runs() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }

stop_display() {
  local process
  for process in "${display_processes[@]}"; do
    kill "$process" 2>/dev/null || true
    wait "$process" 2>/dev/null || true
  done
  display_processes=()
}
