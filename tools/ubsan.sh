#!/usr/bin/env bash
# Runs the suites of Wine x64 with library, client and simulated notebook built so that every operation is checked for
# undefined behaviour: a program that does any ends with a message. About 10 minutes beside the build.
#
#   tools/ubsan.sh [SUITE...]

source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

suites=("$@")
[ $# != 0 ] || suites=(x64-{shell,sweep,firmware,client,end-to-end,soak,output,commands,record,report,radios,hardening})
VEXA_VARIANT=-ubsan exec "$ROOT/test" "${suites[@]}"
