# Helpers of the scripts that drive Wine (tools/test-windows.sh, tools/test-msi.sh); sourced.

# A step that fails outside the checks (a Wine tool, not our programs) names itself and
# ends the script with exit 3, which tools/test.sh tells apart from a failed check (exit 1)
# and answers by running the script once more. Needs `set -E`.
trap 'echo "${BASH_SOURCE[0]##*/} line $LINENO: $BASH_COMMAND failed (exit $?)" >&2; exit 3' ERR

# wine_reg ARGS...: `wine reg ARGS`, tried up to three times. Right after its server starts,
# Wine's services now and then answer late or not at all (more often on a loaded machine);
# a registry step that fails then says nothing of what is being tested.
wine_reg() {
  local attempt
  for attempt in 1 2 3; do
    timeout 60 wine reg "$@" && return 0
    [ $attempt = 3 ] || sleep 2
  done
  echo "wine reg $*: failed three times" >&2
  return 1
}
