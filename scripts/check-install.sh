#!/usr/bin/env bash
# Checks an installation to the byte and prints what it found.   scripts/check-install.sh
# Looks in XDG_DATA_HOME and XDG_CONFIG_HOME. Exit code 0 only if every number is right.
set -euo pipefail
root=$XDG_DATA_HOME/Varnhal
faults=0

# expect WHAT WANTED GOT
expect() {
    local verdict=ok
    [ "$2" = "$3" ] || { verdict="WRONG, should be: $2" && faults=$((faults + 1)); }
    printf '%s: %s (%s)\n' "$1" "$3" "$verdict"
}

expect "files" 333 "$(find "$root/Tesk" -type f | wc -l)"
expect "bytes" 20089947 "$(find "$root/Tesk" -type f -printf '%s\n' | awk '{ sum += $1 } END { print sum }')"
expect "files whose SHA-256 is that of Files.lst" 332 "$(
    cd "$root/Tesk"
    grep -v '^#' Data/Files.lst | sed -E 's/^([0-9a-f]{64}) +[0-9]+ (.*)$/\1  \2/' | sha256sum -c 2>/dev/null | grep -c ': OK$'
)"
expect "payload copy, read by cabextract" "All done, no errors." "$(cabextract -t "$root/Update/TeskSetup" 2>&1 | tail -n 1)"
expect "leftovers beside the files" 0 "$(find "$root" -name '.*' | wc -l)"

hive=$XDG_CONFIG_HOME/registry/current-user.sqlite
rows() { sqlite3 -separator ' | ' "file:$hive?mode=ro" "SELECT key, name, type, size, $1 FROM registry ORDER BY key, name"; }
tesk='Software\Dalvor\Varnhal\Tesk'
run='Software\Microsoft\Windows\CurrentVersion\Run'
client="$XDG_DATA_HOME\\Varnhal\\Tesk\\PelkVarnhal.exe"
wanted="$tesk\\Connection | ProxyDomain | REG_SZ | 0 | 
$tesk\\Connection | ProxyHost | REG_SZ | 0 | 
$tesk\\Connection | ProxyPassword | REG_SZ | 0 | 
$tesk\\Connection | ProxyPort | REG_DWORD | 4 | 0x00000000
$tesk\\Connection | ProxyType | REG_DWORD | 4 | 0x00000000
$tesk\\Connection | ProxyUse | REG_DWORD | 4 | 0x00000001
$tesk\\Connection | ProxyUser | REG_SZ | 0 | 
$tesk\\Version | DLLVER | REG_SZ | 2 | 15
$tesk\\Version | MAINVER | REG_SZ | 7 | 4.0.0.1
$tesk\\Version | QDFPRTVER | REG_SZ | 1 | 0
$tesk\\Version | QDFVER | REG_SZ | 1 | 0
$run | Merav Conferencing | REG_SZ | $((${#client} + 1)) | $client"
echo "registry:"
rows data | sed 's/^/  /'
expect "registry rows" 12 "$(rows data | wc -l)"
expect "registry as it should be" yes "$([ "$(rows data)" = "$wanted" ] && echo yes || echo no)"
expect "the Run value's last byte" 00 "$(sqlite3 "file:$hive?mode=ro" \
    "SELECT hex(substr(data, -1)) FROM registry_value WHERE name = 'Merav Conferencing'")"

entry="$XDG_CONFIG_HOME/autostart/Merav Conferencing.desktop"
echo "autostart entry:"
sed 's/^/  /' "$entry"
expect "desktop-file-validate" "" "$(desktop-file-validate "$entry" 2>&1)"
expect "TryExec" "${client//\\//}" "$(sed -n 's/^TryExec=//p' "$entry")"
expect "the autostart entry's program can be run" yes "$([ -x "$(sed -n 's/^Exec="\(.*\)"$/\1/p' "$entry")" ] && echo yes || echo no)"
for menu in "$XDG_DATA_HOME"/applications/*.desktop; do
    expect "menu entry $(basename "$menu"), desktop-file-validate" "" "$(desktop-file-validate "$menu" 2>&1)"
done
expect "the client's configuration" yes "$([ -n "$(ls "$XDG_CONFIG_HOME/Varnhal")" ] && echo yes || echo no)"
[ "$faults" -eq 0 ]
