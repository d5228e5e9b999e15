#!/usr/bin/env bash
# check_unregistration.sh DLL: registers for one user, then removes every registration, and looks for
# what is left.
set -euo pipefail
dll="$(winepath -w "${1:?the DLL}")"

has_key() { wine reg query "$1" >/dev/null 2>&1; }
fail() {
  echo "$1" >&2
  exit 1
}

has_key 'HKLM\Software\Classes\Orv.Engine' || fail "the registration per machine is missing"
wine regsvr32 /s /n /i:user "$dll" || fail "the registration per user failed"
has_key 'HKCU\Software\Classes\Orv.Engine\CLSID' || fail "the registration per user is missing"
wine regsvr32 /s /u "$dll" || fail "the registration could not be removed"
for root in HKLM HKCU; do
  for key in Orv.Engine Orv.Engine.1 'CLSID\{17E8EA47-A511-4DB5-AEB5-8D3F171D6874}' \
    'TypeLib\{C158856B-0BED-4D52-B38E-8623E934FB53}'; do
    ! has_key "$root\\Software\\Classes\\$key" || fail "$root still has $key"
  done
done
