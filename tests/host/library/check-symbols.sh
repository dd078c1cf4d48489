#!/bin/bash
# check-symbols.sh LIBRARY MODULE SOURCES: what libolmhost exports, compared with what its public
# headers mark as exported and with what the module imports. Not for builds with sanitizers, which
# add symbols of their own.
set -euo pipefail
export LC_ALL=C

library=$1
module=$2
cd "$3"

public="host/check/FileCheck.h host/session/Session.h host/session/LibraryVersions.h host/message/Message.h
host/message/MessageSpool.h host/message/OneOffEntryId.h host/message/PropertyNames.h
host/message/PropertyType.h host/message/Recurrence.h"

failed=0

# compare TITLE EXPECTED FOUND: lines in any order.
compare() {
    local difference
    if ! difference=$(diff <(sort -u <<<"$2") <(sort -u <<<"$3")); then
        echo "$1 (< is missing, > is unexpected):"
        grep '^[<>]' <<<"$difference"
        failed=1
    fi
}

# The headers given and all headers of the host that they include.
with_included() {
    local known=$1 next
    while true; do
        next=$(sort -u <<<"$known
$(sed -n 's|^#include "\(host/[^"]*\)"|\1|p' $known)")
        [ "$next" != "$known" ] || break
        known=$next
    done
    echo "$known"
}

# The names of the classes and functions that the headers given mark as exported.
exported_names() {
    sed -n -e 's/^class OLMHOST_EXPORT \([A-Za-z]*\).*/\1/p' \
        -e 's/^OLMHOST_EXPORT [^(]*[ *&]\([A-Za-z]*\)(.*/\1/p' $1
}

headers=$(with_included "$(tr -s ' \n' '\n\n' <<<"$public" | sort -u)")
names=$(exported_names "$headers")
symbols=$(nm -D --defined-only -C "$library" | cut -d' ' -f3-)

compare "headers that export something" "$(grep -l '^class OLMHOST_EXPORT\|^OLMHOST_EXPORT' $headers)" \
    "$(grep -l '^class OLMHOST_EXPORT\|^OLMHOST_EXPORT' host/*/*.h)"

compare "exported classes and functions" "$names" \
    "$(grep 'olmhost::' <<<"$symbols" |
        sed -E 's/^(typeinfo|typeinfo name|vtable) for //; s/^olmhost::([A-Za-z]+).*/\1/')"

# What the C and C++ runtime neither versions nor hooks in weakly is an import of the module.
compare "other exported symbols" \
    "$(nm -D --undefined-only "$module" |
        awk '$2 !~ /@(GLIBC|GLIBCXX|CXXABI|GCC)_/ &&
             !($1 == "w" && $2 ~ /^(__cxa_finalize|__gmon_start__|_ITM_.*)$/) {print $2}')" \
    "$(grep -v 'olmhost::' <<<"$symbols")"

exit $failed
