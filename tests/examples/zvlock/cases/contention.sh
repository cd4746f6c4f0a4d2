# shellcheck shell=bash disable=SC2034,SC2154
# Two at once.

# is_refused OPTIONS...: whoever tries with these does not get in.
is_refused() {
    ends 124 "$@" dir -- "$command" note ran yes
    complains 'dir: .*not acquired'
    [ ! -e ran ] || fail "the command was run all the same"
}

# waits_for HOLDER CONTENDER MARK: the second of these kinds waits until the first goes. MARK is a file that the waiting
# makes.
waits_for() {
    holder first "$1"
    start second "$2" dir -- "$command" note order second
    until_there "$3"
    echo first >>order
    leave first
    ended second 0
    unify order
    says order first second
    is_empty
}

test_exclusive_waits_for_exclusive() {
    waits_for --exclusive --exclusive dir/.deploy_lock.1
}

test_writer_waits_for_writer() {
    waits_for --write --write dir/.deploy_lock.0
}

test_reader_waits_for_writer() {
    waits_for --write --read dir/.deploy_lock.0
}

test_writer_waits_for_reader() {
    waits_for --read --write dir/.deploy_lock.0
}

test_waiting_without_limit_is_not_ended_by_a_limit_of_another() {
    holder first --write
    start second --write dir -- "$command" status 3
    until_there dir/.deploy_lock.0
    is_refused --write --timeout 0
    leave first
    ended second 3
}

test_time_limit() {
    local limit
    holder first --exclusive
    for limit in 0 0.3 1; do
        is_refused --exclusive --timeout "$limit"
    done
    says <(ls -A dir) .deploy_lock.0
    leave first
    is_empty
}

test_time_limit_of_readers_and_writers() {
    local limit
    holder first --write
    for limit in 0 1.2; do
        is_refused --write --timeout "$limit"
        is_refused --read --timeout "$limit"
        is_refused --timeout "$limit"
    done
    says <(ls -A dir) .deploy_write_lock
    leave first
    is_empty
}

test_time_limit_of_a_writer_behind_a_reader() {
    holder first --read
    is_refused --write --timeout 0
    says <(ls -A dir | sed 's/[0-9]*$//') .deploy_read_lock.
    leave first
    is_empty
}

test_exclusive_without_patience_takes_a_free_directory() {
    ends 0 --exclusive --timeout 0 dir -- "$command" list dir
    says out .deploy_lock.0
}

test_time_limit_does_not_end_the_command() {
    start only --write --timeout 1 dir -- "$command" hold
    hear only holding
    is_refused --write --timeout 2
    leave only
}

test_readers_are_in_together() {
    holder one --read
    holder two --read
    ends 0 --read --timeout 600 dir -- "$command" status 0
    [ "$(ls -A dir | wc -l)" = 2 ]
    leave one
    leave two
    is_empty
}

test_exclusive_holder_keeps_readers_and_writers_out() {
    holder first --exclusive
    is_refused --read --timeout 0
    is_refused --write --timeout 0
    leave first
    is_empty
}

test_stale_locks_are_taken_over() {
    touch -d '2 minutes ago' dir/.deploy_lock.0
    ends 0 --exclusive --timeout 600 dir -- "$command" status 0
    touch -d '2 minutes ago' dir/.deploy_write_lock dir/.deploy_read_lock.1 dir/.deploy_lock.0
    ends 0 --write --timeout 600 dir -- "$command" status 0
    is_empty
}

count_up() {
    for _ in $(seq 50); do
        "${zvlock[@]}" "$1" dir -- "$command" count counter || return 1
    done
}

# fight KIND: two that read, add and write lose nothing.
fight() {
    local one two
    echo 0 >counter
    count_up "$1" &
    one=$!
    count_up "$1" &
    two=$!
    wait "$one"
    wait "$two"
    unify counter
    says counter 100
    is_empty
}

test_two_fight_over_a_counter_exclusively() {
    fight --exclusive
}

test_two_fight_over_a_counter_as_writers() {
    fight --write
}
