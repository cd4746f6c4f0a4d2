# Guests: machines with a kernel and a clock of their own, whose root is this machine's, read-only. Sourced.

boot_limit=${ZORVEL_BOOT_LIMIT:-90}

make_keys() {
    mkdir -p "$work/ssh"
    rm -f "$work/ssh"/{host,user}*
    ssh-keygen -q -t ed25519 -N '' -f "$work/ssh/host"
    ssh-keygen -q -t ed25519 -N '' -f "$work/ssh/user"
}

# The server's files, in memory; they outlive the server, and no run sees another's.
make_disk() {
    truncate -s 512M /mnt/disk
    mkfs.ext4 -q -F /mnt/disk
}

# The numbers of the processors that this may run on.
own_processors() {
    local range
    for range in $(sed -n 's/^Cpus_allowed_list:[[:space:]]*//p' /proc/self/status | tr , ' '); do
        seq "${range%-*}" "${range#*-}"
    done
}

# processor_of NAME: each guest keeps to one, and the clients to different ones where there are as many. A guest's kernel and
# its programs take turns at every call; between two processors that costs twice as much.
processor_of() {
    local all guests=("${clients[@]}" "$server") i
    mapfile -t all < <(own_processors)
    for i in "${!guests[@]}"; do
        [ "${guests[i]}" != "$1" ] || echo "${all[i % ${#all[@]}]}"
    done
}

# start_guest NAME: returns at once; see await_guest. A session of its own, so that one signal ends all of its processes. Its
# memory is a file on the rig's own /mnt: /dev/shm can be small or closed to programs.
start_guest() {
    local name=$1 role=client disk=()
    if [ "$name" = "$server" ]; then
        role=server
        disk=("ubda=/mnt/disk")
    fi
    # Its random numbers would take long to become good; sshd waits for them.
    head -c 64 /dev/urandom >"$work/seed-$name"
    : >"$work/$name.log"
    TMPDIR=/mnt LD_PRELOAD=$repo/build/linux/bin/whole_registers.so setsid taskset -c "$(processor_of "$name")" \
        linux.uml "umid=$name" "uml_dir=$work/uml" "mem=$ZORVEL_GUEST_MEMORY" \
        root=/dev/root rootfstype=hostfs rootflags=/ ro "init=$rig/guest-init" "${disk[@]}" \
        "vec0:transport=tap,ifname=port$name,depth=128,gro=1" con=null con0=null,fd:1 con1=null ssl=null quiet \
        "guest_name=$name" "guest_role=$role" "ZORVEL_HOSTS_FOLDER=$work" </dev/null >"$work/$name.log" 2>&1 &
    echo $! >"$work/$name.pid"
}

# await_guest NAME: until it says that it is ready; fails when it ends or the time is over.
await_guest() {
    local name=$1
    if ! timeout "$boot_limit" grep -q -m1 '^READY' \
        < <(exec tail -n +1 -f -s 0.1 --pid="$(<"$work/$name.pid")" "$work/$name.log"); then
        cat "$work/$name.log" >&2
        say "cannot run here: guest $name did not get ready; its console is above"
        exit 3
    fi
}

# As if its plug was pulled.
kill_guest() {
    kill -KILL -- "-$(<"$work/$1.pid")"
    ssh_close "$1"
}

# The connection that commands shared would otherwise wait for the machine that is gone.
ssh_close() { ssh -F "$work/ssh/config" -O exit "$1" 2>/dev/null || true; }

# Commands share one connection to each guest, which lives as long as the rig. Its socket lies on the rig's own /mnt, where
# the path is short enough.
write_ssh_config() {
    local name
    for name in "$server" "${clients[@]}"; do
        cat <<END
Host $name
    HostName ${address[$name]}
END
    done >"$work/ssh/config"
    cat >>"$work/ssh/config" <<END
Host *
    User root
    IdentityFile $work/ssh/user
    IdentitiesOnly yes
    StrictHostKeyChecking no
    UserKnownHostsFile /dev/null
    LogLevel ERROR
    ControlMaster auto
    ControlPath /mnt/to-%h
    ControlPersist yes
END
}
