# shellcheck shell=bash
# What ./run and ./test share: the machine's packages and the builds. Sets root, the folder of all sources.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# as_root COMMAND...
as_root() {
  if ((EUID == 0)); then "$@"; else sudo "$@"; fi
}

is_installed() {
  [[ $(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

# install_packages PURPOSE...: those packages of cmake/debian-packages that the machine lacks.
install_packages() {
  local purpose package missing=()
  while read -r purpose package; do
    if [[ " $* " == *" $purpose "* ]] && ! is_installed "$package"; then missing+=("$package"); fi
  done <"$root/cmake/debian-packages"
  ((${#missing[@]})) || return 0

  if ((EUID != 0)) && ! command -v sudo >/dev/null; then
    echo "Please install these Debian packages as root, then start again: ${missing[*]}" >&2
    return 1
  fi
  echo "setup: installing ${missing[*]}"
  run_logged setup as_root apt-get -q update &&
    run_logged setup as_root env DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-install-recommends "${missing[@]}"
}

# run_logged NAME COMMAND...: the command's output goes to build/log/NAME.log and is shown only when the command fails.
run_logged() {
  local log=$root/build/log/$1.log
  shift
  mkdir -p "${log%/*}"
  "$@" >"$log" 2>&1 || { tail -n 300 "$log"; return 1; }
}

# build PRESET [TARGET...]: configures where needed, and builds. A terminal sees the progress, a log only what goes wrong.
build() {
  local preset=$1 folder=$root/build/$1 options=(-j "$(nproc)")
  shift
  if [[ ! $folder/build.ninja -nt $root/CMakePresets.json ]]; then
    run_logged "configure-$preset" cmake -S "$root" --preset "$preset" || return
  fi
  if [[ -t 1 ]]; then
    ninja -C "$folder" "${options[@]}" "$@"
  else
    run_logged "build-$preset" ninja -C "$folder" --quiet "${options[@]}" "$@"
  fi
}
