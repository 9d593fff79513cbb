# Sourced by the tests of this folder: each prints "ok - what" or "not ok - what" for every check, and their number, "1..n",
# when it comes to its end.
. "$(dirname "${BASH_SOURCE[0]}")/../../tools/environment"
checked=0

check() { # what command...
    checked=$((checked + 1))
    if "${@:2}"; then echo "ok - $1"; else echo "not ok - $1"; fi
}

same() { # expected found
    [ "$1" = "$2" ] && return
    printf 'expected: %s\nfound:    %s\n' "$1" "$2"
    return 1
}

come_to_end() { echo "1..$checked"; }
