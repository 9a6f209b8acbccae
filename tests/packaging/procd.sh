# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=sh
# The end of the test "init" on an OpenWrt root: its procd runs the service with programs that note what befalls them.
# shellcheck disable=SC2154 # router and files are the test's

note() { # PROGRAM
    mkdir -p "$router/usr/sbin"
    # shellcheck disable=SC2016 # for the program
    printf '#!/bin/sh\ntrap "echo %s HUP >> /tmp/notes" HUP\necho "%s start" >> /tmp/notes\n%s\n' "$1" "$1" \
        'while :; do sleep 60 & wait $!; done' > "$router/usr/sbin/$1"
    chmod +x "$router/usr/sbin/$1"
}
noted() {
    [ "$(sort /tmp/notes)" = "$1" ]
}

rm -f /tmp/notes
note frruci
note mgmtd
install -D -m 755 "$files/mgmtd.run" "$router/usr/libexec/frruci/mgmtd.run"
mkdir -p /var/run/ubus
inside ubusd > /tmp/ubusd.log 2>&1 &
await "ubusd" inside ubus list
inside procd -S > /tmp/procd.log 2>&1 &
await "procd" inside ubus -t 1 wait_for service

inside sh /etc/rc.common /etc/init.d/frruci boot
started='frruci start
mgmtd start'
await "both instances" noted "$started"
changes=
for name in network ospf rip nhrp; do
    printf '\n# changed\n' >> "/etc/config/$name"
    inside ubus call service event '{ "type": "config.change", "data": { "package": "'"$name"'" } }'
    # That of another package comes to nothing, and would have come before the next one's.
    if [ "$name" != network ]; then
        changes="${changes}frruci HUP
"
        await "a HUP for $name" noted "$changes$started"
    fi
done
same "what befell the programs" "$changes$started" "$(sort /tmp/notes)"

# Without a change a reload does nothing, which the HUP of a later change shows.
inside sh /etc/rc.common /etc/init.d/frruci reload
printf '\n# changed\n' >> /etc/config/ospf
inside sh /etc/rc.common /etc/init.d/frruci reload
await "a HUP after two reloads" noted "${changes}frruci HUP
$started"
inside sh /etc/rc.common /etc/init.d/frruci stop
