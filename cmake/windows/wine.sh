# A Wine of our own for tests; sourced after tools/lib.sh, not run.
# shellcheck shell=bash

readonly wine_server=/usr/lib/wine/wineserver64

# start_wine FOLDER: makes Wine's folder unless it is there, and starts a server that stays, with what it starts:
# otherwise these would hold on to the output of the first test until they end. Wants a display.
start_wine() {
  export WINEPREFIX=$1 WINEDEBUG=-all
  mkdir -p "$WINEPREFIX"
  "$wine_server" --foreground --persistent >"$WINEPREFIX/server.log" 2>&1 &
  "$root/cmake/windows/wine-run" wineboot >"$WINEPREFIX/boot.log" 2>&1 || fail "Wine does not start"
}

stop_wine() { [[ -z ${WINEPREFIX:-} ]] || "$wine_server" -k || true; }
