# SPDX-FileCopyrightText: 2026 The admin-events authors
# SPDX-License-Identifier: GPL-2.0-or-later
# shellcheck shell=bash
#
# What the commands in this directory share. To be sourced.

source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd) || exit 1

say() {
    printf '%s\n' "$*" >&2
}

die() {
    say "$(basename "$0"): $*"
    exit 1
}

# Prints the packages of tools/packages. $1: "required" or "optional".
listed_packages() {
    awk -v kind="$1" '!/^#/ && NF { if (($2 == "optional") == (kind == "optional")) print $1 }' \
        "$source_dir/tools/packages"
}

# Prints those of the given packages that are not installed.
missing_packages() {
    local package
    for package in "$@"; do
        if ! dpkg-query -W -f='${db:Status-Abbrev}' "$package" 2>/dev/null | grep -q '^.i'; then
            printf '%s\n' "$package"
        fi
    done
}

# Runs a command as root, or fails when there is no way to become root. Never asks without a terminal.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif [ -t 0 ]; then
        sudo "$@"
    else
        sudo -n "$@"
    fi
}

can_be_root() {
    [ "$(id -u)" -eq 0 ] && return 0
    command -v sudo >/dev/null || return 1
    [ -t 0 ] || sudo -n true 2>/dev/null
}

apt_install() {
    # --no-remove: nobody loses a package for the sake of a sandbox.
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install --yes --quiet --no-remove --no-install-recommends "$@"
}

# A service that comes with a package is not to run on the machine because of us, now or after the next start.
install_quietly() {
    local policy=/usr/sbin/policy-rc.d status=0
    if [ ! -e "$policy" ]; then
        printf '#!/bin/sh\nexit 101\n' | as_root tee "$policy" >/dev/null
        as_root chmod 755 "$policy"
        # shellcheck disable=SC2064 # the path is fixed, and local to this function
        trap "as_root rm -f '$policy'" EXIT
        apt_install "$@" || status=$?
        as_root rm -f "$policy"
        trap - EXIT
    else
        apt_install "$@" || status=$?
    fi
    return "$status"
}

