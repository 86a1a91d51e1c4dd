# Sourced. A screen of its own with a window manager, and a hand on its mouse and keys, for running
# the window where nobody looks.

# open_screen WIDTHxHEIGHT: starts the screen; DISPLAY points to it from here on. It ends with the
# script that sources this.
open_screen() {
  open_bare_screen "$1"
  XDG_CONFIG_HOME="$screen_folder" openbox >"$screen_folder/manager.log" 2>&1 &
  screen_manager=$!
  wait_until manager_is_up || { cat "$screen_folder"/*.log >&2; return 1; }
}

# open_bare_screen WIDTHxHEIGHT: the same without a window manager.
open_bare_screen() {
  local number
  screen_folder=$(mktemp -d)
  # The server picks a free number and says which. Without -noreset it would start anew whenever its
  # last client leaves, and throw out whoever is coming in just then: the window manager, when
  # xdotool was first.
  Xvfb -displayfd 3 -screen 0 "${1}x24" -nolisten tcp -noreset 3>"$screen_folder/number" \
    2>"$screen_folder/server.log" &
  screen_server=$!
  trap close_screen EXIT
  wait_until test -s "$screen_folder/number" || { cat "$screen_folder/server.log" >&2; return 1; }
  number=$(cat "$screen_folder/number")
  export DISPLAY=":$number"
  unset WAYLAND_DISPLAY
  export QT_QPA_PLATFORM=xcb
}

close_screen() {
  kill "${screen_manager:-}" 2>/dev/null || true
  kill "${screen_server:-}" 2>/dev/null || true
  rm -rf "$screen_folder"
}

manager_is_up() { xdotool get_num_desktops >/dev/null 2>&1; }

# wait_until COMMAND...: up to 30 seconds until it succeeds.
wait_until() {
  local tries=600
  until "$@"; do
    tries=$((tries - 1))
    [ "$tries" -gt 0 ] || { echo "Waited in vain for: $*" >&2; return 1; }
    sleep 0.05
  done
}

# window TITLE: the visible window of that title; fails if there is none.
window() { xdotool search --onlyvisible --name "$1" 2>/dev/null | head -n 1 | grep .; }
window_is_there() { window "$1" >/dev/null; }
window_is_gone() { ! window "$1" >/dev/null; }

# click TITLE X Y: a press of the left button in that window.
click() {
  xdotool mousemove --window "$(window "$1")" "$2" "$3"
  sleep 0.1
  xdotool click 1
}

# press_key TITLE KEY...
press_key() {
  local title=$1
  shift
  xdotool windowfocus --sync "$(window "$title")"
  xdotool key "$@"
}

# picture FILE: what is on the screen.
picture() { scrot --overwrite "$1"; }

# picture_of TITLE FILE: that window, as it is on the screen.
picture_of() {
  local X Y WIDTH HEIGHT
  eval "$(xdotool getwindowgeometry --shell "$(window "$1")" | grep -E '^(X|Y|WIDTH|HEIGHT)=')"
  scrot --overwrite --autoselect "$X,$Y,$WIDTH,$HEIGHT" "$2"
}
