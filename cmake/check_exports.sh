#!/usr/bin/env bash
# check_exports.sh LIBRARY: fails unless the shared library exports just what the public headers declare and the version
# script lists, under the name that programs are linked to.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
library=$1

# The version itself is an absolute symbol (A), no call.
exported=$(nm -D --defined-only "$library" | awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }' | sort)
listed=$(awk '/global:/ { on = 1; next } /local:/ { on = 0 } on { gsub(/[ ;]/, ""); if ($0 != "") print }' \
    "$root/cmake/framesift.map" | sort)
declared=$(cat "$root"/include/framesift/*.h | sed -n 's/^FRAMESIFT_API [^(]*[ *]\([A-Za-z_0-9]*\)(.*/\1/p' | sort)
soname=$(readelf -d "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')

status=0
compare() { # compare WHAT LIST: LIST against what the library exports
    if ! difference=$(diff <(echo "$exported") <(echo "$2")); then
        echo "exported (<) and $1 (>) differ:"
        echo "$difference"
        status=1
    fi
}
compare "cmake/framesift.map" "$listed"
compare "FRAMESIFT_API in include/framesift" "$declared"
if [[ $soname != libframesift.so.1 ]]; then
    echo "SONAME is '$soname', not libframesift.so.1"
    status=1
fi
[[ $status -eq 0 ]] && echo "exported: $(wc -w <<<"$exported") calls, SONAME $soname"
exit $status
