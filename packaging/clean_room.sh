#!/usr/bin/env bash
# Tries the newcomer's commands on a Debian with nothing installed: makes a bare system with debootstrap,
# clones what is committed into it, and runs a command there ("./dev test" unless others are given).
# Usage, as root: packaging/clean_room.sh [RELEASE [COMMAND…]]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
release=${1:-bookworm}
[ $# -gt 0 ] && shift
[ $# -gt 0 ] || set -- ./dev test
base=/var/tmp/vantrel-$release.base

if [ ! -d "$base" ]; then
  debootstrap --variant=minbase "$release" "$base.part"
  mv "$base.part" "$base"
fi

room=$(mktemp -d "/var/tmp/vantrel-$release.XXXXXX")
# Lazily: a program that the command left behind may still hold something open.
cleanup() {
  umount -l -R "$room/dev" 2>/dev/null || true
  for mount in sys proc; do umount -l "$room/$mount" 2>/dev/null || true; done
  ! mountpoint -q "$room/dev" || exit 1
  rm -rf --one-file-system "$room"
}
trap cleanup EXIT
cp -aT "$base" "$room"
cp /etc/resolv.conf "$room/etc/resolv.conf"
mount -t proc proc "$room/proc"
mount -t sysfs sysfs "$room/sys"
mount --rbind /dev "$room/dev" && mount --make-rslave "$room/dev"
git clone -q . "$room/root/vantrel"
chroot "$room" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 \
  bash -c 'cd /root/vantrel && exec "$@"' run "$@"
