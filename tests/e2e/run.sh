#!/usr/bin/env bash
# The browser test of the demonstration page: installs chromium and playwright-core, then drives both modes.
# Usage: run.sh QUORVEL_BINARY WORK_DIR  (WORK_DIR gets node_modules, the screenshots, the downloads and the server log)
set -euo pipefail
quorvel=$1
work=$2
here=$(cd "$(dirname "$0")" && pwd)
source_dir=$(cd "$here/../.." && pwd)

bash "$source_dir/scripts/install-deps.sh" browser

# playwright-core goes into the build folder, as pinned by the committed lock file; it is
# installed again only when the lock file changes.
mkdir -p "$work"
if ! cmp -s "$here/package-lock.json" "$work/package-lock.json" || [ ! -d "$work/node_modules/playwright-core" ]; then
  cp "$here/package.json" "$here/package-lock.json" "$work/"
  (cd "$work" && npm ci --no-audit --no-fund --loglevel=error)
fi

exec node "$here/demo.test.cjs" "$quorvel" "$work" "$source_dir/demo/samples"
