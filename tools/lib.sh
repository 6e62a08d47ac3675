# What the commands of this folder share; sourced, not run.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# The same compiler call in another clone finds its result in the compiler cache. Where a call loads precompiled
# headers, the cache keeps its result only if told that they do not depend on its macros or on the time of day.
export CCACHE_BASEDIR="$root" CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=pch_defines,time_macros

say() { printf '%s\n' "$*"; }

fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

cores() { nproc; }

# Prints the sources of ours that git knows, as paths from the root, each ended by a zero byte.
tracked_sources() {
  git -C "$root" ls-files -z --cached --others --exclude-standard -- '*.cpp' '*.h' |
    while IFS= read -r -d '' file; do
      if [[ -f "$root/$file" ]]; then printf '%s\0' "$file"; fi
    done
}

# configure PRESET: makes build/PRESET unless it is there and newer than what it was made from. Everything else that a
# build depends on is watched by the build itself.
configure() {
  local preset=$1
  local made="$root/build/$preset/build.ninja"
  if [[ ! -f $made || "$root/CMakePresets.json" -nt $made ]]; then
    say "Configuring build/$preset"
    local log="$root/build/$preset-configure.log"
    mkdir -p "$root/build"
    if ! (cd "$root" && cmake --preset "$preset" >"$log" 2>&1); then
      cat "$log" >&2
      fail "could not configure build/$preset"
    fi
  fi
}

# build PRESET [TARGET...]: configures and builds; all targets without names.
build() {
  local preset=$1
  shift
  configure "$preset"
  local targets=("$@")
  [[ ${#targets[@]} -gt 0 ]] || targets=(all)
  cmake --build "$root/build/$preset" --parallel "$(cores)" --target "${targets[@]}" ||
    fail "the build of build/$preset failed"
}

# What stop_all ends, newest first.
started_pids=()

# Ends what start_display and the caller put into started_pids, gently first, and removes the scratch folder.
stop_all() {
  local i pid
  for ((i = ${#started_pids[@]} - 1; i >= 0; --i)); do
    pid=${started_pids[i]}
    kill "$pid" 2>/dev/null || continue
    for _ in {1..50}; do
      kill -0 "$pid" 2>/dev/null || break
      sleep 0.1
    done
    kill -KILL "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
  done
  started_pids=()
  if [[ -n ${scratch:-} ]]; then rm -rf "$scratch"; fi
}

# make_scratch: a folder for settings, sockets and logs, $scratch, so that nothing of the user's is read or changed.
make_scratch() {
  scratch=$(mktemp -d "${TMPDIR:-/tmp}/quorvane.XXXXXX")
  mkdir -p "$scratch/home" "$scratch/runtime"
  chmod 700 "$scratch/runtime"
}

# start_display WIDTH HEIGHT [OPENBOX_CONFIG]: an X server of our own without a screen, and a window manager on it. Sets
# DISPLAY and what programs with windows look at besides. Needs make_scratch.
start_display() {
  local width=$1 height=$2 config=${3:-}
  local number="$scratch/display"
  : >"$number"
  Xvfb -displayfd 3 -screen 0 "${width}x${height}x24" -nolisten tcp 3>"$number" \
    >"$scratch/xvfb.log" 2>&1 &
  started_pids+=($!)
  local server=$!
  local display=
  for _ in {1..400}; do
    # Nothing counts before the end of the line.
    ! read -r display <"$number" || break
    display=
    kill -0 "$server" 2>/dev/null || break
    sleep 0.05
  done
  if [[ -z $display ]]; then
    cat "$scratch/xvfb.log" >&2
    fail "Xvfb did not start"
  fi
  export DISPLAY=":$display"
  unset WAYLAND_DISPLAY XAUTHORITY
  export GDK_BACKEND=x11 NO_AT_BRIDGE=1 GSETTINGS_BACKEND=memory LIBGL_ALWAYS_SOFTWARE=1
  export HOME="$scratch/home" XDG_RUNTIME_DIR="$scratch/runtime"
  unset XDG_CONFIG_HOME XDG_CACHE_HOME XDG_DATA_HOME

  local manager=(openbox --sm-disable)
  [[ -z $config ]] || manager+=(--config-file "$config")
  "${manager[@]}" >"$scratch/openbox.log" 2>&1 &
  started_pids+=($!)
  for _ in {1..400}; do
    [[ $(xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null) != *'window id'* ]] || return 0
    sleep 0.05
  done
  cat "$scratch/openbox.log" >&2
  fail "the window manager openbox did not start"
}
