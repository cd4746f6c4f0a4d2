# shellcheck shell=bash disable=SC2034,SC2154
# Signals to zvlock, while it waits and while the command runs.

# A background job of a script begins with these ignored.
with_signals=(env '--default-signal=INT,QUIT')

# trapping SIGNAL: a command that answers one signal, under the lock still, and ends with status 5.
trapping() {
    printf '%s\n' "trap 'echo told; ls -A dir; exit 5' $1; echo ready; while :; do sleep 0.02; done"
}

test_posix_signals_go_to_the_command() {
    local signal
    before_start=("${with_signals[@]}")
    for signal in HUP INT QUIT TERM USR1 USR2; do
        start "$signal" dir -- sh -c "$(trapping "$signal")"
        hear "$signal" ready
        kill -s "$signal" "${pids[$signal]}"
        hear "$signal" told
        hear "$signal" .deploy_write_lock
        ended "$signal" 5
        is_empty
    done
}

test_posix_signal_that_ends_the_command() {
    start only --exclusive dir -- sh -c 'echo ready; exec sleep 1000'
    hear only ready
    kill -TERM "${pids[only]}"
    ended only 143
    is_empty
}

# zvlock outlives the signal: the lock stays until the command is done with it.
test_posix_command_that_does_not_mind() {
    start only dir -- sh -c "trap 'echo told' TERM; echo ready; read -r line; read -r line; exit 3"
    hear only ready
    kill -TERM "${pids[only]}"
    hear only told
    says <(ls -A dir) .deploy_write_lock
    tell only go
    tell only go
    ended only 3
    is_empty
}

# gives_up KIND SIGNAL STATUS MARK: while it waits.
gives_up() {
    start "waiting$2" "$1" dir -- "$command" note ran yes
    until_there "$4"
    kill -s "$2" "${pids[waiting$2]}"
    ended "waiting$2" "$3"
    [ ! -e ran ] || fail "the command was run all the same"
}

test_posix_signal_while_waiting_exclusively() {
    before_start=("${with_signals[@]}")
    holder first --exclusive
    gives_up --exclusive TERM 143 dir/.deploy_lock.1
    gives_up --exclusive INT 130 dir/.deploy_lock.1
    gives_up --exclusive HUP 129 dir/.deploy_lock.1
    says <(ls -A dir) .deploy_lock.0
    leave first
    is_empty
}

test_posix_signal_while_a_writer_waits() {
    before_start=("${with_signals[@]}")
    holder first --write
    gives_up --write TERM 143 dir/.deploy_lock.0
    gives_up --write INT 130 dir/.deploy_lock.0
    says <(ls -A dir) .deploy_write_lock
    leave first
    is_empty
}

test_posix_signal_while_a_reader_waits() {
    holder first --write
    gives_up --read TERM 143 dir/.deploy_lock.0
    gives_up --read HUP 129 dir/.deploy_lock.0
    says <(ls -A dir) .deploy_write_lock
    leave first
    is_empty
}

test_posix_signal_while_waiting_for_the_guard() {
    holder first --exclusive
    gives_up --write TERM 143 dir/.deploy_lock.1
    gives_up --read HUP 129 dir/.deploy_lock.1
    says <(ls -A dir) .deploy_lock.0
    leave first
    is_empty
}

# As with nohup: neither of them takes notice.
test_posix_ignored_signal_stays_ignored() {
    before_start=(env --ignore-signal=HUP)
    holder first --exclusive
    start second --exclusive dir -- sh -c 'echo ready; exec sleep 1000'
    until_there dir/.deploy_lock.1
    kill -HUP "${pids[second]}"
    leave first
    hear second ready
    kill -HUP "${pids[second]}"
    kill -TERM "${pids[second]}"
    ended second 143
}

test_posix_command_begins_with_the_signals_of_zvlock() {
    grep -E '^Sig(Blk|Ign|Cgt):' /proc/self/status >wanted
    ends 0 dir -- grep -E '^Sig(Blk|Ign|Cgt):' /proc/self/status
    diff wanted out
}

# in_terminal zvlock's ARGUMENTS...: its input is the keyboard of a terminal.
in_terminal() {
    script -qec "exec $(printf '%q ' "${zvlock[@]}" "$@")" typescript >/dev/null
}

# The command has it from the terminal; a second one from zvlock would be one too many. The lock stays until the command
# has ended.
test_interrupt_key_reaches_the_command_once() {
    local got=0 keyboard
    mkfifo keys
    {
        until_there ready
        printf '\003'
        until_there told
        "${zvlock[@]}" --status dir >status
        touch go
        exec sleep 1000
    } >keys &
    keyboard=$!
    in_terminal dir -- "$command" interrupted <keys || got=$?
    kill "$keyboard"
    [ "$got" = 9 ] || fail "status $got instead of 9: $(cat typescript)"
    unify told status
    says told told
    has status '^writer .* fresh$'
    is_empty
}

# The terminal is there before the lock is.
test_interrupt_key_while_waiting() {
    local got=0 keyboard
    holder first --exclusive
    mkfifo keys
    {
        until_there dir/.deploy_lock.1
        printf '\003'
        exec sleep 1000
    } >keys &
    keyboard=$!
    in_terminal --exclusive dir -- "$command" note ran yes <keys || got=$?
    kill "$keyboard"
    [ "$got" = 130 ] || fail "status $got instead of 130: $(cat typescript)"
    [ ! -e ran ] || fail "the command was run all the same"
    says <(ls -A dir) .deploy_lock.0
    leave first
    is_empty
}

# The command holds its output open as long as it runs.
test_command_ends_when_zvlock_is_killed() {
    local rest
    holder only --write
    kill -KILL "${pids[only]}"
    rest=$(cat <&"${outputs[only]}")
    [ -z "$rest" ]
    ended only 137
    says <(ls -A dir) .deploy_write_lock
    ends 0 --status dir
    has out '^writer '
}
