# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=sh
# For the tests that run the package's scripts, in the sandbox: where they run. With FRRUCI_OPENWRT_ROOT=FOLDER that is
# the OpenWrt root in FOLDER, with its own shell, rc.common, uci and procd; it is laid over itself and not written to.
# Else it is the sandbox, with stand-ins.
#
# $router stands before what belongs to the router; /tmp, /var, /run and /etc/config are the sandbox's own in either.

[ "${FRRUCI_SANDBOX-}" = 1 ]
here=$(cd "$(dirname "$0")" && pwd)
failures=0
rm -rf /etc/init.d /etc/rc.d
mkdir -p /etc/init.d /etc/rc.d

if [ -n "${FRRUCI_OPENWRT_ROOT-}" ]; then
    kind="the OpenWrt root"
    router=/run/sandbox/router/root
    mkdir -p /run/sandbox/router/upper /run/sandbox/router/work "$router"
    mount -t overlay router "$router" \
        -o "lowerdir=$FRRUCI_OPENWRT_ROOT,upperdir=/run/sandbox/router/upper,workdir=/run/sandbox/router/work"
    [ ! -L "$router/var" ] || rm "$router/var"
    mkdir -p "$router/proc" "$router/dev" "$router/tmp" "$router/var" "$router/run" "$router/etc/config" "$router/usr/sbin"
    for folder in proc dev; do
        mount --rbind "/$folder" "$router/$folder"
    done
    for folder in tmp var run etc/config; do
        mount --bind "/$folder" "$router/$folder"
    done
    # What the start script tells procd is noted, and not told.
    mkdir -p /tmp/noting
    printf '#!/bin/sh\necho "$*" >> /tmp/ubus.calls\n' > /tmp/noting/ubus
    chmod +x /tmp/noting/ubus
else
    kind="stand-ins"
    router=
    mkdir -p /tmp/stand_ins
    ln -s "$here/uci" /tmp/stand_ins/uci
fi

inside() { # COMMAND...
    if [ -n "$router" ]; then
        chroot "$router" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root "$@"
    else
        PATH=/tmp/stand_ins:$PATH "$@"
    fi
}

# Runs an action of the start script, and prints what it registers with procd.
run() { # ACTION
    if [ -z "$router" ]; then
        inside sh "$here/rc.common" /etc/init.d/frruci "$1"
    else
        rm -f /tmp/ubus.calls
        inside PATH=/tmp/noting:/usr/sbin:/usr/bin:/sbin:/bin sh /etc/rc.common /etc/init.d/frruci "$1"
        [ ! -e /tmp/ubus.calls ] || perl "$here/registered" < /tmp/ubus.calls
    fi
}

same() { # WHAT WANTED GOT
    if [ "$2" != "$3" ]; then
        printf '%s\n--- wanted\n%s\n--- got\n%s\n---\n' "$1" "$2" "$3"
        failures=$((failures + 1))
    fi
}

await() { # WHAT COMMAND...
    what=$1 deadline=$(($(date +%s) + 20))
    shift
    until "$@" > /dev/null 2>&1; do
        if [ "$(date +%s)" -ge "$deadline" ]; then
            echo "not in time: $what"
            failures=$((failures + 1))
            return
        fi
        sleep 0.1
    done
}

finish() { # SENTENCE
    [ $failures = 0 ] && echo "$1 ($kind)"
}
