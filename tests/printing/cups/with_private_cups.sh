#!/usr/bin/env bash
# A page through a real print queue: starts a CUPS scheduler of its own (configuration,
# spool and socket in a scratch folder) with a cups-pdf queue whose PDFs land there too,
# proves the queue makes a PDF, then runs the Qt test program against it.
# Exits 77 (skipped) where no CUPS can run here.
#   with_private_cups.sh TEST_PROGRAM [ARGUMENTS...]
set -uo pipefail
prog=$1
shift
export PATH=$PATH:/usr/sbin:/sbin
backend=/usr/lib/cups/backend/cups-pdf
ppd=/usr/share/ppd/cups-pdf/CUPS-PDF_opt.ppd
queue=fluxmere-pdf
# cups-pdf reads /etc/cups/cups-pdf-NAME.conf for the device cups-pdf:/NAME: the one way
# to send its PDFs elsewhere than the user's home.
name=fluxmere-test-$$
conf=/etc/cups/cups-pdf-$name.conf

skip() { echo "SKIP: $*"; exit 77; }
fail() { echo "FAIL: $*" >&2; exit 1; }
logs() {
  echo "--- scheduler errors"; grep -E '^[EW] ' "$work/log/error_log" 2>/dev/null | tail -n 20
  echo "--- cups-pdf"; tail -n 20 "$work"/log/cups-pdf-*_log 2>/dev/null
}

[ "$(id -u)" -eq 0 ] || skip "not root: the cups-pdf backend runs only as root and reads its settings from /etc/cups"
for tool in cupsd lpadmin lpstat lp; do
  command -v "$tool" >/dev/null || skip "$tool is missing (package cups): run scripts/setup.sh"
done
[ -x "$backend" ] && [ -r "$ppd" ] || skip "no cups-pdf backend or PPD (package printer-driver-cups-pdf): run scripts/setup.sh"
for tool in pdfinfo pdftotext timeout; do
  command -v "$tool" >/dev/null || fail "$tool is missing: run scripts/setup.sh"
done

# Settings left by a run that was killed outright.
for old in /etc/cups/cups-pdf-fluxmere-test-*.conf; do
  [ -e "$old" ] || continue
  pid=${old##*-}
  kill -0 "${pid%.conf}" 2>/dev/null || rm -f "$old"
done

# Under /tmp: a socket's path has to stay short.
work=$(mktemp -d /tmp/fluxmere-cups.XXXXXX) || skip "no scratch folder in /tmp"
cupsd_pid=
cleanup() {
  if [ -n "$cupsd_pid" ]; then
    kill "$cupsd_pid" 2>/dev/null
    for _ in $(seq 50); do kill -0 "$cupsd_pid" 2>/dev/null || break; sleep 0.1; done
    kill -KILL "$cupsd_pid" 2>/dev/null
    wait "$cupsd_pid" 2>/dev/null
  fi
  rm -f "$conf"
  rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 130' INT TERM HUP
# The filters run as lp and have to reach the spool inside.
chmod 711 "$work"
mkdir -p "$work"/{etc,spool/tmp,cache,state,log,pdf}

cat >"$work/etc/cups-files.conf" <<EOF
ServerRoot $work/etc
RequestRoot $work/spool
TempDir $work/spool/tmp
CacheDir $work/cache
StateDir $work/state
ErrorLog $work/log/error_log
AccessLog $work/log/access_log
PageLog $work/log/page_log
Printcap $work/etc/printcap
ServerKeychain $work/etc/ssl
CreateSelfSignedCerts no
User lp
Group lp
SystemGroup root
EOF
# Only its socket, no network, and nobody asked for a password.
cat >"$work/etc/cupsd.conf" <<EOF
Listen $work/cups.sock
LogLevel info
Browsing No
WebInterface No
DefaultAuthType None
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
EOF
cupsd -t -c "$work/etc/cupsd.conf" -s "$work/etc/cups-files.conf" >"$work/check.txt" 2>&1 \
  || { cat "$work/check.txt"; fail "cupsd rejects the test's configuration"; }
cat >"$conf" <<EOF || skip "cannot write $conf"
Out $work/pdf
AnonDirName $work/pdf
Spool $work/cups-pdf
GSTmp $work/cups-pdf
Log $work/log
Grp lp
EOF

cupsd -f -c "$work/etc/cupsd.conf" -s "$work/etc/cups-files.conf" >"$work/cupsd.txt" 2>&1 &
cupsd_pid=$!
export CUPS_SERVER=$work/cups.sock
for _ in $(seq 100); do
  kill -0 "$cupsd_pid" 2>/dev/null || { cupsd_pid=; cat "$work/cupsd.txt"; logs; skip "cupsd did not start"; }
  [ -S "$CUPS_SERVER" ] && lpstat -r >/dev/null 2>&1 && break
  sleep 0.1
done
lpstat -r >/dev/null 2>&1 || { logs; skip "cupsd does not answer on $CUPS_SERVER"; }

# The default renderer turns fonts into Type 3 glyphs with no text; pdftocairo keeps it.
lpadmin -p "$queue" -E -v "cups-pdf:/$name" -P "$ppd" -o pdftops-renderer-default=pdftocairo \
  >"$work/lpadmin.txt" 2>&1 || { cat "$work/lpadmin.txt"; logs; skip "the scheduler refused a cups-pdf queue"; }

# Waits for the queue to empty; true when it did within $1 tenths of a second.
drained() {
  for _ in $(seq "$1"); do
    [ -z "$(lpstat -o "$queue" 2>/dev/null)" ] && return 0
    sleep 0.1
  done
  return 1
}
# A page of plain PostScript first: when the backend makes nothing of it, this machine
# cannot run cups-pdf, whatever the application does.
printf '%%!PS\n/Helvetica findfont 12 scalefont setfont 72 720 moveto (try) show showpage\n' \
  | lp -d "$queue" -t try >/dev/null || { logs; skip "the queue takes no job"; }
drained 150 && compgen -G "$work/pdf/*.pdf" >/dev/null \
  || { logs; skip "the cups-pdf backend made no PDF on this machine"; }
rm -f "$work"/pdf/*.pdf

FLUXMERE_CUPS_QUEUE=$queue FLUXMERE_CUPS_PDF_DIR=$work/pdf timeout 60 "$prog" "$@"
rc=$?
[ "$rc" -eq 0 ] || logs
echo "with_private_cups: ${SECONDS}s"
exit "$rc"
