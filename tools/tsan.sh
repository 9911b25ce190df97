#!/usr/bin/env bash
# Runs the tests of all that has threads (the HTTP server, the calls to the service, downloads, the
# face search) under the thread sanitizer. What it may pass over is in tests/tsan.supp.
set -euo pipefail
cd "$(dirname "$0")/.."

tests=(cloud_rest_server_test cloud_rest_client_test cloud_download_test records_test
    cloud_commands_test face_search_test face_search_door_test)
cmake --preset tsan >/dev/null
cmake --build --preset tsan --parallel 2 --target "${tests[@]}"
export TSAN_OPTIONS="suppressions='$PWD/tests/tsan.supp'"
ctest --preset tsan --no-tests=error --parallel 4 --tests-regex "^($(IFS='|' && echo "${tests[*]}"))\$"
