# One network for all: a bridge with a port for each guest. Runs inside the rig's network name space. Sourced.

make_network() {
    local name
    ip link set lo up
    ip link add hub type bridge
    ip addr add "$host_address/24" dev hub
    ip link set hub up
    for name in "$server" "${clients[@]}"; do
        ip tuntap add "port$name" mode tap
        ip link set "port$name" master hub up
    done
}

# Nothing passes any more between that client and the server, and neither is told: each believes the other at an address that
# nobody has. The host still reaches both.
nowhere=02:00:00:00:00:7f

cut_off() {
    "$rig/on" "$1" ip neigh replace "${address[$server]}" lladdr "$nowhere" nud permanent dev vec0
    "$rig/on" "$server" ip neigh replace "${address[$1]}" lladdr "$nowhere" nud permanent dev vec0
}

heal() {
    "$rig/on" "$1" ip neigh del "${address[$server]}" lladdr "$nowhere" dev vec0
    "$rig/on" "$server" ip neigh del "${address[$1]}" lladdr "$nowhere" dev vec0
}
