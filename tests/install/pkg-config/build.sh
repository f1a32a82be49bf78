#!/usr/bin/env bash
# usage: build.sh LIBDIR WORK_DIR COMPILER [FLAG...]
# Builds and runs the consumer against the library installed in LIBDIR, with the flags that pkg-config gives.
set -euo pipefail

libdir=$1 work=$2
shift 2
export PKG_CONFIG_PATH=$libdir/pkgconfig
mkdir -p "$work"

read -ra cflags < <(pkg-config --cflags ZuXmlLib16)
read -ra libs < <(pkg-config --libs ZuXmlLib16)
"$@" -std=c++17 "${cflags[@]}" -o "$work/consumer" "$(dirname "$0")/../Consumer.cpp" "${libs[@]}"
LD_LIBRARY_PATH=$libdir "$work/consumer"
