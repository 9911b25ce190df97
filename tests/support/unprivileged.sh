#!/bin/sh
# Runs a test. What it tries deletes, writes, kills and follows what comes from outside, so where root
# starts it, it goes on as nobody, who may read everything, since the checkout can be root's own, and
# write where everybody may.
if [ "$(id -u)" = 0 ]; then
    set -- setpriv --reuid=nobody --regid=nogroup --clear-groups --inh-caps=-all,+dac_read_search \
        --ambient-caps=-all,+dac_read_search --bounding-set=-all,+dac_read_search -- "$@"
fi
exec "$@"
