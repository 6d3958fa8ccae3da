# SPDX-FileCopyrightText: 2026 The admin-events authors
# SPDX-License-Identifier: GPL-2.0-or-later
# shellcheck shell=bash
#
# The page in a real shell on a display of its own. To be sourced after lib.sh, inside a sandbox, by a command that sets
# "shell" (kcmshell5 or systemsettings) and "output" (the directory of the screenshots).
# shellcheck disable=SC2154 # the two above

shell_process=
window=

screenshot() {
    import -window root "$output/$1.png"
}

find_window() {
    window=$(xdotool search --onlyvisible --pid "$shell_process" 2>/dev/null | tail -n 1)
    [ -n "$window" ]
}

# Whether the display looks the same for a second; a page that still loads or paints does not.
display_rests() {
    local before after
    before=$(import -window root rgb:- | md5sum)
    sleep 1
    after=$(import -window root rgb:- | md5sum)
    [ "$before" = "$after" ]
}

open_page() {
    "$shell" kcm_adminevents 2>>"$output/shell.log" &
    shell_process=$!
    wait_until 60 find_window || die "no window of $shell appeared; see $output/shell.log"
    fill_display
    sleep 1
    # System Settings takes the size back that it had in mind while it was starting.
    find_window
    fill_display
    # An unsteady display, such as one with a blinking cursor, is good enough in the end.
    wait_until 15 display_rests || true
}

# Nobody else places and focuses windows here, but the shell may give its window a size of its own a moment later.
fill_display() {
    wait_until 15 display_filled || true
}

display_filled() {
    xdotool windowmove "$window" 0 0 windowsize "$window" 1024 768 windowfocus "$window"
    sleep 0.5
    xdotool getwindowgeometry "$window" | grep -q 'Geometry: 1024x768'
}

close_page() {
    kill "$shell_process" 2>/dev/null
    wait "$shell_process" 2>/dev/null
}
