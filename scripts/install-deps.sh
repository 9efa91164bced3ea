#!/bin/sh
# Installs the build prerequisites from Debian's packages when they are missing.
set -e
need=""
for pkg in cmake ninja-build g++ clang libgtest-dev libgmock-dev libbenchmark-dev \
    libcli11-dev nlohmann-json3-dev; do
  dpkg -s "$pkg" >/dev/null 2>&1 || need="$need $pkg"
done
if [ -n "$need" ]; then
  if [ "$(id -u)" -ne 0 ]; then SUDO=sudo; else SUDO=; fi
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq $need
fi
