# Where everything lies and how the machines are called. Sourced by the scripts of the rig, on the host and in the guests.

repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/../../.." && pwd)
rig=$repo/tests/hosts/rig
# The only folder that anything here writes to, and the one of these machines, where several sets of them run side by side.
output=$repo/build/hosts
work=${ZORVEL_HOSTS_FOLDER:-$output}
results=$output/results

# A and B are the machines that lock, S is the file server. The addresses mean nothing outside the rig's own network.
clients=(A B)
server=S
network=10.77.0
declare -A address=([A]=$network.11 [B]=$network.12 [S]=$network.10)
host_address=$network.1

# The mounts that every client has, each in a directory of the server's own: name and options.
mounts=(nfs3 nfs3-uncached nfs4 nfs4-uncached smb smb-uncached)
shares=/mnt/shares
declare -A mount_type=([nfs3]=nfs [nfs3-uncached]=nfs [nfs4]=nfs [nfs4-uncached]=nfs [smb]=cifs [smb-uncached]=cifs)
declare -A mount_options=(
    [nfs3]=vers=3
    [nfs3-uncached]=vers=3,actimeo=0,lookupcache=none
    [nfs4]=vers=4.2
    [nfs4-uncached]=vers=4.2,actimeo=0,lookupcache=none
    [smb]=vers=3.1.1
    [smb-uncached]=vers=3.1.1,actimeo=0,cache=none)

say() { printf 'hosts: %s\n' "$*"; }

fail() {
    printf 'hosts: %s\n' "$*" >&2
    exit 1
}
