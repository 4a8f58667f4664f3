#!/bin/sh
# Run by a feed's CI after it has installed a package:  test.sh PACKAGE VERSION
set -e
case $1 in
    kobd) [ -x /etc/init.d/kobd ] && /usr/sbin/kobd -h ;; # an unknown option: all libraries are there, nothing is done
    kobctl) kobctl --version | grep -F "$2" && kobctl list webHttpPort ;;
    kobd-host | libkobd-client) ls /usr/lib/libkobd_* ;;
    *) echo "no test of the package $1" && exit 1 ;;
esac
