# A Wine of our own for tests; sourced after tools/lib.sh, not run.
# shellcheck shell=bash

readonly wine_server=/usr/lib/wine/wineserver64

# Makes folders of its own of what Wine has linked to a home folder, that of the run in which it was made: without a
# desktop the system's file dialog crashes.
unlink_home() {
  local link
  while IFS= read -r -d '' link; do
    rm "$link"
    mkdir "$link"
  done < <(find "$WINEPREFIX/drive_c/users" -mindepth 2 -maxdepth 2 -type l -print0)
}

# start_wine FOLDER: makes Wine's folder unless it is there, and starts a server that stays, with what it starts:
# otherwise these would hold on to the output of the first test until they end. Wants a display. Fails unless a program
# has then run. A program that crashes leaves a stack trace on standard error, and no box that waits for a click.
start_wine() {
  export WINEPREFIX=$1 WINEDEBUG=-all
  local server
  mkdir -p "$WINEPREFIX"
  # One that an interrupted run has left behind would keep ours from starting.
  if "$wine_server" --kill 2>/dev/null; then "$wine_server" --wait; fi
  "$wine_server" --foreground --persistent >"$WINEPREFIX/server.log" 2>&1 &
  server=$!
  if ! {
    "$root/cmake/windows/wine-run" wineboot &&
      # By a program, and so a proof that they run: the success of the boot alone says little.
      "$root/cmake/windows/wine-run" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f
  } >"$WINEPREFIX/boot.log" 2>&1 || ! kill -0 "$server" 2>/dev/null; then
    cat "$WINEPREFIX/server.log" "$WINEPREFIX/boot.log" >&2
    fail "Wine does not start in $WINEPREFIX"
  fi
  unlink_home
}

stop_wine() { [[ -z ${WINEPREFIX:-} ]] || "$wine_server" -k || true; }
