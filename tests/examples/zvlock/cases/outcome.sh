# shellcheck shell=bash disable=SC2034,SC2154
# The command's status, arguments and streams, and the lock around it.

kinds=(--exclusive --write --read)

test_status_is_passed_on() {
    local kind status
    for kind in "${kinds[@]}"; do
        for status in 0 7; do
            ends "$status" "$kind" dir -- "$command" status "$status"
            says out
            says err
            is_empty
        done
    done
}

test_highest_status_is_passed_on() {
    ends 255 dir -- "$command" status 255
}

test_posix_status_of_a_killed_command() {
    # shellcheck disable=SC2016
    ends 143 dir -- sh -c 'kill -TERM $$'
    # shellcheck disable=SC2016
    ends 137 --exclusive dir -- sh -c 'kill -KILL $$'
    is_empty
}

test_command_that_is_not_there() {
    local kind
    for kind in "${kinds[@]}"; do
        ends 127 "$kind" dir -- ./no-such-command argument
        complains 'no-such-command: .'
        is_empty
    done
    ends 127 dir -- no-such-command-in-the-search-path
    complains 'no-such-command-in-the-search-path: .'
    ends 127 dir -- ''
    is_empty
}

test_command_that_is_no_program() {
    echo 'no program' >plain.txt
    ends 126 dir -- ./plain.txt
    complains 'plain.txt: .'
    is_empty
}

test_windows_batch_file_is_refused() {
    echo 'echo %1' >batch.bat
    ends 126 dir -- batch.bat 'a & b'
    complains 'cmd /c'
    ends 126 dir -- BATCH.CMD
    is_empty
}

test_posix_command_is_looked_for_in_the_search_path() {
    ends 0 dir -- true
    ends 1 dir -- false
}

# Nothing is split, expanded, unquoted or lost.
test_arguments_arrive_untouched() {
    local words=('' ' ' 'two words' ' around ' 'a"b' '"quoted"' '"two words"' '"' '""' "it's" 'back\slash' 'at the end\'
        'ends\' '\\share\path\' 'before\"quote' 'twice\\"quote' 'a b\\' $'tab\there' $'two\nlines' '*' '?' '*.txt'
        '[a,b]' '{}' '%PATH%' '$HOME' '`id`' '&|<>^;' '#' '!' '--' '-x' '--timeout' '/?' '@file' '')
    touch one.txt two.txt
    ends 0 dir -- "$command" arguments "${words[@]}"
    diff out <(printf '[%s]\n' "${words[@]}")
}

test_arguments_beyond_ascii_arrive_untouched() {
    local words=('Grüße' 'naïve café' '€')
    "${launcher[@]}" "$command" arguments "${words[@]}" >direct
    unify direct
    ends 0 dir -- "$command" arguments "${words[@]}"
    cmp out direct
}

test_many_arguments() {
    local words
    mapfile -t words < <(seq 1 2000)
    ends 0 dir -- "$command" arguments "${words[@]}"
    [ "$(wc -l <out)" = 2000 ]
    has out '^\[2000\]$'
}

test_streams_are_the_commands() {
    seq 1 1000 >numbers
    "${zvlock[@]}" dir -- "$command" copy <numbers >out 2>err
    unify out err
    cmp out numbers
    says err copied
}

test_lock_file_is_there_while_the_command_runs() {
    ends 0 --exclusive dir -- "$command" list dir
    says out .deploy_lock.0
    ends 0 --write dir -- "$command" list dir
    says out .deploy_write_lock
    ends 0 --read dir -- "$command" list dir
    [ "$(wc -l <out)" = 1 ]
    has out '^\.deploy_read_lock\.[0-9]+$'
    is_empty
}

test_the_default_is_to_write() {
    ends 0 dir -- "$command" list dir
    says out .deploy_write_lock
}

test_options_may_stand_behind_the_directory() {
    ends 0 dir --exclusive --timeout 60 -- "$command" list dir
    says out .deploy_lock.0
}

test_lock_file_is_refreshed_while_the_command_runs() {
    holder first --write
    touch -d '20 seconds ago' dir/.deploy_write_lock
    touch -d '10 seconds ago' reference
    until [ dir/.deploy_write_lock -nt reference ]; do sleep 0.05; done
    leave first
}

test_directory_names() {
    local name
    mkdir 'two words' ./-dash dir/below
    for name in 'two words' ./-dash dir/below dir/ "$PWD/dir"; do
        ends 0 --exclusive "$name" -- "$command" status 0
        ends 0 --write "$name" -- "$command" status 0
    done
    is_empty 'two words'
    is_empty ./-dash
    is_empty dir/below
}

# The library drops blanks at the ends of a path; the neighbours without them are not meant.
test_posix_directory_names_with_blanks_at_their_ends() {
    local name kind number=0
    mkdir lead trail ' lead' 'trail ' ' '
    for name in ' lead' 'trail ' ' '; do
        for kind in --exclusive --read --write; do
            number=$((number + 1))
            start "holder$number" "$kind" "$name" -- "$command" hold
            hear "holder$number" holding
            [ "$(ls -A "$name" | wc -l)" = 1 ] || fail "$kind did not lock '$name'"
            ends 0 --status "$name"
            has out ' fresh$'
            is_empty lead
            is_empty trail
            leave "holder$number"
            is_empty "$name"
        done
    done
}

test_directory_names_beyond_ascii() {
    local name='Grüße'
    # Of the second two bytes the last is that of a backslash.
    [ "${launcher[*]: -1}" != 932 ] || name='十表'
    mkdir "$name"
    ends 0 --write "$name" -- "$command" status 0
    start first --exclusive "$name" -- "$command" hold
    hear first holding
    says <(ls -A "$name") .deploy_lock.0
    ends 0 --status "$name"
    has out '^exclusive .* fresh$'
    leave first
    is_empty "$name"
}

# One that is merely alike is not locked in its place.
test_windows_directory_that_the_code_page_cannot_name() {
    mkdir 'Ā' A '?'
    ends 125 'Ā' -- "$command" status 0
    complains 'no such directory'
}

# The lock ends with the command, not with what it left behind.
test_posix_background_process_does_not_hold_the_lock() {
    ends 0 dir -- sh -c 'sleep 1000 </dev/null >/dev/null 2>&1 & echo $!'
    is_empty
    kill -KILL "$(cat out)"
}
