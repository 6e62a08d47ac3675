# The libraries that the Windows program is made of, built from Debian's source packages into a cache; sourced after
# tools/lib.sh, not run.
#
# A library lies in $cache/NAME-KEY. The key is made from its recipe, the keys of the libraries that it needs, the
# toolchain and the compiler, so that a change builds anew what depends on it and nothing else. A library is built beside
# and moved into its place when it is whole; of two builds at the same time the second waits for the first.
# shellcheck shell=bash

# All libraries, each after those that it needs. To add one, write its recipe and name it here.
windows_libraries=(zlib jpeg png tiff embree highway freeimage wxwidgets minizip assimp googletest)

cache="${XDG_CACHE_HOME:-$HOME/.cache}/quorvane-windows"
recipes="$root/cmake/windows/libraries"
toolchain="$root/cmake/mingw-w64-x86_64.cmake"
# One folder with all of them, which the toolchain looks into.
windows_prefix="$root/build/windows-libraries"
readonly compiler=x86_64-w64-mingw32-g++-posix

# recipe_value NAME FIELD: prints a field of a recipe.
recipe_value() {
  (
    # shellcheck source=/dev/null
    source "$recipes/$1.sh"
    declare -n field=$2
    printf '%s\n' "${field[@]}"
  )
}

# Prints the key of a library.
library_key() {
  local need
  {
    cat "$recipes/$1".* "$root/cmake/windows/recipe.sh" "$toolchain"
    "$compiler" --version | head -n 1
    for need in $(recipe_value "$1" needs); do library_key "$need"; done
  } | sha256sum | cut -c 1-16
}

library_folder() { printf '%s/%s-%s' "$cache" "$1" "$(library_key "$1")"; }

# apt-get or apt-cache with lists and files of our own: the machine's stay as they are.
source_apt() {
  local program=$1
  shift
  "$program" -q -o Dir::Etc::sourcelist="$cache/apt/sources.list" -o Dir::Etc::sourceparts=- \
    -o Dir::State::lists="$cache/apt/lists" -o Dir::Cache="$cache/apt/cache" \
    -o APT::Sandbox::User="$(id -un)" "$@"
}

make_source_lists() {
  mkdir -p "$cache/apt/lists/partial" "$cache/apt/cache/archives/partial"
  local mirror='http://deb.debian.org' by='[signed-by=/usr/share/keyrings/debian-archive-keyring.gpg]'
  printf 'deb-src %s %s\n' \
    "$by" "$mirror/debian bookworm main" \
    "$by" "$mirror/debian bookworm-updates main" \
    "$by" "$mirror/debian-security bookworm-security main" >"$cache/apt/sources.list"
  source_apt apt-get update >/dev/null || fail "could not fetch Debian's lists of sources"
}

