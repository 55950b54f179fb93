# Sourced by the scripts that try things on a bare Debian 12, in a chroot. They must be root, and need
# the packages in packages_for_chroot.

packages_for_chroot=(
  git
  mmdebstrap
)

# must_be_root SCRIPT
must_be_root() {
  if [ "$(id -u)" -ne 0 ]; then
    echo "$1 must be root: it makes a chroot and mounts into it." >&2
    exit 2
  fi
}

# make_room NAME: sets `room` to a new folder for chroots, below ${TMPDIR:-/var/tmp}, which goes with
# the script, unless `keep` is yes.
make_room() {
  room=$(mktemp --directory "${TMPDIR:-/var/tmp}/$1.XXXXXX")
  trap remove_room EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM
  chmod 755 "$room"  # apt fetches as a user of its own.
}

remove_room() {
  # Nothing is mounted here: every mount is made in a namespace that ends with its processes.
  if [ "${keep:-no}" = yes ]; then
    echo "Kept: $room"
  else
    rm -rf --one-file-system -- "$room"
  fi
}

# without_security_updates FILE: a file of package sources, without those.
without_security_updates() {
  if [[ $1 = *.sources ]]; then
    awk -v RS= -v ORS='\n\n' '!/-security/' "$1"
  else
    sed '/-security/d' "$1"
  fi
}

# make_chroot ROOT OPTION...: a Debian 12 in the folder ROOT, made by mmdebstrap with the options. On a
# Debian 12 machine it uses that machine's package sources, and reaches them in the same way. With
# `security_updates` set to no it has those of the release alone: security updates may come to one
# architecture later than to another, and until then packages of both cannot live side by side.
make_chroot() {
  local root=$1
  shift
  apt-config dump | grep -E '^Acquire::(https?::|Check-)' >"$room/apt.conf" || true
  local file path
  local sources=()
  if (. /etc/os-release && [ "${VERSION_CODENAME:-}" = bookworm ]); then
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.{list,sources}; do
      if [ -s "$file" ] && [ "${security_updates:-yes}" = no ]; then
        without_security_updates "$file" >"$room/${file##*/}"
        sources+=("$room/${file##*/}")
      elif [ -s "$file" ]; then
        sources+=("$file")
      fi
    done
  fi
  local include=()
  if [ ${#sources[@]} -ne 0 ] && grep --quiet 'https://' "${sources[@]}"; then
    include=(--include=ca-certificates)
  fi
  mmdebstrap --aptopt="$room/apt.conf" "${include[@]}" "$@" bookworm "$root" "${sources[@]}" ||
    return
  for path in /etc/apt/keyrings /etc/apt/trusted.gpg.d /usr/share/keyrings; do
    if [ -d "$path" ]; then
      mkdir -p "$root$path"
      cp -r "$path/." "$root$path"
    fi
  done
  for file in /etc/hosts /etc/resolv.conf; do
    if [ -e "$file" ]; then
      cp --dereference "$file" "$root$file"
    fi
  done
}

# clone_into ROOT REPOSITORY: a fresh clone of HEAD, in /root/tarselvalues.
clone_into() {
  if [ -n "$(git -C "$2" status --porcelain)" ]; then
    echo "Note: what is not committed is not in the clone."
  fi
  git clone --quiet --no-hardlinks "$2" "$1/root/tarselvalues"
  git -C "$2" log -1 --format='%h %s' HEAD
}

# run_inside ROOT COMMAND: has bash run the command in /root, in a mount and a process namespace of its
# own, so that nothing is left behind.
run_inside() {
  local name
  local environment=(HOME=/root PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin)
  for name in TERM http_proxy https_proxy no_proxy; do
    if [ -n "${!name:-}" ]; then
      environment+=("$name=${!name}")
    fi
  done
  # shellcheck disable=SC2016  # The inner shell expands it.
  unshare --mount --pid --fork --kill-child bash -euc '
    root=$1 command=$2
    shift 2
    mount -t proc proc "$root/proc"
    mount --rbind /dev "$root/dev"
    exec env -i "$@" chroot "$root" /bin/bash -euo pipefail -c "cd /root; $command"
  ' bash "$1" "$2" "${environment[@]}"
}
