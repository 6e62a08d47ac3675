# A Wine of our own for tests; sourced after tools/lib.sh, not run.
# shellcheck shell=bash

readonly wine_server=/usr/lib/wine/wineserver64

# start_wine FOLDER: makes Wine's folder unless it is there, and starts a server that stays, with what it starts:
# otherwise these would hold on to the output of the first test until they end. Wants a display. Fails unless a program
# has then run.
start_wine() {
  export WINEPREFIX=$1 WINEDEBUG=-all
  local server answer=0
  mkdir -p "$WINEPREFIX"
  # One that an interrupted run has left behind would keep ours from starting.
  if "$wine_server" --kill 2>/dev/null; then "$wine_server" --wait; fi
  "$wine_server" --foreground --persistent >"$WINEPREFIX/server.log" 2>&1 &
  server=$!
  "$root/cmake/windows/wine-run" wineboot >"$WINEPREFIX/boot.log" 2>&1 || answer=$?
  # Its success alone says little.
  [[ $answer -ne 0 ]] || "$root/cmake/windows/wine-run" cmd /c exit 7 >>"$WINEPREFIX/boot.log" 2>&1 || answer=$?
  if [[ $answer -ne 7 ]] || ! kill -0 "$server" 2>/dev/null; then
    cat "$WINEPREFIX/server.log" "$WINEPREFIX/boot.log" >&2
    fail "Wine does not start in $WINEPREFIX"
  fi
}

stop_wine() { [[ -z ${WINEPREFIX:-} ]] || "$wine_server" -k || true; }
