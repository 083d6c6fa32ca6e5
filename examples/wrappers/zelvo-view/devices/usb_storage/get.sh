#!/bin/sh
# Joins the two registry values of get.env to one word. The registry keeps a switch as it was
# written there, and five words mean no.
is_off() {
    case $1 in
        no | false | off | 0 | ko) true ;;
        *) false ;;
    esac
}

if is_off "$ALLOWED"; then
    printf off
elif is_off "$READ_ONLY"; then
    printf read-write
else
    printf read-only
fi
