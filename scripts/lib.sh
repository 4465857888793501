# What the scripts share; to be sourced. Puts the caller at the top of the source tree, under
# `set -euo pipefail`.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '\n==> %s\n' "$*"; }
die() { printf '%s: %s\n' "${0##*/}" "$*" >&2; exit 1; }

# A compiler cache is used when there is one, and not installed.
if command -v ccache >/dev/null; then
  export CMAKE_C_COMPILER_LAUNCHER=${CMAKE_C_COMPILER_LAUNCHER-ccache}
  export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
fi

# Installs those of the Debian packages that are missing; says nothing when none is.
need_packages() {
  local missing=() as_root=() package
  for package in "$@"; do
    [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) == installed ]] ||
      missing+=("$package")
  done
  ((${#missing[@]})) || return 0

  say "Installing through apt: ${missing[*]}"
  if ((EUID != 0)); then
    command -v sudo >/dev/null || die "neither root nor sudo; have these packages installed first"
    as_root=(sudo)
  fi
  "${as_root[@]}" apt-get -qq update
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get -qq -y install --no-install-recommends "${missing[@]}" >/dev/null
}

# What every build needs.
need_build_tools() {
  local packages=(ninja-build libxerces-c-dev libcli11-dev nlohmann-json3-dev)
  command -v c++ >/dev/null || packages+=(g++)
  command -v cmake >/dev/null || packages+=(cmake)
  need_packages "${packages[@]}"
}

# Configures a preset in a directory, quietly unless that fails, and builds it, or those of its
# targets that the variable targets names.
build() {  # PRESET DIRECTORY CMAKE_OPTION...
  local preset=$1 directory=$2
  shift 2
  say "Building the preset $preset in $directory"
  cmake --preset "$preset" -B "$directory" "$@" >/dev/null
  cmake --build "$directory" --parallel "$(nproc)" --target ${targets:-all}
}

# A part of a run that must pass: the first one that fails ends the run.
stage() {  # NAME COMMAND...
  local name=$1 start=$SECONDS
  shift
  printf '\n##### %s: %s\n' "$name" "$*"
  "$@" || { printf '\n##### %s FAILED\n' "$name"; exit 1; }
  printf '\n##### %s passed in %d s\n' "$name" $((SECONDS - start))
}
