# What the recipes in libraries/ are written with; sourced, not run. Part of every library's key: a change in here builds
# all of them anew.
#
# A recipe sets
#   source   the Debian source package
#   version  its upstream version, for which the recipe was written
#   needs    the libraries that it is built against, by the names of their recipes
# and defines make_library, which is called with
#   $src      the unpacked source, with Debian's patches
#   $work     an empty folder to build in
#   $prefix   the folder in which the library will lie
#   $staging  what goes before $prefix while it is being installed (as in DESTDIR)
#   $recipes  the folder of the recipes
# shellcheck shell=bash disable=SC2154

# cmake_library SOURCE ARGUMENT...: configures, builds and installs a library that has CMake files.
cmake_library() {
  local folder=$1
  shift
  cmake_configure "$folder" "$@"
  cmake --build "$work/build" --parallel "$(nproc)"
  DESTDIR="$staging" cmake --install "$work/build"
}

cmake_configure() {
  local folder=$1
  shift
  cmake -S "$folder" -B "$work/build" -G Ninja \
    -DCMAKE_TOOLCHAIN_FILE="$recipes/../../mingw-w64-x86_64.cmake" \
    -DQUORVANE_WINDOWS_PREFIX="$need_prefixes" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE='-O2 -DNDEBUG' -DCMAKE_C_FLAGS_RELEASE='-O2 -DNDEBUG' \
    -DBUILD_SHARED_LIBS=OFF -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib "$@"
}

# edit FILE EXPRESSION...: sed on a file of the source; fails if it changes nothing, so that no edit is lost unnoticed.
edit() {
  local file="$src/$1" expression
  shift
  for expression in "$@"; do
    sed -E "$expression" "$file" >"$file.edited"
    if cmp -s "$file" "$file.edited"; then
      printf 'nothing to edit in %s: %s\n' "$file" "$expression" >&2
      return 1
    fi
    mv "$file.edited" "$file"
  done
}

# put FOLDER FILE...: copies files into a folder of the prefix.
put() {
  local folder="$staging$prefix/$1"
  shift
  mkdir -p "$folder"
  cp "$@" "$folder"
}
