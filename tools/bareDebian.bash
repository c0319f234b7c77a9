# shellcheck shell=bash
# A bare Debian in a directory, for scripts that source this. It is made as root or through sudo and
# removed at the end, unless $keep says otherwise. Sets $work, a temporary directory, $root, that of
# the system, and the array as_root, what a command that needs root is to be prefixed with.

as_root=()
if ((EUID != 0)); then
    as_root=(sudo)
fi
work=$(mktemp --directory)
root=$work/debian
remove_bare_debian()
{
    if [[ -n ${keep-} ]]; then
        echo "The system is left in $root"
    else
        "${as_root[@]}" rm -rf --one-file-system "$work"
    fi
}
trap remove_bare_debian EXIT

# Makes the system of a RELEASE of Debian (bookworm, trixie), with PACKAGEs besides the essential ones.
# usage: make_bare_debian RELEASE [PACKAGE...]
make_bare_debian()
{
    local release=$1
    shift
    # Debian comes from where this machine gets it.
    local sources=/etc/apt/sources.list.d/debian.sources
    if [[ ! -e $sources ]]; then
        sources=/etc/apt/sources.list
    fi
    local here
    here=$(. /etc/os-release && echo "$VERSION_CODENAME")
    sed "s/\b$here\b/$release/g" "$sources" >"$work/${sources##*/}"
    apt-config dump | grep '^Acquire::' >"$work/apt.conf" || true
    "${as_root[@]}" mmdebstrap --quiet --variant=minbase --mode=root --aptopt="$work/apt.conf" \
        "${@/#/--include=}" "$release" "$root" "$work/${sources##*/}"
    echo "127.0.0.1 localhost $(hostname)" |
        "${as_root[@]}" tee "$root/etc/hosts" >/dev/null # for sudo
}

# Adds an ordinary user.
# usage: add_user USER
add_user()
{
    "${as_root[@]}" chroot "$root" useradd --create-home --shell /bin/bash "$1"
}

# Runs a shell command in the home directory of USER, in a process and mount namespace of its own, so
# that nothing stays behind.
# usage: inside USER COMMAND
inside()
{
    "${as_root[@]}" unshare --mount --pid --fork bash -c '
        set -e
        mount -t proc proc "$1/proc"
        mount -t tmpfs tmpfs "$1/dev/shm"
        home=$(chroot "$1" getent passwd "$2" | cut -d : -f 6)
        exec chroot "$1" env --ignore-environment HOME="$home" USER="$2" PATH="$4" \
            setpriv --reuid="$2" --regid="$2" --init-groups \
            bash -c "cd && $3" </dev/null
    ' inside "$root" "$1" "$2" /usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin
}
