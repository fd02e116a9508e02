#!/usr/bin/env bash
# Builds the Debian package of the server and its modules in build-package/ and checks it:
# lintian must find no error, and systemd-analyze must accept the unit as the package installs it.
#   scripts/package.sh      ->  build-package/ksv-cimserver_<version>_<arch>.deb
set -euo pipefail
cd "$(dirname "$0")/.."

dir=build-package
cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKSV_PACKAGE=ON >/dev/null
cmake --build "$dir" -j "$(nproc)"
rm -f "$dir"/ksv-cimserver_*.deb
(cd "$dir" && cpack -G DEB >/dev/null)
deb="$(echo "$dir"/ksv-cimserver_*.deb)"

lintian --fail-on error "$deb"

# The unit is checked in the package's tree, where its ExecStart exists, laid over the system's
# units and the kill of its ExecReload.
root="$(mktemp -d)"
trap 'rm -rf "$root"' EXIT
dpkg-deb -x "$deb" "$root"
cp -an /lib/systemd/system/. "$root/lib/systemd/system/"
install -D /bin/kill "$root/bin/kill"
systemd-analyze verify --man=no --root="$root" "$root/lib/systemd/system/ksv-cimserver.service"
echo "$deb: lintian and systemd-analyze verify passed"
