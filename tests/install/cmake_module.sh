# cmake_module.sh SOURCE BUILD: a build that uses velkor_check ends well while its stack is large
# enough, and fails when it is not; with optimisation at link time as well.
. "$(dirname "$0")/common.sh"
install_tree cli
cp -r "$source/examples/cmake" "$scratch/example"
# build NAME OPTION...: of the example, into the folder that its velkor.toml names.
build_example() {
  rm -rf "$scratch/example/build"
  cmake -S "$scratch/example" -B "$scratch/example/build" -DCMAKE_PREFIX_PATH="$scratch/installed" \
    -DCMAKE_BUILD_TYPE=Release "$@" >"$scratch/log" 2>&1 || return 2
  cmake --build "$scratch/example/build" >>"$scratch/log" 2>&1
}
for link_time in OFF ON; do
  sed -i 's/^size = .*/size = 512/' "$scratch/example/velkor.toml"
  build_example -DCMAKE_INTERPROCEDURAL_OPTIMIZATION=$link_time || fail "$(cat "$scratch/log")"
  sed -i 's/^size = .*/size = 16/' "$scratch/example/velkor.toml"
  if cmake --build "$scratch/example/build" >"$scratch/log" 2>&1; then
    fail "a stack of 16 bytes passes: $(cat "$scratch/log")"
  fi
  grep -qF '[over-budget]' "$scratch/log" || fail "$(cat "$scratch/log")"
done
