# A machine that locks. Its shares are mounted by mount_shares, when the server is ready. Sourced by guest-init.

start_role() {
    # What SMB 3.1.1 signs and encrypts with is asked for by name, and a mount fails without a hint when it is not there.
    load sunrpc nfsv3 nfsv4 hmac md5 sha512_generic cmac aes_generic ccm gcm ghash_generic ctr cbc ecb nls_utf8 cifs \
        sch_netem
}
