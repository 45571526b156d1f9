#!/usr/bin/env bash
# Installs the Debian packages Quorvel needs to build, test and demonstrate; quick when all are present.
set -euo pipefail

# Build and runtime libraries, fonts and the tools the tests drive.
packages=(
  build-essential cmake ninja-build pkg-config
  libcairo2-dev libfreetype-dev libfontconfig-dev fonts-liberation2
  libharfbuzz-dev libfribidi-dev fonts-noto-core fonts-droid-fallback
  nlohmann-json3-dev libcli11-dev libcpp-httplib-dev libcups2-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  poppler-utils python3 libqpdf-dev libharfbuzz-bin
  libdeflate-dev libqrencode-dev libpng-dev libjpeg-dev zbar-tools icc-profiles-free
  python3-dev python3-pybind11 python3-setuptools python3-pip python3-pytest python3-jsonschema
)
# Extra groups, asked for by name: "cups" (print-queue tests), "browser" (web demo test), "fuzz" (clang + sanitizers).
for group in "$@"; do
  case "$group" in
    cups) packages+=(cups cups-client cups-bsd printer-driver-cups-pdf) ;;
    browser) packages+=(chromium)
             command -v npm >/dev/null 2>&1 || packages+=(nodejs npm) ;;
    fuzz) packages+=(clang libclang-rt-14-dev) ;;
    *) echo "install-deps: unknown group '$group'" >&2; exit 2 ;;
  esac
done

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
