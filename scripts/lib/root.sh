# shellcheck shell=bash
# A bare Debian 12 in a folder, for the runs that start from nothing. Needs root. Uses messages.sh, cleanup.sh;
# needs `root`.

# copy_checkout DIRECTORY: the files that git knows, as they are in the working tree.
copy_checkout() {
  mkdir -p "$1"
  (cd "$root" && git ls-files -z | xargs -0 cp --parents --no-dereference --target-directory "$1") ||
    fail "the checkout could not be copied"
}

# make_bare_system DIRECTORY: unpacks the smallest Debian 12 there (debootstrap makes it once, and build/ keeps it).
# To be called in a world of its own, for it mounts /proc.
make_bare_system() {
  local directory=$1 kept="$root/build/bookworm.tar" made
  [ "$(id -u)" = 0 ] || fail "a system of its own needs root"
  if [ ! -e "$kept" ]; then
    command -v debootstrap >/dev/null || fail "debootstrap is missing: install the package debootstrap"
    say "Making a bare Debian 12"
    made=
    new_directory made
    debootstrap --variant=minbase bookworm "$made/system" http://deb.debian.org/debian >&2 </dev/null ||
      fail "debootstrap failed (see above)"
    mkdir -p "$root/build"
    tar --directory "$made/system" --create --file "$kept.new" . && mv "$kept.new" "$kept"
    rm -rf "$made/system"
  fi
  mkdir -p "$directory"
  tar --directory "$directory" --extract --file "$kept"
  mount -t proc proc "$directory/proc"
  cleanup_mounts+=("$directory/proc")
  cp /etc/resolv.conf "$directory/etc/resolv.conf"
}

# in_a_world_of_its_own SCRIPT ARGUMENTS...: starts the script once more where nobody else sees its mounts and
# processes; none of them outlives it.
in_a_world_of_its_own() {
  if [ -z "${TARNWELL_OWN_WORLD:-}" ]; then
    TARNWELL_OWN_WORLD=yes exec unshare --mount --propagation private --pid --fork --kill-child --mount-proc -- "$@"
  fi
}

# inside DIRECTORY USER COMMAND...: runs the command in that system as that user, in the user's home, with an
# environment of its own (and what `inside_environment` holds).
inside_environment=()
inside() {
  local directory=$1 user=$2 home
  shift 2
  home=$(awk -F: -v user="$user" '$1 == user { print $6 }' "$directory/etc/passwd")
  run_process chroot "$directory" runuser -u "$user" -- env -i "HOME=$home" "USER=$user" "LOGNAME=$user" \
    SHELL=/bin/bash TERM=dumb LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
    PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin "${inside_environment[@]}" \
    bash -euo pipefail -c 'cd && "$@"' bash "$@"
}
