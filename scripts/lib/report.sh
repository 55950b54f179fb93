# Sourced by the scripts: says what they are at, and in the end how it went.

# heading TEXT...: with the name of the script before it if `reporter` is set.
heading() {
  printf '\n==> [%4d s] %s%s\n' "$SECONDS" "${reporter:+$reporter: }" "$*"
}

summary=()
failed=0  # How many steps.

# step NAME COMMAND...: runs it, and fails if that does.
step() {
  local name=$1
  local start=$SECONDS
  shift
  heading "$name"
  if "$@"; then
    summary+=("passed:    $name ($((SECONDS - start)) s)")
  else
    summary+=("FAILED:    $name ($((SECONDS - start)) s)")
    failed=$((failed + 1))
    return 1
  fi
}

# next_step NAME COMMAND...: the same for what is not worth trying once a step has failed.
next_step() {
  if [ "$failed" -eq 0 ]; then
    step "$@" || true
  else
    summary+=("not tried: $1")
  fi
}

# summarize: fails if a step has.
summarize() {
  heading "summary"
  printf '%s\n' "${summary[@]}"
  [ "$failed" -eq 0 ]
}