# Installs what tools/packages names and the machine lacks.
install_missing_packages() {
    command -v dpkg-query >/dev/null || die "this is no Debian system; install what tools/packages lists"
    local listed required optional package
    mapfile -t listed < <(listed_packages required)
    mapfile -t required < <(missing_packages "${listed[@]}")
    mapfile -t listed < <(listed_packages optional)
    mapfile -t optional < <(missing_packages "${listed[@]}")
    [ ${#required[@]} -gt 0 ] || [ ${#optional[@]} -gt 0 ] || return 0
    if ! can_be_root; then
        if [ ${#required[@]} -gt 0 ]; then
            say "Neither root nor sudo is at hand. An administrator installs what is missing with this line:"
            say "apt-get update && apt-get install --no-install-recommends ${required[*]}"
            exit 1
        fi
        say "Going on without: ${optional[*]}"
        return 0
    fi
    say "Installing: ${required[*]} ${optional[*]}"
    as_root apt-get update --quiet || die "apt-get update failed"
    if [ ${#required[@]} -gt 0 ]; then
        install_quietly "${required[@]}" || die "these packages could not be installed: ${required[*]}"
    fi
    for package in "${optional[@]}"; do
        if ! install_quietly "$package"; then
            say "Going on without $package."
        elif [ -d /run/systemd/system ]; then
            case $package in
            syslog-ng-core) as_root systemctl disable --quiet syslog-ng.service || true ;;
            auditd) as_root systemctl disable --quiet auditd.service || true ;;
            esac
        fi
    done
}

# Makes a UTF-8 locale available in a directory of ours, for LOCPATH. $1: directory, $2: language such as "ru_RU".
make_locale() {
    mkdir -p "$1"
    [ -d "$1/$2.UTF-8" ] && return 0
    # It warns (exit code 1) about what it finds odd in the system's own files.
    localedef --inputfile "$2" --charmap UTF-8 --no-archive "$1/$2.UTF-8" >/dev/null 2>&1 || true
    [ -e "$1/$2.UTF-8/LC_CTYPE" ] || die "the locale $2.UTF-8 could not be made in $1"
}

# Builds what a sandbox needs, without tests and benchmarks. $1: build folder, rest: options that say otherwise.
build_page() {
    local build=$1 log=$1/run-build.log
    shift
    say "Building in $build"
    mkdir -p "$build" || exit 1
    if ! { cmake -S "$source_dir" --preset release -B "$build" -DCMAKE_INSTALL_PREFIX=/usr -DBUILD_TESTING=OFF \
        -DADMINEVENTS_BENCHMARKS=OFF "$@" && cmake --build "$build"; } >"$log" 2>&1; then
        tail -n 40 "$log" >&2
        die "the build failed; all of it is in $log"
    fi
}

# Runs the tests of a build. They get a home, a session bus and locales of their own; whatever they leave running is
# ended by its mark. $1: build folder, rest: assignments "NAME=value" for their environment, then options for ctest.
run_tests() {
    local build=$1 home=$1/test-home assignments=() status=0
    shift
    while [[ ${1-} =~ ^[A-Z_]+= ]]; do
        assignments+=("$1")
        shift
    done
    rm -rf "$home"
    mkdir -p "$home/runtime" && chmod 700 "$home/runtime" || exit 1
    make_locale "$build/test-locale" ru_RU
    # shellcheck disable=SC2064 # the mark is fixed from here on
    trap "end_marked_processes 'ADMINEVENTS_TESTS=$home'" EXIT
    env -u DISPLAY -u WAYLAND_DISPLAY -u LC_ALL -u LANGUAGE -u XDG_CONFIG_HOME -u XDG_DATA_HOME -u XDG_CACHE_HOME \
        -u XDG_STATE_HOME -u ADMINEVENTS_ROOT "ADMINEVENTS_TESTS=$home" "HOME=$home" "XDG_RUNTIME_DIR=$home/runtime" \
        "LOCPATH=$build/test-locale" LANG=C.UTF-8 QT_QPA_PLATFORM=offscreen "${assignments[@]}" \
        dbus-run-session -- ctest --test-dir "$build" --output-on-failure -j 2 "$@" || status=1
    return "$status"
}

# Configures and builds with tests as a preset says. $1: preset, $2: build folder, rest: options for cmake.
build_tests() {
    local preset=$1 build=$2 log=$2/build.log
    shift 2
    say "Building in $build"
    mkdir -p "$build" || exit 1
    cmake -S "$source_dir" --preset "$preset" -B "$build" -DBUILD_TESTING=ON "$@" >"$log" 2>&1 || {
        tail -n 40 "$log" >&2
        die "the build could not be configured"
    }
    cmake --build "$build" >"$log" 2>&1 || {
        grep -E -A 12 'FAILED|error:' "$log" | head -n 100 >&2
        die "the build failed; all of it is in $log"
    }
}

# Waits until a command succeeds. $1: seconds, that many times ADMINEVENTS_PATIENCE; rest: the command.
wait_until() {
    local deadline=$((SECONDS + $1 * ${ADMINEVENTS_PATIENCE:-1}))
    shift
    until "$@"; do
        [ $SECONDS -lt $deadline ] || return 1
        sleep 0.1
    done
}

# Starts a display that nobody sees and sets virtual_display to its number. $1: file for its messages.
start_virtual_display() {
    local numbers
    numbers=$(mktemp) || exit 1
    # A display that starts afresh when its last client goes turns away the next one meanwhile.
    setpriv --pdeathsig TERM Xvfb -displayfd 9 -screen 0 1024x768x24 -nolisten tcp -noreset 9>"$numbers" 2>"$1" &
    virtual_display_process=$!
    wait_until 20 test -s "$numbers" || die "the virtual display did not start: $(cat "$1")"
    # shellcheck disable=SC2034 # for the caller
    virtual_display=$(cat "$numbers")
    rm -f "$numbers"
}

stop_virtual_display() {
    kill "$virtual_display_process" 2>/dev/null
    wait "$virtual_display_process" 2>/dev/null
}

# Ends every process that carries a mark in its environment, however it was started: first politely, then by force.
# Shells that work for the caller carry no mark, since a mark is only ever set for commands. $1: "NAME=value".
end_marked_processes() {
    local signal process ended
    for signal in TERM 0 KILL; do
        for _ in {1..30}; do
            ended=no
            for process in /proc/[0-9]*; do
                if grep -qzxF "$1" "$process/environ" 2>/dev/null; then
                    kill "-$signal" "${process#/proc/}" 2>/dev/null && ended=yes
                fi
            done
            [ "$ended" = yes ] || return 0
            [ "$signal" = 0 ] || break
            sleep 0.1
        done
    done
}
