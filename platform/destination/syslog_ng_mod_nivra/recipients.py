# SPDX-FileCopyrightText: 2026 The admin-events authors
# SPDX-License-Identifier: GPL-2.0-or-later
"""Who is to be told of an event."""

import grp
import os
import pwd

EVERYBODY = "@all"


class Recipients:
    """The users that a notification is for.

    user, group: as configured. "@all" for either names everybody; a name for both restricts to those whom both name.
    Both empty: the notification is for the users that the record names and for the members of its groups.
    """

    def __init__(self, user, group):
        self._user = user
        self._group = group

    @property
    def depend_on_record(self):
        return not self._user and not self._group

    def include(self, uid, record_users=(), record_groups=()):
        """Whether the user with the number uid is to be told. An unknown user is told only what everybody is."""
        if self.depend_on_record:
            return any(_is_user(uid, user) for user in record_users) or any(
                _is_member(uid, group) for group in record_groups
            )
        return (self._user == EVERYBODY or _is_user(uid, self._user)) and (
            self._group == EVERYBODY or _is_member(uid, self._group)
        )


def _is_user(uid, user):
    """user: a name, or a number in decimal digits where no such name is known."""
    try:
        return pwd.getpwnam(user).pw_uid == uid
    except (KeyError, ValueError):
        return user.isascii() and user.isdecimal() and int(user) == uid


def _is_member(uid, group):
    """group: a name, or a number in decimal digits where no such name is known."""
    try:
        gid = grp.getgrnam(group).gr_gid
    except (KeyError, ValueError):
        if not (group.isascii() and group.isdecimal()):
            return False
        gid = int(group)
    try:
        entry = pwd.getpwuid(uid)
    except KeyError:
        return False
    return gid in os.getgrouplist(entry.pw_name, entry.pw_gid)
