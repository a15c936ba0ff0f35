# What the tests of the installation share. Sourced with the sources and the build folder as the
# first two arguments.
set -euo pipefail
unset CMAKE_C_COMPILER_LAUNCHER CMAKE_CXX_COMPILER_LAUNCHER  # ccache loses call graph files
source=$1
build=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() {
  echo "$*" >&2
  exit 1
}

# install_tree COMPONENT...: installs those into $scratch/installed, as they are after a move.
install_tree() {
  local component
  for component in "$@"; do
    cmake --install "$build" --prefix "$scratch/first" --component "$component" >/dev/null
  done
  mv "$scratch/first" "$scratch/installed"
}
