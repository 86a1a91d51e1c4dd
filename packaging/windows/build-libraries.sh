#!/usr/bin/env bash
# Builds the libraries of the window for Windows: Qt, SDL2, libxmp, SDL2_mixer, all static, from
# Debian's source packages. Prints, last, the folders that hold them, as CMAKE_PREFIX_PATH has them.
# They are kept outside the repository, each in a folder named after its version and a hash of all
# that makes it, so that only the first build pays.
# KELVO_JOBS: how many compilers run at once (as many as there are processors).
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
toolchain="$here/../../cmake/windows-toolchain.cmake"
jobs=${KELVO_JOBS:-$(nproc)}
cache="${XDG_CACHE_HOME:-$HOME/.cache}/kelvo"

# Qt has to be of the same version as the machine's own, whose tools (moc, rcc, uic) it uses.
declare -A package=([sdl]=libsdl2=2.26.5+dfsg-1 [xmp]=libxmp=4.5.0-2
                    [mixer]=libsdl2-mixer=2.6.2+dfsg-2 [qt]=qt6-base=6.4.2+dfsg-10)
# What has to be built before a library.
declare -A needs=([sdl]='' [xmp]='' [mixer]='sdl xmp' [qt]='')

# folder LIBRARY: where it is, or will be.
folder() {
  local hash
  hash=$({ sed '/^#/d' "$toolchain"
           declare -f "build_$1" with_cmake
           local needed
           for needed in ${needs[$1]}; do basename "$(folder "$needed")"; done; } | sha256sum | cut -c 1-12)
  echo "$cache/windows-${package[$1]/=/-}-$hash"
}

# prefix_path LIBRARY...: their folders, separated by semicolons.
prefix_path() {
  local library path=''
  for library in "$@"; do path+="${path:+;}$(folder "$library")"; done
  echo "$path"
}

# fetch LIBRARY: unpacks its source into $work/source.
fetch() {
  local apt="$work/apt" unpacked
  mkdir -p "$apt/lists/partial" "$apt/archives/partial"
  # Lists of our own: the machine's are left alone, and nobody needs to be root.
  echo "deb-src http://deb.debian.org/debian bookworm main" >"$apt/sources.list"
  local options=(-q -o "Dir::Etc::SourceList=$apt/sources.list" -o Dir::Etc::SourceParts=-
                 -o "Dir::State::Lists=$apt/lists" -o "Dir::Cache=$apt"
                 -o "APT::Sandbox::User=$(id -un)")
  apt-get "${options[@]}" update
  (cd "$work" && apt-get "${options[@]}" source "${package[$1]}")
  unpacked=$(find "$work" -mindepth 1 -maxdepth 1 -type d ! -name apt)
  mv "$unpacked" "$work/source"
}

# with_cmake OPTION...: configures, builds and installs $work/source, for $library.
with_cmake() {
  # shellcheck disable=SC2086 # names of libraries
  cmake -S "$work/source" -B "$work/build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" \
    -DCMAKE_PREFIX_PATH="$(prefix_path ${needs[$library]})" -DBUILD_SHARED_LIBS=OFF "$@"
  cmake --build "$work/build" --parallel "$jobs"
  cmake --install "$work/build" --strip
}

# keep_licences NAME FILE...: of the source, for those who pass the programs on; of Qt also those that
# lie beside single files of it.
keep_licences() {
  mkdir -p "$prefix/licences/$1"
  (cd "$work/source"
   cp --parents -t "$prefix/licences/$1" "${@:2}"
   [ "$1" != Qt ] ||
     find src -type f -iname '*license*' ! -name '*.h' -exec cp --parents -t "$prefix/licences/$1" {} +)
}

build_qt() {
  local off=() feature licences
  for feature in tabletevent opengl dynamicgl dbus vulkan printsupport sql network testlib xml \
                 concurrent icu glib openssl system_zlib system_pcre2 system_png system_jpeg zstd; do
    off+=("-DFEATURE_$feature=OFF")
  done
  with_cmake -DQT_HOST_PATH=/usr "${off[@]}" -DFEATURE_optimize_size=ON \
    "-DQT_HOST_PATH_CMAKE_DIR=/usr/lib/$(uname -m)-linux-gnu/cmake" \
    -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF
  # Its own licence, and those of what it brings along.
  mapfile -t licences < <(cd "$work/source" && find LICENSES src/3rdparty -type f \
    \( -path 'LICENSES/*' -o -name 'LICEN*' -o -name 'COPYING*' -o -name FTL.TXT \) \
    ! -path '*/icc/*' ! -path '*/libpsl/*' | sort)
  keep_licences Qt "${licences[@]}"
}

# Sound is all that is wanted of it.
build_sdl() {
  local off=() part
  for part in RENDER JOYSTICK HAPTIC HIDAPI SENSOR POWER OPENGL OPENGLES VULKAN SHARED TEST; do
    off+=("-DSDL_$part=OFF")
  done
  with_cmake "${off[@]}" -DSDL_STATIC=ON
  keep_licences SDL2 LICENSE.txt
}

build_xmp() {
  (cd "$work/source" && ./configure --host=x86_64-w64-mingw32 --prefix="$prefix" --enable-static \
      --disable-shared && make -j "$jobs" && make install)
  keep_licences libxmp README docs/COPYING.LIB
}

build_mixer() {
  local off=() part
  for part in CMD FLAC MIDI MP3 OPUS VORBIS WAVE SAMPLES DEPS_SHARED MOD_MODPLUG MOD_XMP_SHARED; do
    off+=("-DSDL2MIXER_$part=OFF")
  done
  # Its search for libxmp leaves out to include what it calls.
  sed -i '1i include(FindPackageHandleStandardArgs)' "$work/source/cmake/Findlibxmp.cmake"
  with_cmake "${off[@]}" -DSDL2MIXER_MOD=ON -DSDL2MIXER_MOD_XMP=ON -DCMAKE_C_FLAGS=-DBUILDING_STATIC
  keep_licences SDL2_mixer LICENSE.txt
}

# once LIBRARY: builds it, unless an earlier run has done it.
once() {
  local home
  home=$(folder "$1")
  [ -e "$home/built" ] && return
  mkdir -p "$home"
  echo "Building ${package[$1]} for Windows; $home/log" >&2
  # In a process of its own, which ends at the first failure.
  "$0" "$1" >"$home/log" 2>&1 ||
    { tail -n 30 "$home/log" >&2; echo "$0: ${package[$1]} could not be built" >&2; exit 1; }
  touch "$home/built"
}

if [ $# -eq 1 ]; then
  library=$1
  prefix=$(folder "$library")
  work="$prefix/work"
  rm -rf "$work"
  mkdir -p "$work"
  fetch "$library"
  "build_$library"
  rm -rf "$work"
  exit
fi
for library in sdl xmp mixer qt; do once "$library"; done
prefix_path sdl xmp mixer qt
