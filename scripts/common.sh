# What the scripts share. Sourced with the repository's root as the current folder.

# install_missing [LIST...]: installs the packages of scripts/packages.txt, and of further lists,
# that this machine lacks; touches nothing when it has them all. Without the right to install, says
# what is to be run and fails.
install_missing() {
  local missing=() as_root=() package
  for package in $(grep -hv '^#' scripts/packages.txt "$@"); do
    if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
      missing+=("$package")
    fi
  done
  if [ "${#missing[@]}" -eq 0 ]; then
    return
  fi
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      printf '%s\n' "Packages are missing, and only the administrator can install them. Run as root:" \
        "  apt-get install --no-install-recommends ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo)
  fi
  echo "Installing: ${missing[*]}" >&2
  "${as_root[@]}" apt-get update -qq >&2
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# Of the lines of a build on standard input the counter ("[12/293]"), where standard error is a terminal.
show_counter() {
  local line
  while IFS= read -r line; do
    if [ -t 2 ] && [[ $line =~ ^\[[0-9]+/[0-9]+\] ]]; then
      printf '\r%s' "${BASH_REMATCH[0]}" >&2
    fi
  done
  if [ -t 2 ]; then
    printf '\r\033[K' >&2
  fi
}

# build PRESET [TARGET...]: configures, with the further arguments in configure_options, and builds.
# What is done is said on standard error, with the counter of the build where that is a terminal; the
# rest only if something fails.
configure_options=()
build() {
  local preset=$1
  shift
  local log
  log=$(mktemp)
  if [ -d "build/$preset" ]; then
    echo "Building what has changed in build/$preset ..." >&2
  else
    echo "Building in build/$preset, which takes some minutes ..." >&2
  fi
  if ! { cmake --preset "$preset" "${configure_options[@]}" &&
         cmake --build "build/$preset" --parallel "$(nproc)" \
           ${1:+--target "$@"}; } 2>&1 | tee "$log" | show_counter; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}

# install_wine: answers the program that runs programs for Windows; fails where there is none.
install_wine() {
  install_missing scripts/packages_wine.txt >&2 || return 1
  PATH=$PATH:/usr/lib/wine command -v wine64 || PATH=$PATH:/usr/lib/wine command -v wine
}

# use_wine: wine keeps its files in the build folder and says nothing of its own from here on.
use_wine() {
  mkdir -p build
  export WINEPREFIX=$PWD/build/wine WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="
  wine64=/usr/lib/wine/wine64
  [ -e "$WINEPREFIX/system.reg" ] || "$wine64" wineboot --init >/dev/null 2>&1
}
