#!/usr/bin/env bash
# install_packages.sh build run …: installs what tools/packages.txt lists for these purposes and the machine lacks.
# Says what it installs; silent when nothing is missing.
set -euo pipefail

folder=$(dirname "$(readlink -f "$0")")

# None is told by what is to be the next release.
release=$(. /etc/os-release && echo "${VERSION_ID:-99}")
wanted=()
while read -r package purpose since _; do
    [[ -z "$package" || "$package" == \#* ]] && continue
    [[ -z "$since" || "${release%%.*}" -ge "$since" ]] || continue
    for asked in "$@"; do
        [[ "$purpose" == "$asked" ]] && wanted+=("$package")
    done
done <"$folder/packages.txt"

# A later Debian may have a package under another name, which provides the former one.
installed=$(dpkg-query --show --showformat='${db:Status-Abbrev},${Package},${Provides}\n' | sed -n 's/^.i *,//p' |
    tr ',' '\n' | sed 's/(.*//; s/ //g')
missing=()
for package in "${wanted[@]}"; do
    grep -qx -- "$package" <<<"$installed" || missing+=("$package")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

as_root=()
if [[ $EUID -ne 0 ]]; then
    if ! command -v sudo >/dev/null; then
        echo "Missing packages: ${missing[*]}" >&2
        echo "Install them as root, for there is no sudo: apt-get install ${missing[*]}" >&2
        exit 1
    fi
    as_root=(sudo)
fi
echo "Installing: ${missing[*]}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
install() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install --yes --no-install-recommends "${missing[@]}" \
        >"$log" 2>&1
}
# The package lists of a machine may be absent or old.
if ! install && ! { "${as_root[@]}" apt-get update >"$log" 2>&1 && install; }; then
    cat "$log" >&2
    exit 1
fi
