# Sourced by the scripts: describes the binary interface of a built library, and compares it with a
# description that is kept (see docs/abi.md). A description is two files: NAME.abi, the types as the
# debug information tells them, and NAME.symbols, the exported symbols with their version.

abi_soname="libtarselvalues-mt.so.1"
abi_node="TARSELVALUES_1"

abi_options=(
  --exported-interfaces-only
  --no-comp-dir-path
  --no-corpus-path
  --no-parameter-names
  --no-show-locs
  --no-write-default-sizes
  --type-id-style hash
)

# check_abi_basics LIBRARY: whether there is debug information, without which no type can be
# compared, and whether the library has the name and the one node that programs ask for.
check_abi_basics() {
  local sections soname nodes
  local wrong=0
  sections=$(readelf --sections --wide "$1")
  if [[ $sections != *" .debug_info "* ]]; then
    echo "no debug information"
    wrong=1
  fi
  soname=$(readelf --dynamic --wide "$1" | sed -nE 's/.*\(SONAME\).*\[(.*)\]$/\1/p')
  if [ "$soname" != "$abi_soname" ]; then
    echo "its SONAME is '$soname', not '$abi_soname'"
    wrong=1
  fi
  nodes=$(nm --dynamic --defined-only "$1" | sed -nE 's/^[0-9a-f]+ A ([^@]*).*/\1/p')
  if [ "$nodes" != "$abi_node" ]; then
    echo "its version nodes are '${nodes//$'\n'/ }', not '$abi_node' alone"
    wrong=1
  fi
  return "$wrong"
}

# describe_abi LIBRARY NAME: writes the description. Of where the sources stood it tells nothing.
describe_abi() {
  abidw "${abi_options[@]}" --out-file "$2.abi" "$1" &&
    sed --in-place --regexp-extended "s| path='[^']*/tarselvalues/| path='tarselvalues/|" \
      "$2.abi" &&
    nm --dynamic --defined-only --with-symbol-versions --format=just-symbols "$1" |
    LC_ALL=C sort >"$2.symbols"
}

# adds_only KEPT NEW: whether all that was kept is there as it was.
adds_only() {
  [ -z "$(LC_ALL=C comm -23 "$1.symbols" "$2.symbols")" ] &&
    abidiff --no-added-syms "$1.abi" "$2.abi" >/dev/null
}

# compare_abi LIBRARY KEPT NEW: describes the library under the name NEW, says how that differs from
# the description KEPT, and fails if it does in any way.
compare_abi() {
  check_abi_basics "$1" && describe_abi "$1" "$3" || return 1
  # A field in another place is no more than "a change" to abidiff, so any status but 0 counts.
  local same=yes
  diff --unified=0 --label "kept symbols" --label "symbols" "$2.symbols" "$3.symbols" || same=no
  abidiff "$2.abi" "$3.abi" || same=no
  if [ "$same" = yes ]; then
    return 0
  fi
  if adds_only "$2" "$3"; then
    echo "Only additions. A minor release may have them: scripts/abi --update keeps them."
  else
    echo "Programs that are there already may not run with this."
  fi
  return 1
}
