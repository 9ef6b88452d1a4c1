# Sourced by scripts/run and scripts/test: installs the Debian packages that are missing.
# shellcheck shell=bash

TESSARY_PACKAGES=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-charts-dev qt6-tools-dev qt6-l10n-tools libqt6opengl6-dev libgl-dev
  qt6-translations-l10n
  libssl-dev openssl
  qtkeychain-qt6-dev libsecret-1-0 gnome-keyring dbus-daemon libsecret-tools
  libgtest-dev libgmock-dev libbenchmark-dev nlohmann-json3-dev
  clang libclang-rt-dev
  xvfb xauth fonts-dejavu-core
  dpkg-dev desktop-file-utils appstream
)

tessary_install_deps() {
  local missing=()
  local p
  for p in "${TESSARY_PACKAGES[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
      missing+=("$p")
    fi
  done
  [ ${#missing[@]} -eq 0 ] && return 0

  echo "Installing missing packages: ${missing[*]}"
  local sudo=""
  if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get update -qq
  $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
}
