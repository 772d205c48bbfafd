# Sourced: stage NAME COMMAND... runs the command, and notes its minutes and what build/ holds by then in the file
# $TAVRIN_STAGES, if that is set.
stage() {
  local name=$1 begin=$SECONDS
  shift
  "$@"
  [ -z "${TAVRIN_STAGES:-}" ] || LC_ALL=C awk -v name="$name" -v seconds=$((SECONDS - begin)) \
    -v megabytes="$(du -sm build 2>/dev/null | cut -f 1)" \
    'BEGIN { printf "%-24s %5.1f min  %5d MB\n", name, seconds / 60, megabytes }' >>"$TAVRIN_STAGES"
}
