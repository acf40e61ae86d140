#!/usr/bin/env bash
# run.sh PROGRAM FOLDER: tests the map page in a browser. What that takes comes from npm into FOLDER,
# which has the settings for the type checker; without it, or without a browser, the test is skipped.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
for command in node npm chromium; do
  command -v $command >/dev/null || { echo "skipped: there is no $command"; exit 0; }
done
cd "$2"
if ! cmp -s "$here/package-lock.json" package-lock.json; then
  cp "$here/package.json" "$here/package-lock.json" .
  npm ci --silent || { rm package-lock.json; echo "skipped: npm can't install"; exit 0; }
fi
node_modules/.bin/tsc -p .
exec node --test-reporter=spec "$here/page_test.mjs" "$1" "$2"
