# shellcheck shell=bash disable=SC2034,SC2154
# zvlock --status

# lists LINE...: the table without its header and without what differs from run to run.
lists() {
    ends 0 --status dir
    says err
    has <(head -1 out) '^KIND +NUMBER +AGE +STATE$'
    says <(sed -E '1d; s/ +/ /g; s/ -?[0-9]+ s / AGE /; s/(reader) [0-9]{4,}/\1 NUMBER/' out) "$@"
}

test_status_of_a_free_directory() {
    ends 0 --status dir
    says out 'no lock files'
    is_empty
}

test_status_of_each_kind() {
    holder first --exclusive
    lists 'exclusive 0 AGE fresh'
    leave first
    holder writer --write
    lists 'writer - AGE fresh'
    leave writer
    holder one --read
    holder two --read
    ends 0 --status dir
    [ "$(grep -cE '^reader +[0-9]+ +-?[0-9]+ s  fresh$' out)" = 2 ]
    [ "$(wc -l <out)" = 3 ]
    leave one
    leave two
}

test_status_of_a_queue() {
    holder first --exclusive
    start second --exclusive dir -- "$command" status 0
    until_there dir/.deploy_lock.1
    lists 'exclusive 0 AGE fresh' 'queued 1 AGE fresh'
    leave first
    ended second 0
}

test_status_tells_stale_from_fresh_in_order() {
    touch dir/.deploy_lock.0 dir/.deploy_lock.10 dir/.deploy_read_lock.30
    touch -d '2 minutes ago' dir/.deploy_lock.9 dir/.deploy_write_lock dir/.deploy_read_lock.4
    lists 'exclusive 0 AGE fresh' 'queued 9 AGE stale' 'queued 10 AGE fresh' 'writer - AGE stale' \
        'reader 4 AGE stale' 'reader 30 AGE fresh'
    [ "$(ls -A dir | wc -l)" = 6 ]
}

# The upper bounds are far away: a slow machine may take its time.
test_status_tells_the_age() {
    local age
    touch -d '1000 seconds ago' dir/.deploy_write_lock
    touch -d '1000 seconds' dir/.deploy_lock.0
    ends 0 --status dir
    age=$(sed -nE 's/^writer +- +([0-9]+) s  stale$/\1/p' out)
    [ "$age" -ge 999 ]
    [ "$age" -lt 1300 ]
    age=$(sed -nE 's/^exclusive +0 +-([0-9]+) s  fresh$/\1/p' out)
    [ "$age" -le 1001 ]
    [ "$age" -gt 700 ]
}

test_status_is_aligned() {
    touch dir/.deploy_write_lock dir/.deploy_read_lock.2038074743
    touch -d '3 days ago' dir/.deploy_lock.0
    ends 0 --status dir
    [ "$(sed -E 's/(STATE|fresh|stale)$//' out | awk '{print length}' | sort -u | wc -l)" = 1 ]
}

test_status_leaves_other_files_out() {
    touch dir/file dir/.deploy_lock dir/.deploy_lock. dir/.deploy_lock.x dir/.deploy_write_lock2
    mkdir dir/below
    touch dir/below/.deploy_lock.0
    ends 0 --status dir
    says out 'no lock files'
    [ "$(ls -A dir | wc -l)" = 6 ]
}

# Whatever holds a writer off.
test_status_lists_readers_without_a_number() {
    touch -d '2 minutes ago' dir/.deploy_read_lock.copy
    touch -d '2 minutes ago' dir/.deploy_read_lock.12
    lists 'reader 12 AGE stale' 'reader copy AGE stale'
}

test_status_takes_no_lock() {
    holder first --write
    lists 'writer - AGE fresh'
    ends 124 --write --timeout 0 dir -- "$command" status 0
    leave first
    is_empty
}
