#!/usr/bin/env bash
# Says which lines clang-format would lay out otherwise; with --fix lays them out.

source "$(dirname "$0")/setup.sh"

InstallPackages clang-format

mode=(--dry-run --Werror)
if [[ ${1:-} == --fix ]]; then
    mode=(-i)
fi

find . -path './build*' -prune -o \( -name '*.h' -o -name '*.cpp' -o -name '*.inl' \) -print0 |
    xargs -0 clang-format "${mode[@]}"

# The host's headers have no extension, which clang-format goes by.
for header in teskexposure/include/* vexcore/include/*; do
    formatted=$(clang-format --assume-filename=header.h <"$header")
    if [[ ${1:-} == --fix ]]; then
        printf '%s\n' "$formatted" >"$header"
    else
        diff -u --label "$header" --label "$header, formatted" "$header" - <<<"$formatted"
    fi
done
