#!/usr/bin/env bash
# Installs the Debian packages the build needs, only those not yet present.
set -euo pipefail
PKGS=(build-essential cmake ninja-build pkg-config
      libdb5.3-dev libicu-dev rapidjson-dev libssl-dev libcli11-dev
      libgtest-dev libgmock-dev googletest libbenchmark-dev libsqlite3-dev)
missing=()
for p in "${PKGS[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
  SUDO=""; [ "$(id -u)" -ne 0 ] && SUDO="sudo"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
