# What the scripts share: where the sources are, how they speak, and how they install packages.
# Sourced, not run.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Debian keeps its own Python here; one found elsewhere on the PATH may lack what we test with.
python=/usr/bin/python3
export PYTHONDONTWRITEBYTECODE=1

say() { printf '%s\n' "== $*"; }

die() {
  printf '%s\n' "$0: $*" >&2
  exit 1
}

# Runs a command as root.
as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    die "needs root for: $*"
  fi
}

# install_packages NAME...: installs those of the Debian packages that aren't there yet.
install_packages() {
  local missing=() package
  for package in "$@"; do
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  say "installing ${missing[*]}"
  local install=(env DEBIAN_FRONTEND=noninteractive apt-get install -y -q=2 --no-install-recommends)
  # A machine's package lists may be missing or older than what the mirror still has.
  as_root "${install[@]}" "${missing[@]}" </dev/null >/dev/null 2>&1 && return
  say "updating the package lists"
  as_root apt-get update -q=2 </dev/null
  as_root "${install[@]}" "${missing[@]}" </dev/null >/dev/null
}

# build_preset NAME [TARGET...]: configures and builds a preset of CMakePresets.json.
build_preset() {
  local preset=$1
  shift
  say "building preset $preset"
  (cd "$root" && cmake --preset "$preset" >/dev/null && cmake --build --preset "$preset" ${1:+--target "$@"})
}

# copy_sample_prefix FOLDER: makes FOLDER a fresh copy of the sample prefix.
copy_sample_prefix() {
  rm -rf "$1"
  mkdir -p "$(dirname "$1")"
  cp -R "$root/samples/prefix" "$1"
  mkdir -p "$1/dosdevices" "$1/drive_c/windows/system32" "$1/drive_c/windows/temp"
  ln -s ../drive_c "$1/dosdevices/c:"
  ln -s / "$1/dosdevices/z:"
}
