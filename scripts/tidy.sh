#!/usr/bin/env bash
# clang-tidy over our own sources, with the compile commands of the release build.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
git ls-files 'platform/*.cpp' 'render/*.cpp' 'board/*.cpp' 'feeds/*.cpp' 'settings/*.cpp' \
    'messages/*.cpp' 'schedule/*.cpp' 'app/*.cpp' 'tools/*.cpp' |
    xargs -P 2 -n 4 clang-tidy -p build --quiet 2> >(grep -v 'warnings generated' >&2)
