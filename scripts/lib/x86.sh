# A Debian for i386 in a folder of its own, with the 32-bit Wine that cannot be installed beside the
# 64-bit one. Making it and entering it takes the rights of root.
# shellcheck shell=bash

readonly x86_folder=$cache/x86
readonly x86_packages=(wine32 wine libodbc1 cmake fonts-wqy-zenhei)

x86_release() { (source /etc/os-release && printf '%s' "$VERSION_CODENAME"); }

# Prepares it: two minutes and 1.2 GB, once.
make_x86() {
  local key system=$x86_folder/system
  key=$({ x86_release; declare -p x86_packages; declare -f make_x86; } | hash_of)
  stamped "$x86_folder/stamp" "$key" && return 0
  install_packages debootstrap
  say "preparing a 32-bit Debian"
  as_root rm -rf "$x86_folder"
  mkdir -p "$x86_folder" "$build/logs"
  { as_root debootstrap --arch=i386 --variant=minbase "$(x86_release)" "$system" &&
    as_root chroot "$system" env DEBIAN_FRONTEND=noninteractive apt-get -q -o Acquire::Retries=3 \
      install -y --no-install-recommends "${x86_packages[@]}"
  } </dev/null >"$build/logs/x86-setup.log" 2>&1 || { tail -n 20 "$build/logs/x86-setup.log" >&2; return 1; }
  stamp "$x86_folder/stamp" "$key"
}

# Runs a command in there; this checkout has the same path as outside. The mounts end with it.
in_x86() {
  local enter
  # shellcheck disable=SC2016
  enter='set -e
    system=$1 root=$2
    shift 2
    mkdir -p "$system$root"
    mount --rbind /dev "$system/dev"
    mount -t proc proc "$system/proc"
    mount --bind "$root" "$system$root"
    exec chroot "$system" "$@"'
  as_root unshare --mount --propagation private bash -c "$enter" in_x86 \
    "$x86_folder/system" "$root" "$@"
}

# The suites of the 32-bit build. What they leave belongs to whoever owns the checkout.
test_x86() {
  check "x86: a 32-bit system" make_x86 || return 0
  in_x86 env LC_ALL=C.UTF-8 TAVRIX_LONG="${TAVRIX_LONG-no}" "$root/scripts/test-x86" --inside || true
  as_root chown -R --reference "$root" "$build" "$x86_folder/wine"
}
