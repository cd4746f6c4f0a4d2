# shellcheck shell=bash disable=SC2034,SC2154
# What cannot work: one clear line, a status of its own, nothing left behind.

# cannot_lock DIRECTORY TEXT: nor list it.
cannot_lock() {
    local kind
    for kind in --exclusive --write --read; do
        ends 125 "$kind" --timeout 60 "$1" -- "$command" note "$PWD/ran" yes
        complains "$2"
        says out
    done
    ends 125 --status "$1"
    complains "$2"
    says out
    [ ! -e ran ] || fail "the command was run all the same"
}

test_missing_directory() {
    cannot_lock missing 'missing: no such directory'
    cannot_lock dir/missing/below 'below: no such directory'
    cannot_lock '' ': no such directory'
    [ ! -e missing ]
    is_empty
}

test_file_instead_of_a_directory() {
    echo content >file
    cannot_lock file 'file: not a directory'
    says file content
}

# Root may write everywhere, unless it gives up what lets it.
test_posix_unwritable_directory() {
    touch dir/present
    chmod 555 dir
    if [ "$(id -u)" = 0 ]; then
        zvlock=(setpriv --bounding-set=-dac_override,-dac_read_search --inh-caps=-all "${zvlock[@]}")
    fi
    cannot_lock dir 'without write permission'
    says <(ls -A dir) present
}

# Not even root makes files there.
test_directory_of_the_system() {
    cannot_lock /sys '/sys'
}

test_posix_directory_that_cannot_be_listed() {
    mkdir 'with*star'
    ends 125 --write 'with*star' -- "$command" status 0
    complains 'with\*star'
    ends 125 --status 'with*star'
    complains 'with\*star'
    is_empty 'with*star'
}

# is_wrong ARGUMENTS...: refused before anything is done.
is_wrong() {
    ends 125 "$@"
    says out
    [ -s err ] || fail "no word about what is wrong"
    has err 'help'
    [ ! -e ran ] || fail "the command was run all the same"
    is_empty
}

test_bad_options() {
    local run=(-- "$command" note ran yes)
    is_wrong
    is_wrong dir
    is_wrong dir --
    is_wrong "${run[@]}"
    is_wrong dir "$command" note ran yes
    is_wrong dir dir "${run[@]}"
    is_wrong --shared dir "${run[@]}"
    is_wrong -x dir "${run[@]}"
    is_wrong --read --write dir "${run[@]}"
    is_wrong --read --exclusive dir "${run[@]}"
    is_wrong --write --exclusive dir "${run[@]}"
}

test_bad_time_limits() {
    local limit
    for limit in -1 abc 5s '' nan inf 1e300; do
        is_wrong --timeout "$limit" dir -- "$command" note ran yes
    done
    is_wrong dir --timeout -- "$command" note ran yes
}

test_bad_options_of_status() {
    is_wrong --status
    is_wrong --status dir -- "$command" note ran yes
    is_wrong --status --read dir
    is_wrong --status --timeout 3 dir
}

test_help() {
    local word
    ends 0 --help
    says err
    for word in --read --write --exclusive --timeout --status 124 125 126 127 128 'Do not mix'; do
        has out "$word"
    done
}
