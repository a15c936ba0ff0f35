#!/bin/bash
# compare.sh NEW_WORKTREE [COUNT]: 6ec8d18 (/work/wt/old) against NEW_WORKTREE, release builds, over
# COUNT generated projects and the corpora; prints counts.
set -eu
new=$1 count=${2:-500}
here=/work/proof14
[ -n "${SKIP_BUILD:-}" ] || /work/proof14/build.sh old "$(basename "$new")" >$here/compare.build.log 2>&1
projects=$here/projects
if [ ! -e $projects/done-$count ]; then
  rm -rf $projects; mkdir -p $projects
  generate=/work/wt/old/build/release/bin/generate
  kinds=(random layered ring chain-of-rings called-by-all calling-all complete ladder specification modules)
  for ((i = 0; i < count; ++i)); do
    kind=${kinds[i % ${#kinds[@]}]}
    case $kind in
      modules) size=$((2000 + i * 397 % 60000)) ;;
      complete) size=$((1 + i * 7 % 40)) ;;
      ladder) size=$((1 + i * 11 % 70)) ;;
      *) size=$((1 + i * 37 % 900)) ;;
    esac
    $generate $kind --size $size --seed $((i + 1)) $projects/$i-$kind
  done
  touch $projects/done-$count
fi
python3 $here/compare.py /work/wt/old/build/release/bin/velkor-cli "$new/build/release/bin/velkor-cli" $projects