# unpack_source NAME FOLDER: unpacks the source package of a library, with Debian's patches, into FOLDER/source. Debian's
# lists are there.
unpack_source() {
  local package upstream version folder=$2
  package=$(recipe_value "$1" source)
  upstream=$(recipe_value "$1" version)
  # The archive may lack the newest version, or part of it, for a while after it is announced; then the one before it.
  local versions
  mapfile -t versions < <(source_apt apt-cache showsrc --only-source "$package" | sed -n 's/^Version: //p' |
    grep -E "^([0-9]+:)?${upstream//./\\.}([^0-9]|$)" | sort -Vru)
  [[ ${#versions[@]} -gt 0 ]] || fail "Debian has no $package $upstream; the recipe is for that version"
  for version in "${versions[@]}"; do
    if (cd "$folder" && source_apt apt-get source --only-source "$package=$version") >>"$folder/log" 2>&1; then
      mv "$(find "$folder" -mindepth 1 -maxdepth 1 -type d)" "$folder/source"
      return
    fi
  done
  # All the same the original sources may have arrived, without Debian's patches.
  local archive
  archive=$(find "$folder" -maxdepth 1 -name '*.orig.tar.*' ! -name '*.asc' ! -name '*.FAILED' | head -n 1)
  [[ -n $archive ]] || { cat "$folder/log" >&2 && fail "could not fetch the source package $package"; }
  say "    Debian's patches for $package cannot be had at the moment; building without them"
  : >"$folder/unpatched"
  tar -C "$folder" --one-top-level=source --strip-components=1 -xf "$archive"
}

# build_library NAME: builds one library into its place, unless it is there; those that it needs are. Called with the lock
# of the cache held.
build_library() {
  local name=$1 started=$SECONDS folder
  folder=$(library_folder "$name")
  [[ ! -d $folder ]] || return 0
  local work="$cache/building/${folder##*/}"
  rm -rf "$work"
  mkdir -p "$work"
  say "  building $name"
  # As a job of its own: tested directly, it would go on after a failure inside.
  make_parts "$name" "$folder" "$work" >>"$work/log" 2>&1 &
  if ! wait $!; then
    tail -n 60 "$work/log" >&2
    fail "could not build $name for Windows; its log is $work/log"
  fi
  if [[ -e $work/unpatched ]]; then : >"$folder.unpatched"; else rm -f "$folder.unpatched"; fi
  mv "$work/staging$folder" "$folder"
  rm -rf "$work"
  say "  built $name in $((SECONDS - started)) s"
}

make_parts() (
  set -euo pipefail
  prefix=$2
  local need
  unpack_source "$1" "$3"
  src="$3/source" work="$3" staging="$3/staging"
  # shellcheck source=cmake/windows/recipe.sh
  source "$root/cmake/windows/recipe.sh"
  # shellcheck source=/dev/null
  source "$recipes/$1.sh"
  need_prefixes=""
  # shellcheck disable=SC2154
  for need in "${needs[@]}"; do
    need_prefixes+="${need_prefixes:+;}$(library_folder "$need")"
  done
  export PKG_CONFIG_LIBDIR=${need_prefixes//;/\/lib\/pkgconfig:}/lib/pkgconfig
  make_library
)

# Prints for make which libraries are built after which others.
library_plan() {
  local name needs
  printf '.PHONY: all %s\nall: %s\n' "${windows_libraries[*]}" "${windows_libraries[*]}"
  for name in "${windows_libraries[@]}"; do
    needs=$(recipe_value "$name" needs) || return
    printf '%s: %s\n\t@"%s/tools/windows" library %s\n' "$name" "${needs//$'\n'/ }" "${root//$/$$}" "$name"
  done
}

missing_library() {
  local name
  for name in "${windows_libraries[@]}"; do
    [[ -d $(library_folder "$name") ]] || return 0
  done
  return 1
}

# Sees to it that all libraries are there and puts them together in one folder.
make_libraries() {
  local name folder plan
  local folders=()
  mkdir -p "$cache"
  if missing_library; then
    plan=$(library_plan) || fail "could not read the recipes of the libraries"
    (
      flock 9
      missing_library || exit 0
      make_source_lists
      # Two at a time: fetching and configuring keep one core busy at most.
      make --no-print-directory --jobs 2 --file - <<<"$plan" || fail "not all libraries are there"
    ) 9>"$cache/lock" || exit 1
  fi
  for name in "${windows_libraries[@]}"; do
    folder=$(library_folder "$name")
    folders+=("$folder")
    [[ ! -e $folder.unpatched ]] ||
      say "  $name is without Debian's patches, which could not be had; to try again, remove $folder"
  done
  merge_libraries "${folders[@]}"
}

# merge_libraries FOLDER...: makes the folder that the toolchain looks into, of links, unless it is made of just these.
merge_libraries() {
  local wanted folder
  wanted=$(printf '%s\n' "$@" && sha256sum <"$root/cmake/windows/libraries.sh")
  [[ ! -e $windows_prefix/made-of || $(cat "$windows_prefix/made-of") != "$wanted" ]] || return 0
  local new="$windows_prefix.$$"
  rm -rf "$new"
  mkdir -p "$new/include" "$new/share/cmake"
  for folder in "$@"; do cp -rsn "$folder/." "$new/"; done
  # Headers that need no building are Debian's own; one by one, since the rest of /usr/include is for this system.
  ln -s /usr/include/eigen3 /usr/include/boost /usr/include/nlohmann "$new/include"
  ln -s /usr/share/eigen3 "$new/share"
  ln -s /usr/share/cmake/nlohmann_json "$new/share/cmake"
  printf '%s\n' "$wanted" >"$new/made-of"
  rm -rf "$windows_prefix"
  mv "$new" "$windows_prefix"
}
