# Whether this machine can carry the rig. Sourced.

# The programs that the rig calls, and the package that each is in.
declare -A needed=([linux.uml]=user-mode-linux [ip]=iproute2 [bridge]=iproute2 [modprobe]=kmod [sshd]=openssh-server
    [ssh]=openssh-client [mount.nfs]=nfs-common [rpc.nfsd]=nfs-kernel-server [rpcbind]=rpcbind [mount.cifs]=cifs-utils
    [smbd]=samba [mkfs.ext4]=e2fsprogs [perl]=perl-base [taskset]=util-linux)

missing_programs() {
    local program
    for program in "${!needed[@]}"; do
        command -v "$program" >/dev/null || echo "$program (${needed[$program]})"
    done
}

# In MB.
free_memory() { sed -n -E 's/^MemAvailable: *([0-9]+)[0-9]{3} kB/\1/p' /proc/meminfo; }

# Mounts that are seen outside would stay there.
mounts_are_seen_outside() {
    mkdir -p "$work/probe"
    "${own_name_spaces[@]}" mount -t tmpfs probe "$work/probe" && umount "$work/probe" 2>/dev/null
}

# obstacle MEMORY: prints why the rig cannot run here, with that many MB; nothing when it can. That a guest really boots is
# seen when it does.
obstacle() {
    local lacking
    [ "$(uname -m)" = x86_64 ] || { echo "the guests' kernel is for x86-64, this machine is $(uname -m)"; return; }
    [ "$(id -u)" = 0 ] || { echo "this needs root, for name spaces and network devices"; return; }
    lacking=$(missing_programs | sort)
    [ -z "$lacking" ] || { echo "missing: ${lacking//$'\n'/, }; scripts/setup hosts installs it"; return; }
    [ "$(free_memory)" -ge "$1" ] || { echo "the guests need $1 MB of memory, $(free_memory) are free"; return; }
    "${own_name_spaces[@]}" true 2>/dev/null || { echo "this machine allows no name spaces of our own"; return; }
    ! mounts_are_seen_outside || { echo "this is a changed root whose mounts others share"; return; }
    "${own_name_spaces[@]}" ip tuntap add probe mode tap 2>/dev/null || { echo "this machine allows no virtual network cards"; return; }
}

# What a command is preceded by to be the first process of name spaces of its own: processes, network, mounts. When it ends, or
# the shell that started it, in whatever way, the system ends every process in there and takes the network and the mounts
# away: nothing has to be cleaned up. (No function: in the background that would be a shell between the two.)
own_name_spaces=(setpriv --pdeathsig KILL unshare --fork --kill-child=KILL --pid --mount-proc --net --mount --uts)
# In a changed root there is no mount to start from: unshare then leaves it to whom the mounts are shown.
mountpoint -q / || own_name_spaces+=(--propagation unchanged)
