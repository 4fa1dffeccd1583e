#!/bin/bash
# Tests the wireless readers against a real kernel with simulated radios, in a virtual machine: an access point on one
# radio, a station on the other. Not part of test.sh: it downloads a kernel (70 MB) and takes minutes without hardware
# virtualisation, which is not used, since not every host that offers it can run it. Prints CHECK lines, and the
# wireless messages of that kernel in hexadecimal; fails when a check does.
#
# tools/vm_wifi_test.sh BUILD_FOLDER [WORK_FOLDER]
#
# BUILD_FOLDER is a configured build; its target wifi_probe is built. The work folder (default: a temporary one) keeps
# the kernel for the next run; a linux-image-*.deb in it is used instead of a download. Needs the Debian 12 packages
# qemu-system-x86 busybox-static kmod cpio iw hostapd.
set -euo pipefail

build=${1:?usage: vm_wifi_test.sh BUILD_FOLDER [WORK_FOLDER]}
work=${2:-$(mktemp -d)}
mkdir -p "$work"
build=$(realpath "$build")
cd "$work"
PATH=$PATH:/usr/sbin:/sbin

for program in qemu-system-x86_64 busybox modprobe cpio iw hostapd; do
  command -v "$program" >/dev/null || { echo "vm_wifi_test: $program is missing" >&2; exit 2; }
done
cmake --build "$build" --target wifi_probe >&2
probe=$(find "$build" -name wifi_probe -type f -perm -u+x | head -1)

# The kernel is unpacked, never installed.
if [ ! -d kernel/boot ]; then
  if ! compgen -G 'linux-image-*.deb' >/dev/null; then
    apt-get download "$(apt-cache depends linux-image-amd64 | awk '/Depends: linux-image-[0-9]/ {print $2; exit}')"
  fi
  dpkg -x linux-image-*.deb kernel
fi
version=$(ls kernel/lib/modules)
depmod -b kernel "$version"

# copy_program PROGRAM: with the libraries it loads.
copy_program() {
  install -D "$1" "root/bin/$(basename "$1")"
  ldd "$1" | grep -o '/[^ ]*' | while read -r library; do install -D "$library" "root$library"; done
}

rm -rf root
mkdir -p root/bin root/modules root/proc root/sys root/dev root/etc root/run
for program in "$(command -v iw)" "$(command -v hostapd)" "$probe"; do copy_program "$program"; done
install -D "$(command -v busybox)" root/bin/busybox
: >root/modules/order
modprobe -d kernel -S "$version" --show-depends mac80211_hwsim | awk '/^insmod/ {print $2}' | while read -r module; do
  cp "$module" root/modules/
  basename "$module" >>root/modules/order
done
printf 'interface=wlan0\ndriver=nl80211\nssid=TestNet\nhw_mode=g\nchannel=1\n' >root/etc/hostapd.conf

cat >root/init <<'INIT'
#!/bin/busybox sh
/bin/busybox --install -s /bin
export PATH=/bin
mount -t proc none /proc; mount -t sysfs none /sys; mount -t devtmpfs none /dev
check() { # check NAME PATTERN [PROBE ARGUMENT]
  said=$(wifi_probe $3)
  case $said in $2) echo "CHECK ok: $1 ($said)" ;; *) echo "CHECK failed: $1 ($said)" ;; esac
}
check "no wireless subsystem" "powered=[?] rssi=[?] rate=[?] path=offline"
while read -r module; do insmod /modules/$module; done </modules/order
check "an interface that is down has no power" "powered=0 rssi=[?] rate=[?] path=offline"
hostapd -B /etc/hostapd.conf >/dev/null
ip link set wlan1 up
check "power without a network" "powered=1 rssi=[?] rate=[?] path=offline"
iw dev wlan1 connect TestNet
check "signal and rate in a network" "powered=1 rssi=-[0-9]* rate=[0-9]* path=offline" wait
ip addr add 10.0.0.2/24 dev wlan1
ip route add default via 10.0.0.1 dev wlan1
check "the path is wireless" "powered=1 rssi=-* path=wifi" wait
wifi_probe messages | sed 's/^/MESSAGE /'
for switch in /sys/class/net/wlan1/phy80211/rfkill*/soft; do echo 1 >$switch; done
check "a blocked radio" "powered=0 rssi=[?] rate=[?] path=offline"
killall hostapd
rmmod mac80211_hwsim
check "the radios are gone" "powered=[?] rssi=[?] rate=[?] path=offline"
echo "CHECKS END"
poweroff -f
INIT
chmod +x root/init
(cd root && find . | cpio -o -H newc --quiet | gzip -1) >initrd.gz

timeout 600 qemu-system-x86_64 -accel tcg -m 512 -nographic -no-reboot -nic none -kernel kernel/boot/vmlinuz-* -initrd initrd.gz \
  -append 'console=ttyS0 quiet panic=-1 rdinit=/init' </dev/null >console.log 2>&1 || true
tr -d '\r' <console.log | grep -aoE '(CHECK|MESSAGE) .*' || true
if ! grep -aq 'CHECKS END' console.log; then
  echo "vm_wifi_test: the machine did not come to the end, see $work/console.log" >&2
  exit 1
fi
! grep -aq 'CHECK failed' console.log
