#!/usr/bin/env bash
# Installs the build into a temporary prefix and checks what a desktop needs of it: the two
# programs answering --version, the desktop entry, the icon and the AppStream metadata, each
# valid by the desktop's own validators.
#     check_install.sh BUILD_DIR VERSION
set -euo pipefail
build=$1
version=$2
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT

cmake --install "$build" --prefix "$prefix" >/dev/null
fail() { echo "check_install: $*" >&2; exit 1; }
for f in bin/shuangqu bin/shuangqu-cli share/applications/shuangqu.desktop \
         share/icons/hicolor/scalable/apps/shuangqu.svg share/metainfo/io.github.shuangqu.metainfo.xml \
         share/man/man1/shuangqu.1.gz share/man/man1/shuangqu-cli.1.gz \
         share/doc/shuangqu/changelog.gz share/doc/shuangqu/copyright; do
  [ -e "$prefix/$f" ] || fail "missing $f"
done

# Both programs answer without a display.
[ "$(env -u DISPLAY QT_QPA_PLATFORM= "$prefix/bin/shuangqu" --version)" = "shuangqu $version" ] ||
  fail "shuangqu --version"
[ "$("$prefix/bin/shuangqu-cli" --version)" = "shuangqu-cli $version" ] || fail "shuangqu-cli --version"

# The validators report errors on stdout and exit non-zero; hints are not errors.
desktop-file-validate "$prefix/share/applications/shuangqu.desktop" || fail "desktop entry"
grep -q "^Exec=shuangqu$" "$prefix/share/applications/shuangqu.desktop" || fail "Exec line"
appstreamcli validate --no-net --pedantic "$prefix/share/metainfo/io.github.shuangqu.metainfo.xml" ||
  fail "metainfo"
grep -q "version=\"$version\"" "$prefix/share/metainfo/io.github.shuangqu.metainfo.xml" || fail "metainfo version"
echo "check_install: ok"
