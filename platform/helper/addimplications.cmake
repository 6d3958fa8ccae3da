# SPDX-FileCopyrightText: 2026 The admin-events authors
# SPDX-License-Identifier: GPL-2.0-or-later
#
# Adds to a policy file which actions one authorisation covers. The generator of policy files has no word for it.
# Usage: cmake -DSOURCE=FILE -DTARGET=FILE -P addimplications.cmake

# One Apply of the page may need all of these, in any order, and the person is asked once.
set(prefix org.nivra.kcm.adminevents.)
set(applied writeconfig setauditsettings writenotificationconfigs removenotificationconfigs)
# Apply ends in a restart of the logging service; starting and stopping it by itself covers nothing else.
set(covered ${applied} loggingservicectl)

file(READ ${SOURCE} policy)
foreach(verb IN LISTS applied)
    set(others)
    foreach(other IN LISTS covered)
        if(NOT other STREQUAL verb)
            list(APPEND others ${prefix}${other})
        endif()
    endforeach()
    list(JOIN others " " others)
    set(action "<action id=\"${prefix}${verb}\" >")
    string(FIND "${policy}" "${action}" begin)
    if(begin EQUAL -1)
        message(FATAL_ERROR "${SOURCE} has no ${action}")
    endif()
    string(SUBSTRING "${policy}" 0 ${begin} before)
    string(SUBSTRING "${policy}" ${begin} -1 after)
    string(FIND "${after}" "   </action>" end)
    string(SUBSTRING "${after}" 0 ${end} element)
    string(SUBSTRING "${after}" ${end} -1 after)
    string(CONCAT policy "${before}${element}"
        "      <annotate key=\"org.freedesktop.policykit.imply\">${others}</annotate>\n" "${after}")
endforeach()
file(WRITE ${TARGET} "${policy}")
