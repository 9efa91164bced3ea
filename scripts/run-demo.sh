#!/bin/sh
# Runs the korvo program on a copy of the example project: the list of its
# points, one CPT point in full, and a check of its database. The copy lies in
# a fresh temporary directory, so examples/demo stays as it is.
set -eu
cd "$(dirname "$0")/.."
root=$(pwd)
korvo=$root/build/default/tools/korvo
work=$(mktemp -d "${TMPDIR:-/tmp}/korvo-demo.XXXXXX")
cp -r examples/demo "$work/demo"
cd "$work"
for args in "list demo" "show demo C1" "check demo"; do
  echo "\$ korvo $args"
  "$korvo" $args
  echo
done
echo "The copy stays in $work/demo; try: build/default/tools/korvo --help"
