# build_servers.sh SOURCE BUILD: what the example of each build server runs, with what it takes from
# its action or template, against a release that is a folder here. Not run: the servers themselves.
. "$(dirname "$0")/common.sh"
install_tree cli
version=$("$build/bin/velkor-cli" --version | cut -d' ' -f2)
name=velkor-cli-$version-linux-x86_64
mkdir "$scratch/releases"
mv "$scratch/installed" "$scratch/$name"
tar -czf "$scratch/releases/$name.tar.gz" -C "$scratch" "$name"
export VELKOR_RELEASES=file://$scratch/releases VELKOR_VERSION=$version VELKOR_ARGUMENTS=
VELKOR_SHA256=$(sha256sum "$scratch/releases/$name.tar.gz" | cut -d' ' -f1)
export VELKOR_SHA256 VELKOR_CONFIG=examples/gcc/velkor.toml VELKOR_SARIF=$scratch/velkor.sarif
mkdir "$scratch/project"
cp -r "$source/examples" "$scratch/project/"
rm -rf "$scratch/project/examples/gcc/build"
cd "$scratch/project"

# run_steps FILE: each text that the file hands to a shell, as the server runs it.
run_steps() {
  rm -f "$scratch"/step*
  awk -v out="$scratch/step" '
    function indent(line) { match(line, /[^ ]/); return RSTART }
    inside && /[^ ]/ && indent($0) <= outer { inside = 0 }
    inside { print >(out sprintf("%02d", count)) }
    /^ *(- )?run: \|$/ || /^ *- \|$/ { inside = 1; outer = indent($0); ++count }
  ' "$source/ci/$1"
  [ -e "$scratch/step01" ] || fail "no steps in $1"
  local step
  for step in "$scratch"/step*; do
    PATH=$(tr '\n' ':' <"$scratch/path")$PATH bash "$step" >>"$scratch/out" 2>&1 || return
  done
}

# Passes with the size of the example, and fails with a smaller one, and shows that.
# server EXAMPLE TAKEN FINDING
server() {
  : >"$scratch/path"
  : >"$scratch/out"
  sed -i 's/^size = .*/size = 16384/' examples/gcc/velkor.toml
  run_steps "$1" && run_steps "$2" || fail "$2: $(cat "$scratch/out")"
  sed -i 's/^size = .*/size = 512/' examples/gcc/velkor.toml
  if run_steps "$2"; then
    fail "$2 passes a stack that is too small: $(cat "$scratch/out")"
  fi
  grep -q "$3" "$scratch/out" || fail "$2: $(cat "$scratch/out")"
}
export GITHUB_PATH=$scratch/path GITHUB_STEP_SUMMARY=$scratch/summary
server github/example.yml github/action.yml '^::error .*over-budget'
grep -q '^#.*over budget' "$scratch/summary" || fail "$(cat "$scratch/summary")"
grep -q '"over-budget"' "$VELKOR_SARIF" || fail "$(cat "$VELKOR_SARIF")"
server gitlab/example.yml gitlab/velkor.yml '\[over-budget\]'
grep -q '"over-budget"' gl-code-quality-report.json || fail "no list of findings"
# Another archive than the one that was named is not run.
VELKOR_SHA256=${VELKOR_SHA256//[0-9]/0}
for taken in github/action.yml gitlab/velkor.yml; do
  if run_steps "$taken"; then
    fail "$taken takes any archive"
  fi
done
