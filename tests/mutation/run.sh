#!/usr/bin/env bash
# Mutation testing of the deciding code; see mutation.py for the arguments. Not part of ./test: a mutant takes a second
# or two.

source "$(dirname "${BASH_SOURCE[0]}")/../../tools/lib.sh"

"$ROOT/tools/setup.sh" native mutation
exec "$CACHE/mutation-1.14.1/bin/python" "$ROOT/tests/mutation/mutation.py" "$@"
