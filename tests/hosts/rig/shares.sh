# The shares as a client sees them. mount_shares runs in the guest. Sourced.

# share_source NAME: what is mounted.
share_source() {
    case "${mount_type[$1]}:$1" in
    nfs:nfs3*) echo "${address[$server]}:/mnt/disk/export" ;;
    nfs:*) echo "${address[$server]}:/" ;;
    cifs:*) echo "//${address[$server]}/export" ;;
    esac
}

# Beside the options under test: no client shares caches or a connection between two of its mounts.
share_options() {
    case "${mount_type[$1]}:$1" in
    nfs:nfs3*) echo "${mount_options[$1]},nosharecache,nolock,proto=tcp" ;;
    nfs:*) echo "${mount_options[$1]},nosharecache,proto=tcp" ;;
    cifs:*) echo "${mount_options[$1]},nosharesock,username=root,password=zorvel" ;;
    esac
}

mount_share() {
    mkdir -p "$shares/$1"
    mount -t "${mount_type[$1]}" -o "$(share_options "$1")" "$(share_source "$1")" "$shares/$1"
}

mount_shares() {
    local name
    for name in "${mounts[@]}"; do
        mount_share "$name"
    done
    mount | grep " on $shares/"
}
