# Sourced: stage NAME COMMAND... runs the command, and notes its minutes and what build/ holds by then in the file
# $TAVRIN_STAGES, if that is set. A command that fails is noted as such, and ends the script.
stage() {
  local name=$1 begin=$SECONDS status=0
  shift
  "$@" || status=$?
  [ -z "${TAVRIN_STAGES:-}" ] || LC_ALL=C awk -v name="$name" -v seconds=$((SECONDS - begin)) -v status=$status \
    -v megabytes="$(du -sm build 2>/dev/null | cut -f 1)" \
    'BEGIN { printf "%-24s %5.1f min  %5d MB%s\n", name, seconds / 60, megabytes, status ? "  FAILED" : "" }' \
    >>"$TAVRIN_STAGES"
  [ $status -eq 0 ] || exit $status
}
