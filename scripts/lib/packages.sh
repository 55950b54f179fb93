# Sourced by the scripts: makes sure that the Debian packages they need are there.

# What both commands need: CMake, the compiler and the emulator for 32-bit ARM, and what lvtext is made
# with.
packages_for_demo=(
  cmake
  g++-arm-linux-gnueabihf
  libcli11-dev
  ninja-build
  nlohmann-json3-dev
  qemu-user
)

packages_for_check=(
  "${packages_for_demo[@]}"
  abigail-tools
  ccache
  clang-14
  clang-format
  clang-tidy
  doxygen
  g++
  g++-i686-linux-gnu
  gcovr
  gdb
  gdb-multiarch
  googletest
  graphviz
  groff-base
  pkg-config
  python3
  valgrind
)

packages_for_coverage=(
  ccache
  cmake
  g++
  gcovr
  googletest
  ninja-build
  python3
)

packages_for_counts=(
  "${packages_for_demo[@]}"
  ccache
  g++
  googletest
  python3
)

packages_for_abi=(
  "${packages_for_demo[@]}"
  abigail-tools
  ccache
  g++
  g++-i686-linux-gnu
  googletest
  python3
)

packages_for_fuzz=(
  ccache
  clang-14
  cmake
  g++
  g++-i686-linux-gnu
  googletest
  libclang-rt-14-dev
  ninja-build
)

packages_for_bench=(
  ccache
  cmake
  g++
  libbenchmark-dev
  libboost1.81-dev
  libglib2.0-dev
  ninja-build
  nlohmann-json3-dev
  pkg-config
  python3
  qt6-base-dev
  rapidjson-dev
)

packages_for_bench_i686=(
  ccache
  cmake
  g++-i686-linux-gnu
  libboost1.81-dev
  ninja-build
  nlohmann-json3-dev
  python3
  rapidjson-dev
)

# ensure_packages PACKAGE...
#
# Installs those that are missing, as root; else prints the line that does, and fails. When nothing is
# missing it needs neither network nor root.
ensure_packages() {
  if ! command -v dpkg-query >/dev/null; then
    echo "This script knows the packages of Debian 12 and found no dpkg-query here." >&2
    return 1
  fi

  local installed package
  local missing=()
  installed=$(dpkg-query --show --showformat='${Package} ${db:Status-Status}\n' "$@" 2>/dev/null) ||
    true  # Its status says no more than that one of them is unknown.
  for package in "$@"; do
    if ! grep --quiet --line-regexp --fixed-strings "$package installed" <<<"$installed"; then
      missing+=("$package")
    fi
  done
  if [ ${#missing[@]} -eq 0 ]; then
    echo "Nothing is missing."
    return 0
  fi

  echo "Missing: ${missing[*]}"
  if [ "$(id -u)" -ne 0 ]; then
    echo "To install them, run this, and then this script again:" >&2
    echo "  sudo apt-get update && sudo apt-get install --no-install-recommends ${missing[*]}" >&2
    return 1
  fi
  apt-get -q update || return
  DEBIAN_FRONTEND=noninteractive apt-get -q install --yes --no-install-recommends \
    -o Dpkg::Use-Pty=0 "${missing[@]}"
}

# ensure_source PACKAGE FOLDER
#
# Sees to it that the folder holds the sources of a Debian package, as their authors publish them.
# Uses the package sources of this machine, of which it asks for the sources too, with lists of its
# own.
ensure_source() {
  local package=$1
  local folder
  folder=$(realpath --no-symlinks "$2")
  if [ -e "$folder/CMakeLists.txt" ]; then
    return 0
  fi

  local room="$folder.apt"
  mkdir -p "$room/parts" "$room/lists/partial" "$room/archives/partial" "$folder"
  local file
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*; do
    if [ -s "$file" ]; then
      sed -E -e 's/^Types: deb$/Types: deb-src/' -e 's/^deb /deb-src /' "$file" \
        >"$room/parts/$(basename "$file")"
    fi
  done
  local options=(
    -o "Dir::Etc::SourceList=/dev/null"
    -o "Dir::Etc::SourceParts=$room/parts"
    -o "Dir::State::Lists=$room/lists"
    -o "Dir::Cache=$room"
    -o "APT::Sandbox::User="
  )
  apt-get -q "${options[@]}" update || true  # Who has none of this package may have no sources.
  (cd "$room" && apt-get -q "${options[@]}" source --download-only "$package") || return
  tar --extract --file "$room"/*.orig.tar.* --directory "$folder" --strip-components 1
  rm -rf "$room"
}
