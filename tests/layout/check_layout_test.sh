#!/usr/bin/env bash
# The dependency order holds in the tree, and the checker catches each kind
# of crossing on a small made-up tree: check_layout_test.sh SOURCE_DIR.
set -u
src_dir=$1
check=$src_dir/scripts/check-layout
failed=0

if ! out=$("$check" "$src_dir"); then
  echo "the tree breaks the dependency order:"
  echo "$out"
  failed=1
fi

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
# expect_caught FOLDER/FILE INCLUDE: a tree whose one file includes INCLUDE
# must be refused.
expect_caught() {
  rm -rf "$tmp/src"
  mkdir -p "$tmp/src/$(dirname "$1")"
  printf '#include "%s"\n' "$2" >"$tmp/src/$1"
  if "$check" "$tmp" >/dev/null; then
    echo "not caught: src/$1 including $2"
    failed=1
  fi
}
expect_caught core/a.cc hosts/phone/app.h
expect_caught search/a.h hooks/modules.h
expect_caught dialer/a.cc hostsdk/phone.h
expect_caught callscreens/a.cc platform/sim/sim_platform.h
expect_caught lists/a.cc platform/linux/linux_platform.h
expect_caught messages/a.cc dialer/keypad_controller.h
expect_caught controlcenter/a.cc tools/zorvel/output.h
expect_caught area/a.cc search/searcher.h
expect_caught hooks/a.cc devicegen/device_image.h
expect_caught hosts/a.cc hooks/modules.h
expect_caught platform/a.cc core/guard.h
expect_caught newfolder/a.cc platform/platform.h

# And a clean one passes.
rm -rf "$tmp/src"
mkdir -p "$tmp/src/dialer"
printf '#include "search/searcher.h"\n#include "platform/ui/view.h"\n' \
  >"$tmp/src/dialer/a.cc"
if ! "$check" "$tmp" >/dev/null; then
  echo "refused a tree that keeps the order"
  failed=1
fi
exit $failed
