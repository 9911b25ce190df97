#!/usr/bin/env bash
# Lints docs/rest-api.yaml. The linter is installed into build/, as the lock file says, and anew when
# that changes; scripts that packages bring along are not run.
set -euo pipefail
cd "$(dirname "$0")/.."

linter=build/api_lint
if ! cmp --silent tools/api_lint/package-lock.json "$linter/package-lock.json" ||
    [[ ! -x $linter/node_modules/.bin/spectral ]]; then
    rm -rf "$linter"
    mkdir -p "$linter"
    cp tools/api_lint/package.json tools/api_lint/package-lock.json "$linter"
    npm --prefix "$linter" ci --ignore-scripts --no-audit --no-fund
fi
"$linter/node_modules/.bin/spectral" lint --ruleset tools/api_lint/ruleset.yaml --fail-severity hint docs/rest-api.yaml
