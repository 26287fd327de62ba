#!/usr/bin/env bash
# package_test.sh BUILD_FOLDER: the Debian package is well-formed, and installs and removes without a trace.
set -euo pipefail

build=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cd "$build"
cpack --config CPackConfig.cmake -B "$work/package" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
package=$(ls "$work"/package/*.deb)
LC_ALL=C lintian --tag-display-limit 0 --allow-root --fail-on error "$package"

# A system of its own, where a package without scripts needs nothing else.
root=$work/root
mkdir -p "$root"/var/lib/dpkg/{info,updates} "$root"/usr/bin
touch "$root"/var/lib/dpkg/{status,available}
dpkg_here() { dpkg --root="$root" --force-not-root,depends,script-chrootless --log=/dev/null "$@" >"$work/log" 2>&1 ||
    { cat "$work/log"; exit 1; }; }
dpkg_here --install "$package"

identifier=com.quillmark.Brevlin
for file in bin/brevlin libexec/brevlin/brevlin-{window,verb,exchange,play-sound} share/man/man1/brevlin.1.gz \
    share/bash-completion/completions/brevlin share/zsh/vendor-completions/_brevlin share/fish/vendor_completions.d/brevlin.fish \
    "share/dbus-1/interfaces/$identifier.Timer1.xml" "share/applications/$identifier.desktop" "share/dbus-1/services/$identifier.service" \
    "share/metainfo/$identifier.metainfo.xml" share/sounds/brevlin/stereo/Glass.wav \
    share/sounds/brevlin/stereo/Ping.wav "share/icons/hicolor/scalable/apps/$identifier.svg" \
    "share/icons/hicolor/16x16/apps/$identifier.png" "share/icons/hicolor/256x256/apps/$identifier.png"; do
    [[ -s "$root/usr/$file" ]] || { echo "The package lacks /usr/$file"; exit 1; }
done
desktop-file-validate "$root/usr/share/applications/$identifier.desktop"
appstreamcli validate --no-net "$root/usr/share/metainfo/$identifier.metainfo.xml"
grep -qx 'Exec=/usr/bin/brevlin --background' "$root/usr/share/dbus-1/services/$identifier.service" ||
    { echo "The bus would start another program:"; cat "$root/usr/share/dbus-1/services/$identifier.service"; exit 1; }

# Under the name that it has on this Debian.
calendar=$(dpkg-query --search '*/libical.so.3' | head -n 1 | cut -d: -f1)
dpkg-deb --field "$package" Depends | grep -qw -- "$calendar" || { echo "$calendar, which is opened by name, is not told"; exit 1; }

for font in Inter NotoSansCJK DejaVuSansMono; do
    grep -q "^Files: $font" "$root/usr/share/doc/brevlin/copyright" || { echo "The copyright of $font is not told"; exit 1; }
done

dpkg_here --purge brevlin
left=$(find "$root" -path "$root/var/lib/dpkg" -prune -o -type f -print)
[[ -z "$left" ]] || { echo "Left behind: $left"; exit 1; }
