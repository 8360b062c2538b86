# shellcheck shell=bash
# Bare Debian systems in folders, for tests that begin with an empty system. Needs root. Uses messages.sh,
# progress.sh, cleanup.sh, packages.sh; needs `root`.

# The releases on which the program is tested: the columns of packages.table.
mapfile -t releases < <(sed -n 's/^# purpose *need *//p' "$root/scripts/lib/packages.table" | tr -s ' ' '\n')

# check_release NAME: stops when the name is not one of these releases.
check_release() {
  case " ${releases[*]} " in
    *" $1 "*) ;;
    *) fail "this wants a release of Debian: ${releases[*]}" ;;
  esac
}

# copy_checkout DIRECTORY: copies the files that git knows, as they are in the working tree.
copy_checkout() {
  mkdir -p "$1"
  (cd "$root" && git ls-files -z | xargs -0 cp --parents --no-dereference --target-directory "$1") ||
    fail "the checkout could not be copied"
}

# make_bare_system DIRECTORY RELEASE: unpacks the smallest Debian there. debootstrap makes it once, and build/
# keeps it. Call it in separate namespaces (in_a_world_of_its_own), because it mounts /proc, /dev and /sys.
make_bare_system() {
  local directory=$1 release=$2 kept="$root/build/$2.tar" made
  [ "$(id -u)" = 0 ] || fail "a system of its own needs root"
  check_release "$release"
  if [ ! -e "$kept" ]; then
    require system
    made=
    new_directory made
    run_quietly "debootstrap-$release" "Making a bare Debian, $release" \
      debootstrap --variant=minbase "$release" "$made/system" http://deb.debian.org/debian ||
      fail "debootstrap failed (see above)"
    tar --directory "$made/system" --create --file "$kept.new" . && mv "$kept.new" "$kept"
    rm -rf "$made/system"
  fi
  mkdir -p "$directory"
  tar --directory "$directory" --extract --file "$kept"
  mount -t proc proc "$directory/proc"
  cleanup_mounts+=("$directory/proc")
  local place
  for place in dev sys; do # terminals, and control groups for the journal
    mount --rbind "/$place" "$directory/$place"
    cleanup_mounts+=("$directory/$place")
  done
  cp /etc/resolv.conf "$directory/etc/resolv.conf"
  echo "127.0.0.1 localhost $(hostname)" >"$directory/etc/hosts"
  echo force-unsafe-io >"$directory/etc/dpkg/dpkg.cfg.d/unsafe-io" # thrown away: no need to wait for the disk
  # This machine's own authorities, besides Debian's. The machine's network may need them.
  mkdir -p "$directory/usr/local/share/ca-certificates"
  find /usr/local/share/ca-certificates -name '*.crt' \
    -exec cp --target-directory "$directory/usr/local/share/ca-certificates" {} +
}

# in_a_world_of_its_own SCRIPT ARGUMENTS...: starts the script again where nobody else sees its mounts and
# processes. No process outlives it.
in_a_world_of_its_own() {
  if [ -z "${TARNWELL_OWN_WORLD:-}" ]; then
    [ "$(id -u)" = 0 ] || fail "a system of its own needs root"
    TARNWELL_OWN_WORLD=yes exec unshare --mount --propagation private --pid --fork --kill-child --mount-proc -- "$@"
  fi
}

# inside DIRECTORY USER COMMAND...: runs the command in that system as that user, in the user's home, with its
# own environment (and the content of `inside_environment`). The system's root also becomes the root of the
# mounts, because in a plain chroot an ordinary user gets no namespace.
inside_environment=()
inside() {
  local directory=$1 user=$2 home
  shift 2
  home=$(awk -F: -v user="$user" '$1 == user { print $6 }' "$directory/etc/passwd")
  # shellcheck disable=SC2016 # expanded by the inner shells
  run_process unshare --mount --propagation private -- bash -euc '
    mount --rbind "$1" "$1"
    cd "$1"
    pivot_root . .
    umount --lazy .
    shift
    exec "$@"' enter "$directory" runuser -u "$user" -- env -i "HOME=$home" "USER=$user" "LOGNAME=$user" \
    SHELL=/bin/bash TERM=dumb LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
    PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin "${inside_environment[@]}" \
    bash -euo pipefail -c 'cd && "$@"' bash "$@"
}

# find_package RELEASE SYSTEM: sets package, the program's Debian package that bare-system left in
# build/packages/RELEASE, beside that of the app. Without it, scripts/package makes both first, as root on a bare
# system in the folder SYSTEM.
find_package() {
  local release=$1 system=$2 packages="$root/build/packages/$1"
  package=$(echo "$packages"/tarnwell_*.deb)
  [ ! -f "$package" ] || return 0
  say "$release: making the package in a bare system"
  make_bare_system "$system" "$release"
  copy_checkout "$system/srv/tarnwell"
  inside "$system" root /srv/tarnwell/scripts/package >&2 || fail "scripts/package failed"
  mkdir -p "${packages%/*}"
  rm -rf "$packages"
  cp -r "$system/srv/tarnwell/build/release/packages" "$packages"
  package=$(echo "$packages"/tarnwell_*.deb)
}
