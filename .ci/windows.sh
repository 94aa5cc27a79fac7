#!/usr/bin/env bash
# CI, Windows part: the DLL cross-built with mingw-w64 for 32-bit and 64-bit
# Windows, the export tables checked with the toolchain's objdump, and the
# whole test suite run on the 64-bit build under Wine. (No 32-bit Wine can be
# installed here: the 32-bit DLL is built and checked, not run.) Exits
# non-zero on any failure.
set -euo pipefail
cd "$(dirname "$0")/.."

log() { printf '\n=== %s ===\n' "$*"; }

# --- Packages -----------------------------------------------------------------
need=()
for pkg in cmake g++-mingw-w64-i686 g++-mingw-w64-x86-64 wine64 googletest locales; do
  dpkg -s "$pkg" >/dev/null 2>&1 || need+=("$pkg")
done
if ((${#need[@]})); then
  log "installing ${need[*]}"
  export DEBIAN_FRONTEND=noninteractive
  SUDO=""; [ "$(id -u)" -eq 0 ] || SUDO="sudo"
  $SUDO apt-get update -q
  $SUDO apt-get install -y -q "${need[@]}"
fi
[ -x /usr/lib/wine/wine64 ] || { echo "CI: no Wine launcher at /usr/lib/wine/wine64" >&2; exit 1; }

# Builds one target triple and fails on any warning the build prints.
build() {
  local dir=$1 toolchain=$2; shift 2
  cmake -S . -B "$dir" -DCMAKE_TOOLCHAIN_FILE="cmake/toolchains/$toolchain" \
    -DCMAKE_BUILD_TYPE=Release -DVARION_WERROR=ON -DVARION_BUILD_TOOLS=OFF "$@"
  set +e
  cmake --build "$dir" -j2 2>&1 | tee "$dir/ci-build.log"
  local status=${PIPESTATUS[0]}
  set -e
  [ "$status" -eq 0 ] || { echo "CI: the $toolchain build failed ($status)" >&2; exit "$status"; }
  if grep -q "warning:" "$dir/ci-build.log"; then
    echo "CI: the $toolchain build printed warnings:" >&2
    grep "warning:" "$dir/ci-build.log" >&2
    exit 1
  fi
}

# --- 32-bit Windows: the DLL and its export table -------------------------------
log "i686-w64-mingw32: varion.dll"
build build-win32 mingw-i686.cmake -DVARION_BUILD_TESTS=OFF
cmake -DDLL=build-win32/varion.dll -DOBJDUMP=i686-w64-mingw32-objdump -P cmake/CheckDllExports.cmake

# --- 64-bit Windows: the DLL and the test suite under Wine ----------------------
log "x86_64-w64-mingw32: varion.dll and the test suite"
build build-win64 mingw-x86_64.cmake
cmake -DDLL=build-win64/varion.dll -DOBJDUMP=x86_64-w64-mingw32-objdump -P cmake/CheckDllExports.cmake
log "the test suite under Wine (each program with an en-US and a de-DE user)"
ctest --test-dir build-win64 --output-on-failure

log "Windows CI passed"
