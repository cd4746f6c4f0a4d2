# shellcheck shell=bash disable=SC2034,SC2154
# What the cases are written with. Each begins in a folder of its own with an empty directory "dir".

fail() {
    echo "$*" >&2
    exit 1
}

# The running programs of a case end with it.
end_of_case() {
    local job
    for job in $(jobs -p); do
        kill -KILL "$job" 2>/dev/null || true
    done
    wait 2>/dev/null || true
}

# ends STATUS zvlock's ARGUMENTS...: runs it; its streams go to the files out and err.
ends() {
    local wanted=$1 got=0
    shift
    "${zvlock[@]}" "$@" >out 2>err || got=$?
    [ "$got" = "$wanted" ] || fail "zvlock $*: status $got instead of $wanted; $(cat out err)"
    unify out err
}

# The other system ends its lines with a carriage return as well.
unify() {
    sed -i 's/\r$//' "$@"
}

# says FILE LINE...: the file has these lines and no others.
says() {
    local file=$1
    shift
    diff "$file" <([ $# = 0 ] || printf '%s\n' "$@") || fail "the file $file (<) differs"
}

has() {
    grep -qE -- "$2" "$1" || fail "nothing like \"$2\" in $1: $(cat "$1")"
}

# The error stream has one line, which says who speaks and what is wrong.
complains() {
    [ "$(wc -l <err)" = 1 ] || fail "not one line: $(cat err)"
    has err "^zvlock: .*$1"
}

is_empty() {
    [ -z "$(ls -A "${1:-dir}")" ] || fail "left behind: $(ls -A "${1:-dir}")"
}

# until_there PATTERN...: waits for a file; what it waits for must come.
until_there() {
    until compgen -G "$1" >/dev/null; do sleep 0.01; done
}

# start NAME zvlock's ARGUMENTS...: in the background. Its input is what tell NAME writes, hear NAME reads its output,
# and its process is ${pids[NAME]}.
declare -A pids inputs outputs
start() {
    local name=$1 input output
    shift
    mkfifo "$name.in" "$name.out"
    "${before_start[@]}" "${zvlock[@]}" "$@" <"$name.in" >"$name.out" 2>"$name.err" &
    pids[$name]=$!
    exec {input}>"$name.in" {output}<"$name.out"
    inputs[$name]=$input
    outputs[$name]=$output
}
# A command that start puts before zvlock.
before_start=(env)

tell() { echo "$2" >&"${inputs[$1]}"; }

# hear NAME LINE: the next line of its output.
hear() {
    local line
    IFS= read -r line <&"${outputs[$1]}" || fail "$1 says nothing more; $(cat "$1.err")"
    [ "${line%$'\r'}" = "$2" ] || fail "$1 says \"$line\" instead of \"$2\""
}

# ended NAME STATUS: waits for its end.
ended() {
    local got=0
    wait "${pids[$1]}" || got=$?
    [ "$got" = "$2" ] || fail "$1: status $got instead of $2; $(cat "$1.err")"
}

# holder NAME zvlock's OPTIONS...: holds a lock on dir until it is told to go.
holder() {
    start "$@" dir -- "$command" hold
    hear "$1" holding
}

leave() {
    tell "$1" go
    ended "$1" 0
}
