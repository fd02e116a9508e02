#!/usr/bin/env bash
# Installs every Debian package the project needs. Safe to run again: packages
# already present are not fetched a second time.
set -euo pipefail

packages=(
    build-essential cmake ninja-build ccache pkg-config clang-format clang libclang-rt-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    nlohmann-json3-dev libmicrohttpd-dev libgnutls28-dev libcurl4-openssl-dev libtinyxml2-dev
    libcli11-dev libjemalloc-dev
    sblim-wbemcli openssl
    libsystemd-dev lintian systemd
)

missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ "${#missing[@]}" -gt 0 ]; then
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
