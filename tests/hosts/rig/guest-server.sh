# The file server: the kernel's NFS server and smbd, on a disk that outlives a restart. Sourced by guest-init.

disk=/mnt/disk

start_role() {
    load nfsd
    mkdir "$disk"
    mount -t ext4 /dev/ubda "$disk"
    mkdir -p "$disk/export" "$disk/state/nfsdcld" "$disk/state/sm" "$disk/state/samba"
    local name
    for name in "${mounts[@]}"; do
        mkdir -p "$disk/export/$name"
        chmod 0777 "$disk/export/$name"
    done
    start_nfs
    start_smb
}

# Short leases and grace, so that a restart is over soon.
start_nfs() {
    mkdir -p /var/lib/nfs/{sm,sm.bak,rpc_pipefs,v4recovery} /run/rpcbind
    touch /var/lib/nfs/{etab,rmtab,state}
    mount -t nfsd nfsd /proc/fs/nfsd
    mount -t rpc_pipefs pipes /var/lib/nfs/rpc_pipefs
    echo 10 >/proc/fs/nfsd/nfsv4leasetime
    echo 10 >/proc/fs/nfsd/nfsv4gracetime
    rpcbind -w
    nfsdcld -p /var/lib/nfs/rpc_pipefs -s "$disk/state/nfsdcld"
    exportfs -o "rw,no_root_squash,insecure,fsid=0,sync,no_subtree_check" "$network.0/24:$disk/export"
    rpc.mountd
    rpc.nfsd --no-udp 8
}

start_smb() {
    mkdir -p /run/smb/{private,lock,cache,pid,ncalrpc,log}
    cat >/run/smb/smb.conf <<END
[global]
    interfaces = ${address[$server]}/24
    bind interfaces only = yes
    smb ports = 445
    server min protocol = SMB3_11
    private dir = /run/smb/private
    lock directory = /run/smb/lock
    state directory = $disk/state/samba
    cache directory = /run/smb/cache
    pid directory = /run/smb/pid
    ncalrpc dir = /run/smb/ncalrpc
    log file = /run/smb/log/%m.log
    map to guest = never
    disable spoolss = yes
    load printers = no
[export]
    path = $disk/export
    read only = no
    force user = root
END
    printf 'zorvel\nzorvel\n' | smbpasswd -c /run/smb/smb.conf -s -a root
    smbd -D -s /run/smb/smb.conf
}
