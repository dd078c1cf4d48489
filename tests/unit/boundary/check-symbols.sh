#!/bin/bash
# check-symbols.sh MODULE: compares what the plug-in exports, imports and links with the lists
# below. Not for builds with sanitizers, which link a runtime of their own.
set -euo pipefail
export LC_ALL=C

module=$1
failed=0

exported="OLMOverlayId SODummy VwAllocProc VwDoSpecial VwFreeProc VwGetData VwGetInfo VwGetRtns
VwGetSectionDataFunc VwLocalDown VwLocalUp VwSetData VwSetSectionDataFunc VwSetSoRtn VwSetUser
VwStreamClose VwStreamOpen VwStreamRead VwStreamReadRecord VwStreamSection VwStreamSeek
VwStreamTell version"

imported="IOCreate IOSetInfo SYSNativeAlloc SYSNativeFree SYSNativeLock SYSNativeUnlock
UTXMLAddTagMap UTXMLDeInit UTXMLGetNextAttribute UTXMLGetStateInfo UTXMLInit UTXMLReadContent
UTXMLReadNextTag UTXMLRestoreStateInfo UTXMLSetOption UTXMLSkipContent UTXMLSkipTag _UTwstrncpy"

libraries="libc.so.6 libgcc_s.so.1 libm.so.6 libstdc++.so.6"

lines() { tr -s ' \n' '\n\n' <<<"$1" | sort; }

# compare TITLE EXPECTED FOUND: words in any order.
compare() {
    local difference
    if ! difference=$(diff <(lines "$2") <(lines "$3")); then
        echo "$1 (< is missing, > is unexpected):"
        grep '^[<>]' <<<"$difference"
        failed=1
    fi
}

compare "exported symbols" "$exported" \
    "$(nm -D --defined-only "$module" | awk '{print $3}')"

functions=$(nm -D --defined-only "$module" | awk '$2 == "T"' | wc -l)
if [ "$functions" != 21 ]; then
    echo "exported functions: expected 21, found $functions"
    failed=1
fi

# Imports: symbols not versioned by the C or C++ runtime, except its weak hooks.
compare "imported symbols" "$imported" \
    "$(nm -D --undefined-only "$module" |
        awk '$2 !~ /@(GLIBC|GLIBCXX|CXXABI|GCC)_/ &&
             !($1 == "w" && $2 ~ /^(__cxa_finalize|__gmon_start__|_ITM_.*)$/) {print $2}')"

foreign=$(readelf -d "$module" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' |
    grep -vxFf <(lines "$libraries") || true)
if [ -n "$foreign" ]; then
    echo "linked in addition to the C and C++ runtime: $foreign"
    failed=1
fi

exit $failed
