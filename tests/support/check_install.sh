#!/usr/bin/env bash
# The installed program as a Linux desktop meets it: installs the build into a scratch
# prefix, runs both programs from there, validates the desktop entry and the AppStream
# metadata, asks the shared MIME database what a log is, renders the command line's
# manual page and asks its completion for words.
#   check_install.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
build=$1
src=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }
for tool in desktop-file-validate appstreamcli update-mime-database xdg-mime mimetype timeout; do
  command -v "$tool" >/dev/null || fail "$tool is missing: run scripts/setup.sh"
done

prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null
for f in bin/Fluxmere bin/fluxmere bin/fluxmere-cli share/fluxmere/Language.dll \
         share/fluxmere/Fluxmere_it.hlp share/fluxmere/Fluxmere_en.hlp \
         share/applications/org.fluxmere.Fluxmere.desktop share/metainfo/org.fluxmere.Fluxmere.metainfo.xml \
         share/mime/packages/fluxmere.xml share/icons/hicolor/scalable/apps/org.fluxmere.Fluxmere.svg \
         share/bash-completion/completions/fluxmere-cli share/man/man1/fluxmere-cli.1; do
  [ -e "$prefix/$f" ] || fail "not installed: $f"
done

# A home of its own, so that nothing the programs write lands in the user's.
export HOME=$work/home XDG_CONFIG_HOME=$work/home/.config XDG_RUNTIME_DIR=$work/run LANG=C.UTF-8 LC_ALL=C.UTF-8
mkdir -p "$HOME" && mkdir -m 700 "$XDG_RUNTIME_DIR"
sample=$src/resources/samples/sample.log

"$prefix/bin/fluxmere-cli" info "$sample" >"$work/info.txt" 2>&1 || { cat "$work/info.txt"; fail "fluxmere-cli info"; }
grep -q . "$work/info.txt" || fail "fluxmere-cli info printed nothing"

# The manual page renders without a warning and tells of the commands.
page=$prefix/share/man/man1/fluxmere-cli.1
if command -v man >/dev/null; then
  MANWIDTH=80 man -l -P cat "$page" >"$work/man.txt" 2>"$work/man.err" || fail "man -l cannot render the manual page"
elif command -v groff >/dev/null; then
  groff -man -Tutf8 "$page" >"$work/man.txt" 2>"$work/man.err" || fail "groff cannot render the manual page"
fi
if [ -f "$work/man.txt" ]; then
  [ ! -s "$work/man.err" ] || { cat "$work/man.err"; fail "the manual page renders with warnings"; }
  grep -q 'import-surveyor' "$work/man.txt" || fail "the manual page does not list the commands"
fi

# The completion offers a command, then that command's own options.
complete_words() {
  bash -c 'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _fluxmere_cli; echo "${COMPREPLY[*]}"' \
    sh "$prefix/share/bash-completion/completions/fluxmere-cli" "$@"
}
[ "$(complete_words fluxmere-cli --lang en exp)" = export ] || fail "completion of a command"
case " $(complete_words fluxmere-cli export --) " in *" --csv "*) ;; *) fail "completion of export's options" ;; esac
case " $(complete_words fluxmere-cli info --) " in *" --port "*) fail "completion offers another command's option" ;; esac

# The window has no way to be told to quit: it must still be up when the time runs out,
# without a word on its error output. Started by the name a launcher uses, with a bare file.
rc=0
QT_QPA_PLATFORM=offscreen timeout 8 "$prefix/bin/fluxmere" "$sample" >"$work/gui.txt" 2>&1 || rc=$?
[ "$rc" -eq 124 ] || { cat "$work/gui.txt"; fail "the installed window ended early with status $rc"; }
if grep -Eiw 'error|fault|not found|cannot|failed' "$work/gui.txt"; then fail "the installed window reported a fault"; fi

desktop-file-validate "$prefix/share/applications/org.fluxmere.Fluxmere.desktop" || fail "desktop entry"
grep -q '^MimeType=application/x-fluxmere-log;' "$prefix/share/applications/org.fluxmere.Fluxmere.desktop" ||
  fail "the desktop entry does not offer itself for the log type"
appstreamcli validate --no-net "$prefix/share/metainfo/org.fluxmere.Fluxmere.metainfo.xml" >"$work/as.txt" 2>&1 ||
  { cat "$work/as.txt"; fail "AppStream metadata"; }

# The type comes from the first line, not from the extension every log shares.
data=$work/data
mkdir -p "$data/mime/packages"
cp "$prefix/share/mime/packages/fluxmere.xml" "$data/mime/packages/"
export XDG_DATA_HOME=$data XDG_DATA_DIRS=/usr/local/share:/usr/share
update-mime-database "$data/mime"
printf 'Nov 24 09:00:01 host kernel: plain text\n' >"$work/system.log"
cp "$sample" "$work/measure.log"
type_of() { xdg-mime query filetype "$1"; }
[ "$(type_of "$work/measure.log")" = application/x-fluxmere-log ] || fail "sample log: $(type_of "$work/measure.log")"
[ "$(type_of "$work/system.log")" != application/x-fluxmere-log ] || fail "a plain .log was taken for a measurement"
echo "install: all checks passed"
